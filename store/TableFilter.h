#pragma once

#include "contracts/DispatchIds.h"
#include "store/Restrictions.h"
#include "win/OleDispatchDriver.h"

// The filter of an item table and its walk over the rows that match.
class CTableFilter : public COleDispatchDriver
{
public:
    using COleDispatchDriver::COleDispatchDriver;

    void Clear() const;

    // The new root restriction, of the kind that Restriction names.
    template <typename Restriction>
    Restriction SetRestriction() const
    {
        return CallMethod<Restriction>(dispid::tableFilter::setRestriction, LongVariant(Restriction::kind));
    }

    // Each moves to a row that matches; false when there is none left.
    bool FindFirst() const;
    bool FindNext() const;
};
