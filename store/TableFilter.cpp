#include "store/TableFilter.h"

#include "win/Variant.h"

void CTableFilter::Clear() const
{
    CallMethod<void>(dispid::tableFilter::clear);
}

bool CTableFilter::FindFirst() const
{
    return CallMethod<bool>(dispid::tableFilter::findFirst, BoolVariant(true));
}

bool CTableFilter::FindNext() const
{
    return CallMethod<bool>(dispid::tableFilter::findNext, BoolVariant(true));
}
