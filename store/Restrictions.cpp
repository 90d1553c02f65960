#include "store/Restrictions.h"

namespace
{
// MAPI's tags and operators are unsigned; the contract carries them as VT_I4 with the same bits.
_variant_t BitsVariant(ULONG bits)
{
    return LongVariant(static_cast<LONG>(bits));
}
}    // namespace

void CPropertyRestriction::SetPropTag(ULONG propTag) const
{
    PutProperty(dispid::propertyRestriction::propTag, BitsVariant(propTag));
}

void CPropertyRestriction::SetRelop(ULONG relop) const
{
    PutProperty(dispid::propertyRestriction::relop, BitsVariant(relop));
}

void CPropertyRestriction::SetValue(const VARIANT& value) const
{
    PutProperty(dispid::propertyRestriction::value, value);
}

void CContentRestriction::SetFuzzyLevel(ULONG fuzzyLevel) const
{
    PutProperty(dispid::contentRestriction::fuzzyLevel, BitsVariant(fuzzyLevel));
}

void CContentRestriction::SetPropTag(ULONG propTag) const
{
    PutProperty(dispid::contentRestriction::propTag, BitsVariant(propTag));
}

void CContentRestriction::SetValue(const VARIANT& value) const
{
    PutProperty(dispid::contentRestriction::value, value);
}

void CSubRestriction::SetSubObject(ULONG propTag) const
{
    PutProperty(dispid::subRestriction::subObject, BitsVariant(propTag));
}
