#pragma once

#include <windows.h>

#include <mapidefs.h>

#include <deque>
#include <string>
#include <utility>
#include <vector>

// Builds restrictions; what it gave out lives as long as it does.
class Restrictions
{
public:
    SRestriction Property(ULONG relop, ULONG tag, const SPropValue& value)
    {
        SRestriction restriction = Of(RES_PROPERTY);
        restriction.res.resProperty = {relop, tag, Keep(value)};
        return restriction;
    }

    SRestriction Content(ULONG fuzzyLevel, ULONG tag, const SPropValue& value)
    {
        SRestriction restriction = Of(RES_CONTENT);
        restriction.res.resContent = {fuzzyLevel, tag, Keep(value)};
        return restriction;
    }

    SRestriction All(std::vector<SRestriction> inner)
    {
        SRestriction restriction = Of(RES_AND);
        restriction.res.resAnd = {static_cast<ULONG>(inner.size()), Keep(inner)};
        return restriction;
    }

    SRestriction Any(std::vector<SRestriction> inner)
    {
        SRestriction restriction = Of(RES_OR);
        restriction.res.resOr = {static_cast<ULONG>(inner.size()), Keep(inner)};
        return restriction;
    }

    SRestriction Not(const SRestriction& inner)
    {
        SRestriction restriction = Of(RES_NOT);
        restriction.res.resNot = {0, Keep({inner})};
        return restriction;
    }

    SRestriction Sub(ULONG subObject, const SRestriction& inner)
    {
        SRestriction restriction = Of(RES_SUBRESTRICTION);
        restriction.res.resSub = {subObject, Keep({inner})};
        return restriction;
    }

    SRestriction Compare(ULONG relop, ULONG left, ULONG right)
    {
        SRestriction restriction = Of(RES_COMPAREPROPS);
        restriction.res.resCompareProps = {relop, left, right};
        return restriction;
    }

    SRestriction BitMask(ULONG relation, ULONG tag, ULONG mask)
    {
        SRestriction restriction = Of(RES_BITMASK);
        restriction.res.resBitMask = {relation, tag, mask};
        return restriction;
    }

    SRestriction Size(ULONG relop, ULONG tag, ULONG size)
    {
        SRestriction restriction = Of(RES_SIZE);
        restriction.res.resSize = {relop, tag, size};
        return restriction;
    }

    SRestriction Exist(ULONG tag)
    {
        SRestriction restriction = Of(RES_EXIST);
        restriction.res.resExist = {0, tag, 0};
        return restriction;
    }

    SPropValue Text(ULONG tag, const wchar_t* text)
    {
        SPropValue value = {};
        value.ulPropTag = tag;
        value.Value.lpszW = texts.emplace_back(text).data();
        return value;
    }

    static SPropValue Number(ULONG tag, LONG number)
    {
        SPropValue value = {};
        value.ulPropTag = tag;
        value.Value.l = number;
        return value;
    }

    static SRestriction Of(ULONG kind)
    {
        SRestriction restriction = {};
        restriction.rt = kind;
        return restriction;
    }

private:
    SPropValue* Keep(const SPropValue& value) { return &values.emplace_back(value); }
    SRestriction* Keep(std::vector<SRestriction> inner)
    {
        return lists.emplace_back(std::move(inner)).data();
    }

    std::deque<std::wstring> texts;
    std::deque<SPropValue> values;
    std::deque<std::vector<SRestriction>> lists;
};
