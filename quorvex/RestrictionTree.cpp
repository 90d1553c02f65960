#include "quorvex/RestrictionTree.h"

#include "quorvex/AutomationDate.h"
#include "quorvex/DispatchArguments.h"
#include "quorvex/EntryId.h"
#include "quorvex/MapiError.h"
#include "quorvex/PropertyReader.h"
#include "quorvex/SafeArrays.h"

#include <mapicode.h>
#include <mapitags.h>
#include <oleauto.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <utility>

namespace
{
// Deeper than any filter is, and shallow enough for every thread's stack.
constexpr int deepest = 100;

_variant_t Converted(const _variant_t& value, VARTYPE type)
{
    _variant_t converted;
    // Some platform headers declare the source, which is only read, without const.
    if (FAILED(VariantChangeType(&converted, const_cast<_variant_t*>(&value), 0, type)))
        throw MapiError(E_INVALIDARG, L"The value of a condition does not suit the type of its property.");
    return converted;
}

std::wstring TextOf(BSTR text)
{
    return {text ? text : L"", SysStringLen(text)};
}

std::wstring TextValue(const _variant_t& value)
{
    const _variant_t text = Converted(value, VT_BSTR);
    return TextOf(text.bstrVal);
}

std::vector<std::uint8_t> BinaryValue(const _variant_t& value)
{
    if (value.vt != (VT_ARRAY | VT_UI1))
        return FromHex(TextValue(value));
    const std::optional<std::vector<std::uint8_t>> bytes = BytesOfArray(value.parray);
    if (!bytes)
        throw MapiError(E_INVALIDARG, L"A binary value is an array of bytes with one dimension.");
    return *bytes;
}

std::int64_t NumberValue(const _variant_t& value, ULONG tag)
{
    SPropValue prop{};
    prop.ulPropTag = tag;
    switch (PROP_TYPE(tag))
    {
    case PT_SYSTIME:
        prop.Value.ft = UtcFromLocalDate(Converted(value, VT_DATE).date);
        return NumberOf(prop).value();
    case PT_BOOLEAN:
        return Converted(value, VT_BOOL).boolVal != VARIANT_FALSE ? 1 : 0;
    default:
        return Converted(value, VT_I8).llVal;
    }
}

struct ValueOfTag
{
    RestrictionValue operator()(const SharedText& text) const
    {
        if (IsTextTag(tag))
            return text;
        if (IsNumberTag(tag))
            return NumberValue(TextVariant(*text), tag);
        return FromHex(*text);
    }

    RestrictionValue operator()(const _variant_t& value) const
    {
        if (IsTextTag(tag))
            return TextValue(value);
        if (IsNumberTag(tag))
            return NumberValue(value, tag);
        return BinaryValue(value);
    }

    ULONG tag;
};

// No property's value is an object, and one of the restriction's own, kept in it, would keep it alive for
// ever; nor is any an array but of bytes.
void CheckType(const _variant_t& value)
{
    const bool isObject = value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN;
    if (isObject || ((value.vt & VT_ARRAY) && value.vt != (VT_ARRAY | VT_UI1)))
        throw MapiError(E_INVALIDARG,
                        L"The value of a condition is a text, a number, a time or an array of bytes.");
}

void Require(bool isRight, const wchar_t* otherwise)
{
    if (!isRight)
        throw MapiError(E_INVALIDARG, otherwise);
}

void CheckProperty(const Restriction& condition)
{
    Require(IsTextTag(condition.tag) || IsNumberTag(condition.tag) || IsBinaryTag(condition.tag),
            L"A property condition compares a text, an integer, a boolean, a time or a binary property.");
    Require(condition.relop <= RELOP_NE, L"A property condition compares by RELOP_LT (0) to RELOP_NE (5).");
}

void CheckContent(const Restriction& condition)
{
    Require(IsTextTag(condition.tag), L"A content condition looks into a text property.");
    Require(LOWORD(condition.fuzzyLevel) <= FL_PREFIX,
            L"A content condition looks for the full text (0), a part of it (1) or its beginning (2).");
}

void CheckSubObject(const Restriction& condition)
{
    const ULONG table = PROP_ID(condition.tag);
    Require(table == PROP_ID(PR_MESSAGE_ATTACHMENTS) || table == PROP_ID(PR_MESSAGE_RECIPIENTS),
            L"A sub-restriction applies to PR_MESSAGE_ATTACHMENTS or PR_MESSAGE_RECIPIENTS.");
}

void Check(const Restriction& condition)
{
    switch (condition.kind)
    {
    case RES_PROPERTY:
        return CheckProperty(condition);
    case RES_CONTENT:
        return CheckContent(condition);
    case RES_EXIST:
        return Require(condition.tag != 0, L"An exist condition names a property.");
    case RES_SUBRESTRICTION:
        return CheckSubObject(condition);
    default:
        return;
    }
}
}    // namespace

std::shared_ptr<RestrictionNode> MakeNode(ULONG kind, const RestrictionNode* parent)
{
    constexpr ULONG kinds[] = {RES_AND,      RES_OR,    RES_NOT,           RES_CONTENT,
                               RES_PROPERTY, RES_EXIST, RES_SUBRESTRICTION};
    Require(
        std::ranges::find(kinds, kind) != std::end(kinds),
        L"The kinds of restriction are AND (0), OR (1), NOT (2), content (3), property (4), exist (8) and "
        L"sub-restriction (9).");
    auto node = std::make_shared<RestrictionNode>();
    node->kind = kind;
    node->depth = parent ? parent->depth + 1 : 0;
    if (node->depth > deepest)
        throw MapiError(MAPI_E_TOO_COMPLEX, L"The restriction has too many levels.");
    return node;
}

void TakeValue(RestrictionNode& node, const VARIANT& value)
{
    if (value.vt == VT_BSTR)
    {
        node.value = SharedText(TextOf(value.bstrVal));
        return;
    }
    _variant_t copy;
    CheckMapi(VariantCopyInd(&copy, const_cast<VARIANT*>(&value)), L"take the value of a condition");
    CheckType(copy);
    if (copy.vt == VT_BSTR)
        node.value = SharedText(TextOf(copy.bstrVal));
    else
        node.value = std::move(copy);
}

Restriction ToRestriction(const RestrictionNode& node)
{
    Restriction restriction;
    restriction.kind = node.kind;
    restriction.tag = UnicodeForm(node.tag);
    restriction.relop = node.relop;
    restriction.fuzzyLevel = node.fuzzyLevel;
    Check(restriction);
    if (node.kind == RES_PROPERTY || node.kind == RES_CONTENT)
        restriction.value = std::visit(ValueOfTag{restriction.tag}, node.value);
    restriction.children.reserve(node.children.size());
    for (const auto& child : node.children)
        restriction.children.push_back(ToRestriction(*child));
    return restriction;
}
