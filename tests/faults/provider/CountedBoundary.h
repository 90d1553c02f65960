// Included before all else into the provider's sources that have MAPI methods: sends their one way to the
// outside through the fault plan.
#pragma once

#include "localmapi/ComBoundary.h"
#include "localmapi/PropertyConversion.h"
#include "localmapi/PropertyMethods.h"
#include "tests/faults/provider/MapiFaults.h"

#include <source_location>
#include <utility>

template <typename Action>
HRESULT CountedBoundary(LastError& lastError, Action&& action,
                        const std::source_location& caller = std::source_location::current()) noexcept
{
    const MapiCall call(caller.function_name());
    if (const std::optional<HRESULT> refusal = call.Refusal())
        return *refusal;
    return call.Outcome(ComBoundary(lastError, std::forward<Action>(action)));
}

template <typename Action>
HRESULT CountedBoundary(Action&& action,
                        const std::source_location& caller = std::source_location::current()) noexcept
{
    LastError forgotten;
    return CountedBoundary(forgotten, std::forward<Action>(action), caller);
}

namespace faulty_property_methods
{
using namespace property_methods;
}

#define ComBoundary CountedBoundary
#define property_methods faulty_property_methods
#define FillPropValue FaultyFillPropValue
