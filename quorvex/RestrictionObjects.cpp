#include "quorvex/RestrictionObjects.h"

#include "contracts/DispatchIds.h"

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
    Set([&](RestrictionNode& node) { TakeValue(node, value); });
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
    Set([&](RestrictionNode& node) { TakeValue(node, value); });
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
