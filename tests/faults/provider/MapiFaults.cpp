#include "tests/faults/provider/MapiFaults.h"

#include "localmapi/MapiMemory.h"
#include "localmapi/PropertyConversion.h"
#include "localmapi/PropertyMethods.h"
#include "tests/faults/provider/FaultState.h"

#include <mapicode.h>

#include <atomic>
#include <cstring>
#include <span>

namespace
{
// A run's calls come one after another, on whatever threads.
std::atomic<int> depth = 0;
std::atomic<HRESULT> errorBesideSuccess = S_OK;

// The method's name stands in the text before its arguments.
bool IsMethod(const char* method, const char* name)
{
    const char* place = std::strstr(method, name);
    return place && place[std::strlen(name)] == '(';
}

bool Fits(FaultKind kind, const char* method)
{
    const bool changes = IsMethod(method, "SaveChanges") || IsMethod(method, "CopyMessages") ||
                         IsMethod(method, "DeleteMessages");
    return kind == FaultKind::refused || kind == FaultKind::warned ||
           (kind == FaultKind::doneYetRefused && changes);
}
}    // namespace

MapiCall::MapiCall(const char* method) : method(method)
{
    if (depth++ == 0)
        fault = Faults().Count(FaultPlace::mapiCall, method, Fits);
    if (fault && fault->kind == FaultKind::warned)
        errorBesideSuccess = fault->code;
}

MapiCall::~MapiCall()
{
    errorBesideSuccess = S_OK;
    --depth;
}

bool MapiCall::Is(const char* name) const
{
    return IsMethod(method, name);
}

std::optional<HRESULT> MapiCall::Refusal() const
{
    if (!fault)
        return std::nullopt;
    if (fault->kind == FaultKind::doneYetRefused)
        return std::nullopt;
    if (fault->kind == FaultKind::warned)
    {
        if (Is("GetProps") || Is("SetProps") || Is("QueryRows"))
            return std::nullopt;
        if (Is("CopyMessages") || Is("DeleteMessages"))
            return MAPI_W_PARTIAL_COMPLETION;    // of the one message, nothing
    }
    return fault->code;
}

HRESULT MapiCall::Outcome(HRESULT result) const
{
    if (!fault || FAILED(result))
        return result;
    if (fault->kind == FaultKind::warned)
        return Is("QueryRows") ? MAPI_W_POSITION_CHANGED : result;
    return fault->code;
}

void FaultyFillPropValue(SPropValue& property, std::uint32_t tag, const StoredValue& value, void* owner)
{
    FillPropValue(property, tag, value, owner);
    if (errorBesideSuccess == S_OK)
        return;
    property.ulPropTag = CHANGE_PROP_TYPE(tag, PT_ERROR);
    property.Value.err = errorBesideSuccess;
}

HRESULT faulty_property_methods::GetProps(PropertyHolder& holder, const SPropTagArray* tags, ULONG flags,
                                          ULONG* count, SPropValue** values)
{
    const HRESULT result = property_methods::GetProps(holder, tags, flags, count, values);
    if (errorBesideSuccess == S_OK)
        return result;
    for (SPropValue& value : std::span(*values, *count))
    {
        value.ulPropTag = CHANGE_PROP_TYPE(value.ulPropTag, PT_ERROR);
        value.Value.err = errorBesideSuccess;
    }
    return MAPI_W_ERRORS_RETURNED;
}

HRESULT faulty_property_methods::SetProps(PropertyHolder& holder, ULONG count, const SPropValue* values,
                                          SPropProblemArray** problems)
{
    if (errorBesideSuccess == S_OK || !problems)
        return property_methods::SetProps(holder, count, values, problems);
    auto refused = MakeMapiBuffer<SPropProblemArray>(CbNewSPropProblemArray(count));
    refused->cProblem = count;
    for (ULONG index = 0; index < count; ++index)
        refused->aProblem[index] = {index, values[index].ulPropTag, errorBesideSuccess};
    *problems = refused.release();    // now the caller's
    return S_OK;
}
