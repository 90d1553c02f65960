#include "localmapi/PropertyMethods.h"

#include "localmapi/Arguments.h"
#include "localmapi/MapiMemory.h"
#include "localmapi/PropertyConversion.h"
#include "localmapi/PropertyStream.h"
#include "localmapi/storage/PropertyTag.h"

#include <mapiguid.h>

#include <algorithm>

namespace
{
struct Problem
{
    ULONG index;
    ULONG tag;
    SCODE code;
};

std::span<const ULONG> TagsOf(const SPropTagArray& tags)
{
    return {tags.aulPropTag, tags.cValues};
}

// The tag in the form in which a caller without Unicode gets it.
ULONG TagForCaller(std::uint32_t tag, ULONG flags)
{
    const bool narrow = PROP_TYPE(tag) == PT_UNICODE && !(flags & MAPI_UNICODE);
    return narrow ? CHANGE_PROP_TYPE(tag, PT_STRING8) : tag;
}

// Gives tags whose type the caller leaves open the type the object's property has.
std::vector<ULONG> ResolveTypes(PropertyHolder& holder, std::span<const ULONG> asked, ULONG flags)
{
    std::vector<ULONG> tags(asked.begin(), asked.end());
    std::vector<std::uint32_t> own;
    for (ULONG& tag : tags)
    {
        if (PROP_TYPE(tag) != PT_UNSPECIFIED)
            continue;
        if (own.empty())
            own = holder.ListTags();
        const auto found = std::find_if(own.begin(), own.end(),
                                        [&](std::uint32_t each) { return PROP_ID(each) == PROP_ID(tag); });
        if (found != own.end())
            tag = TagForCaller(*found, flags);
    }
    return tags;
}

std::vector<ULONG> AllTags(PropertyHolder& holder, ULONG flags)
{
    std::vector<ULONG> tags;
    for (const std::uint32_t tag : holder.ListTags())
        tags.push_back(TagForCaller(tag, flags));
    return tags;
}

MapiBuffer<SPropProblemArray> MakeProblems(const std::vector<Problem>& problems)
{
    auto array = MakeMapiBuffer<SPropProblemArray>(CbNewSPropProblemArray(problems.size()));
    for (const Problem& problem : problems)
        array->aProblem[array->cProblem++] = {problem.index, problem.tag, problem.code};
    return array;
}

HRESULT AnswerProblems(const std::vector<Problem>& problems, SPropProblemArray** answer)
{
    if (answer && !problems.empty())
        *answer = MakeProblems(problems).release();    // now the caller's
    return S_OK;
}

void NullOut(SPropProblemArray** problems)
{
    if (problems)
        *problems = nullptr;
}

bool SaysNothing(const SPropValue& value)
{
    return PROP_TYPE(value.ulPropTag) == PT_NULL || PROP_TYPE(value.ulPropTag) == PT_ERROR;
}

// Adds what may be changed to `values`; the others become problems.
void TakeValue(PropertyHolder& holder, const SPropValue& property, ULONG index,
               std::map<std::uint32_t, StoredValue>& values, std::vector<Problem>& problems)
{
    const std::uint32_t tag = StoredTag(property.ulPropTag);
    SCODE code = holder.ProblemWithChanging(tag);
    try
    {
        if (code == S_OK)
            values.insert_or_assign(tag, StoredValueOf(property));
    }
    catch (const MapiError& error)
    {
        // One value that the store does not keep is that value's problem, not the call's.
        code = error.result;
    }
    if (code != S_OK)
        problems.push_back({index, property.ulPropTag, code});
}

bool Contains(const SPropTagArray* tags, std::uint32_t tag)
{
    return tags &&
           std::ranges::any_of(TagsOf(*tags), [tag](ULONG each) { return PROP_ID(each) == PROP_ID(tag); });
}

Microsoft::WRL::ComPtr<IMAPIProp> DestinationOf(void* destination)
{
    Microsoft::WRL::ComPtr<IMAPIProp> properties;
    if (!destination ||
        FAILED(static_cast<IUnknown*>(destination)->QueryInterface(IID_IMAPIProp, &properties)))
        throw MapiError(MAPI_E_INVALID_PARAMETER);
    return properties;
}

// Which properties CopyProps is to copy: all that can be set somewhere else.
std::vector<std::uint32_t> TagsToCopy(PropertyHolder& holder, const SPropTagArray* included,
                                      const SPropTagArray* excluded)
{
    std::vector<std::uint32_t> tags;
    for (const std::uint32_t tag : holder.ListTags())
    {
        const bool own = holder.ProblemWithChanging(tag) == MAPI_E_COMPUTED;
        if (!own && !Contains(excluded, tag) && (!included || Contains(included, tag)))
            tags.push_back(tag);
    }
    return tags;
}

MapiBuffer<SPropValue> MakeValues(PropertyHolder& holder, std::span<const ULONG> tags)
{
    std::vector<std::uint32_t> stored(tags.size());
    std::transform(tags.begin(), tags.end(), stored.begin(), StoredTag);
    auto values = MakeMapiBuffer<SPropValue>(tags.size() * sizeof(SPropValue));
    holder.GiveValues(stored, [&](std::size_t i, const StoredValue& value)
                      { FillPropValue(values.get()[i], tags[i], value, values.get()); });
    return values;
}
}    // namespace

