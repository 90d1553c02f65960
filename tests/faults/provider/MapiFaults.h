#pragma once

#include "localmapi/PropertyHolder.h"
#include "tests/faults/FaultPlan.h"

#include <windows.h>

#include <mapidefs.h>

#include <optional>

// One call of a MAPI method on its way through the provider. Counted unless it is made by another call of the
// same provider.
class MapiCall
{
public:
    explicit MapiCall(const char* method);
    MapiCall(const MapiCall&) = delete;
    MapiCall& operator=(const MapiCall&) = delete;
    ~MapiCall();

    // What to answer instead of doing it; nothing when it is to be done.
    std::optional<HRESULT> Refusal() const;
    // What to answer when doing it came to `result`.
    HRESULT Outcome(HRESULT result) const;

private:
    bool Is(const char* name) const;

    const char* method;
    std::optional<FaultPlan> fault;
};

// Fills a column of a table's row; with an error when the call is to be warned.
void FaultyFillPropValue(SPropValue& property, std::uint32_t tag, const StoredValue& value, void* owner);

// The provider's own implementation of IMAPIProp, but for errors beside success when the call is to be
// warned.
namespace faulty_property_methods
{
HRESULT GetProps(PropertyHolder& holder, const SPropTagArray* tags, ULONG flags, ULONG* count,
                 SPropValue** values);
HRESULT SetProps(PropertyHolder& holder, ULONG count, const SPropValue* values, SPropProblemArray** problems);
}    // namespace faulty_property_methods
