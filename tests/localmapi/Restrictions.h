#pragma once

#include <windows.h>

#include <mapidefs.h>

#include <cstdint>
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

    // With one inner restriction or none.
    SRestriction Comment(std::vector<SRestriction> inner)
    {
        SRestriction restriction = Of(RES_COMMENT);
        restriction.res.resComment.lpRes = inner.empty() ? nullptr : Keep(std::move(inner));
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

    SPropValue Narrow(ULONG tag, const std::string& text)
    {
        SPropValue value = {};
        value.ulPropTag = tag;
        value.Value.lpszA = narrowTexts.emplace_back(text).data();
        return value;
    }

    // Of type PT_BINARY or PT_CLSID.
    SPropValue Bytes(ULONG tag, const std::vector<BYTE>& bytes)
    {
        SPropValue value = {};
        value.ulPropTag = tag;
        BYTE* const kept = blobs.emplace_back(bytes).data();
        if (PROP_TYPE(tag) == PT_CLSID)
            value.Value.lpguid = reinterpret_cast<GUID*>(kept);
        else
            value.Value.bin = {static_cast<ULONG>(bytes.size()), kept};
        return value;
    }

    static SPropValue Number(ULONG tag, LONG number) { return Integer(tag, number); }

    // Of any type that is a whole number or a time.
    static SPropValue Integer(ULONG tag, std::int64_t number)
    {
        SPropValue value = {};
        value.ulPropTag = tag;
        value.Value.li.QuadPart = number;
        return value;
    }

    static SPropValue Real(ULONG tag, double number)
    {
        SPropValue value = {};
        value.ulPropTag = tag;
        value.Value.dbl = number;
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
    std::deque<std::string> narrowTexts;
    std::deque<std::vector<BYTE>> blobs;
    std::deque<SPropValue> values;
    std::deque<std::vector<SRestriction>> lists;
};
