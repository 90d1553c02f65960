#pragma once

#include "contracts/DispatchIds.h"
#include "win/OleDispatchDriver.h"
#include "win/Variant.h"

#include <windows.h>

#include <mapidefs.h>

// The nodes of a restriction. Each class's `kind` is MAPI's restriction type, by which its parent creates it.

// Met when all restrictions added to it are met.
class CAndRestriction : public COleDispatchDriver
{
public:
    static constexpr LONG kind = RES_AND;

    using COleDispatchDriver::COleDispatchDriver;

    // A new restriction below this one, of the kind that Restriction names.
    template <typename Restriction>
    Restriction Add() const
    {
        return CallMethod<Restriction>(dispid::andRestriction::add, LongVariant(Restriction::kind));
    }
};

// Compares a property with a value.
class CPropertyRestriction : public COleDispatchDriver
{
public:
    static constexpr LONG kind = RES_PROPERTY;

    using COleDispatchDriver::COleDispatchDriver;

    void SetPropTag(ULONG propTag) const;
    void SetRelop(ULONG relop) const;    // RELOP_*
    void SetValue(const VARIANT& value) const;
};

// Looks for a text in a property.
class CContentRestriction : public COleDispatchDriver
{
public:
    static constexpr LONG kind = RES_CONTENT;

    using COleDispatchDriver::COleDispatchDriver;

    void SetFuzzyLevel(ULONG fuzzyLevel) const;    // FL_*
    void SetPropTag(ULONG propTag) const;
    void SetValue(const VARIANT& value) const;
};

// Applies a restriction to the rows of a message's attachment or recipient table.
class CSubRestriction : public COleDispatchDriver
{
public:
    static constexpr LONG kind = RES_SUBRESTRICTION;

    using COleDispatchDriver::COleDispatchDriver;

    void SetSubObject(ULONG propTag) const;    // the sub-objects' table

    // A new restriction on the sub-objects, of the kind that Restriction names.
    template <typename Restriction>
    Restriction SetInner() const
    {
        return CallMethod<Restriction>(dispid::subRestriction::setInner, LongVariant(Restriction::kind));
    }
};
