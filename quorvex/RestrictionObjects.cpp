#include "quorvex/RestrictionObjects.h"

#include "contracts/DispatchIds.h"
#include "quorvex/MapiError.h"

#include <oleauto.h>

namespace
{
// What the caller's VARIANT holds, its own even where the caller's only refers to it. No property's value is
// an object, and one of the restriction's own, kept in it, would keep it alive for ever; nor is any an array
// but of bytes.
_variant_t CopyOf(const VARIANT& value)
{
    _variant_t copy;
    CheckMapi(VariantCopyInd(&copy, const_cast<VARIANT*>(&value)), L"take the value of a condition");
    const bool isObject = copy.vt == VT_DISPATCH || copy.vt == VT_UNKNOWN;
    if (isObject || ((copy.vt & VT_ARRAY) && copy.vt != (VT_ARRAY | VT_UI1)))
        throw MapiError(E_INVALIDARG,
                        L"The value of a condition is a text, a number, a time or an array of bytes.");
    return copy;
}
}    // namespace

ComPtr<IDispatch> MakeRestrictionObject(std::shared_ptr<RestrictionTree> tree,
                                        std::shared_ptr<RestrictionNode> node)
{
    switch (node->kind)
    {
    case RES_CONTENT:
        return MakeObject<CContentRestriction>(std::move(tree), std::move(node));
    case RES_PROPERTY:
        return MakeObject<CPropertyRestriction>(std::move(tree), std::move(node));
    case RES_EXIST:
        return MakeObject<CExistRestriction>(std::move(tree), std::move(node));
    case RES_SUBRESTRICTION:
        return MakeObject<CSubRestriction>(std::move(tree), std::move(node));
    default:
        return MakeObject<CAndRestriction>(std::move(tree), std::move(node));
    }
}

CRestriction::CRestriction(std::shared_ptr<RestrictionTree> itsTree, std::shared_ptr<RestrictionNode> itsNode)
    : tree(std::move(itsTree)),
      node(std::move(itsNode))
{
}

ComPtr<IDispatch> CRestriction::AddChild(long kind)
{
    std::shared_ptr<RestrictionNode> child = MakeNode(static_cast<ULONG>(kind), node.get());
    ComPtr<IDispatch> object = MakeRestrictionObject(tree, child);
    Set([&](RestrictionNode& parent) { parent.children.push_back(std::move(child)); });
    return object;
}

std::span<const Operation> CAndRestriction::Operations() const noexcept
{
    static constexpr Operation operations[] = {
        Method<&CAndRestriction::Add>(dispid::andRestriction::add),
    };
    return operations;
}

std::span<const Operation> CPropertyRestriction::Operations() const noexcept
{
    static constexpr Operation operations[] = {
        Put<&CPropertyRestriction::PutPropTag>(dispid::propertyRestriction::propTag),
        Put<&CPropertyRestriction::PutValue>(dispid::propertyRestriction::value),
        Put<&CPropertyRestriction::PutRelop>(dispid::propertyRestriction::relop),
    };
    return operations;
}

void CPropertyRestriction::PutPropTag(long tag)
{
    Set([&](RestrictionNode& node) { node.tag = static_cast<ULONG>(tag); });
}

void CPropertyRestriction::PutRelop(long relop)
{
    Set([&](RestrictionNode& node) { node.relop = static_cast<ULONG>(relop); });
}

void CPropertyRestriction::PutValue(const VARIANT& value)
{
    _variant_t copy = CopyOf(value);
    Set([&](RestrictionNode& node) { node.value.Attach(copy); });
}

std::span<const Operation> CContentRestriction::Operations() const noexcept
{
    static constexpr Operation operations[] = {
        Put<&CContentRestriction::PutPropTag>(dispid::contentRestriction::propTag),
        Put<&CContentRestriction::PutValue>(dispid::contentRestriction::value),
        Put<&CContentRestriction::PutFuzzyLevel>(dispid::contentRestriction::fuzzyLevel),
    };
    return operations;
}

void CContentRestriction::PutPropTag(long tag)
{
    Set([&](RestrictionNode& node) { node.tag = static_cast<ULONG>(tag); });
}

void CContentRestriction::PutFuzzyLevel(long level)
{
    Set([&](RestrictionNode& node) { node.fuzzyLevel = static_cast<ULONG>(level); });
}

void CContentRestriction::PutValue(const VARIANT& value)
{
    _variant_t copy = CopyOf(value);
    Set([&](RestrictionNode& node) { node.value.Attach(copy); });
}

std::span<const Operation> CExistRestriction::Operations() const noexcept
{
    static constexpr Operation operations[] = {
        Put<&CExistRestriction::PutPropTag>(dispid::propertyRestriction::propTag),
    };
    return operations;
}

void CExistRestriction::PutPropTag(long tag)
{
    Set([&](RestrictionNode& node) { node.tag = static_cast<ULONG>(tag); });
}

std::span<const Operation> CSubRestriction::Operations() const noexcept
{
    static constexpr Operation operations[] = {
        Method<&CSubRestriction::SetInner>(dispid::subRestriction::setInner),
        Put<&CSubRestriction::PutSubObject>(dispid::subRestriction::subObject),
    };
    return operations;
}

void CSubRestriction::PutSubObject(long tag)
{
    Set([&](RestrictionNode& node) { node.tag = static_cast<ULONG>(tag); });
}