HRESULT property_methods::GetProps(PropertyHolder& holder, const SPropTagArray* tags, ULONG flags,
                                   ULONG* count, SPropValue** values)
{
    Given(count) = 0;
    Given(values) = nullptr;
    RequireKnownFlags(flags, MAPI_UNICODE);
    if (tags && tags->cValues == 0)
        throw MapiError(MAPI_E_INVALID_PARAMETER);
    const std::vector<ULONG> asked =
        tags ? ResolveTypes(holder, TagsOf(*tags), flags) : AllTags(holder, flags);

    auto read = MakeValues(holder, asked);
    const bool anyMissing =
        std::any_of(read.get(), read.get() + asked.size(),
                    [](const SPropValue& value) { return PROP_TYPE(value.ulPropTag) == PT_ERROR; });
    *count = static_cast<ULONG>(asked.size());
    *values = read.release();    // now the caller's
    return anyMissing ? MAPI_W_ERRORS_RETURNED : S_OK;
}

HRESULT property_methods::GetPropList(PropertyHolder& holder, ULONG flags, SPropTagArray** tags)
{
    Given(tags) = nullptr;
    RequireKnownFlags(flags, MAPI_UNICODE);
    const std::vector<ULONG> all = AllTags(holder, flags);
    auto list = MakeMapiBuffer<SPropTagArray>(CbNewSPropTagArray(all.size()));
    list->cValues = static_cast<ULONG>(all.size());
    std::copy(all.begin(), all.end(), list->aulPropTag);
    *tags = list.release();    // now the caller's
    return S_OK;
}

HRESULT property_methods::SetProps(PropertyHolder& holder, ULONG count, const SPropValue* values,
                                   SPropProblemArray** problems)
{
    NullOut(problems);
    if (count == 0 || !values)
        throw MapiError(MAPI_E_INVALID_PARAMETER);
    std::map<std::uint32_t, StoredValue> taken;
    std::vector<Problem> refused;
    for (ULONG index = 0; index < count; ++index)
    {
        if (!SaysNothing(values[index]))
            TakeValue(holder, values[index], index, taken, refused);
    }
    if (!taken.empty())
        holder.WriteValues(taken);
    else if (!refused.empty() && refused.front().code == MAPI_E_NO_ACCESS)
        throw MapiError(MAPI_E_NO_ACCESS);
    return AnswerProblems(refused, problems);
}

HRESULT property_methods::DeleteProps(PropertyHolder& holder, const SPropTagArray* tags,
                                      SPropProblemArray** problems)
{
    NullOut(problems);
    if (!tags || tags->cValues == 0)
        throw MapiError(MAPI_E_INVALID_PARAMETER);
    std::map<std::uint32_t, StoredValue> removed;
    std::vector<Problem> refused;
    const std::vector<ULONG> resolved = ResolveTypes(holder, TagsOf(*tags), MAPI_UNICODE);
    for (ULONG index = 0; index < tags->cValues; ++index)
    {
        const std::uint32_t tag = StoredTag(resolved[index]);
        const SCODE code = holder.ProblemWithChanging(tag);
        if (code == MAPI_E_NO_ACCESS)
            throw MapiError(MAPI_E_NO_ACCESS);
        if (code == S_OK)
            removed[tag] = {};
        else
            refused.push_back({index, tags->aulPropTag[index], code});
    }
    if (!removed.empty())
        holder.WriteValues(removed);
    return AnswerProblems(refused, problems);
}

HRESULT property_methods::OpenProperty(PropertyHolder& holder, IUnknown& owner, ULONG tag, const IID* iid,
                                       ULONG flags, IUnknown** opened)
{
    Given(opened) = nullptr;
    RequireKnownFlags(flags, MAPI_CREATE | MAPI_MODIFY | MAPI_DEFERRED_ERRORS);
    if (iid && *iid == IID_IMAPITable)
    {
        auto table = holder.OpenObjectTable(tag);
        if (!table)
            throw MapiError(MAPI_E_NOT_FOUND);
        *opened = table.Detach();    // now the caller's
        return S_OK;
    }
    if (!iid || *iid != IID_IStream)
        throw MapiError(MAPI_E_INTERFACE_NOT_SUPPORTED);
    *opened = OpenPropertyStream(holder, owner, tag, flags).Detach();    // now the caller's
    return S_OK;
}

HRESULT property_methods::CopyProps(PropertyHolder& holder, const SPropTagArray* included,
                                    const SPropTagArray* excluded, void* destination, ULONG flags,
                                    SPropProblemArray** problems)
{
    NullOut(problems);
    RequireKnownFlags(flags, MAPI_DECLINE_OK);
    if (!holder.CanBeCopied())
        throw MapiError(MAPI_E_NO_SUPPORT);
    const auto target = DestinationOf(destination);

    const std::vector<std::uint32_t> tags = TagsToCopy(holder, included, excluded);
    if (!tags.empty())
    {
        const std::vector<ULONG> asked(tags.begin(), tags.end());
        const auto values = MakeValues(holder, asked);
        const HRESULT result = target->SetProps(static_cast<ULONG>(asked.size()), values.get(), problems);
        if (FAILED(result))
            throw MapiError(result);
    }
    std::vector<std::uint32_t> left;
    for (const std::uint32_t part : {tag::messageRecipients, tag::messageAttachments})
    {
        if (Contains(excluded, part) || (included && !Contains(included, part)))
            left.push_back(part);
    }
    holder.CopyPartsTo(*target.Get(), left);
    return S_OK;
}
