#pragma once

#include "quorvex/DispatchObject.h"
#include "quorvex/RestrictionTree.h"

#include <windows.h>

#include <oaidl.h>

#include <memory>
#include <span>

// The automation objects through which a filter's restriction is set up. Each stands for one node of the
// filter's tree and keeps that node alive; the filter takes the values as they are when it searches.

// The object for a node, by the node's kind.
ComPtr<IDispatch> MakeRestrictionObject(std::shared_ptr<RestrictionTree> tree,
                                        std::shared_ptr<RestrictionNode> node);

class CRestriction : public CDispatchObject
{
public:
    CRestriction(std::shared_ptr<RestrictionTree> tree, std::shared_ptr<RestrictionNode> node);

protected:
    // Adds a child of the kind and returns its object.
    ComPtr<IDispatch> AddChild(long kind);

    // Runs what changes the node.
    template <class Change>
    void Set(Change&& change)
    {
        const std::lock_guard lock(tree->mutex);
        change(*node);
    }

private:
    const std::shared_ptr<RestrictionTree> tree;
    const std::shared_ptr<RestrictionNode> node;
};

// AND; OR and NOT have the same operation.
class CAndRestriction : public CRestriction
{
public:
    using CRestriction::CRestriction;

    ComPtr<IDispatch> Add(long kind) { return AddChild(kind); }

protected:
    std::span<const Operation> Operations() const noexcept override;
};

class CPropertyRestriction : public CRestriction
{
public:
    using CRestriction::CRestriction;

    void PutPropTag(long tag);
    void PutRelop(long relop);
    void PutValue(const VARIANT& value);

protected:
    std::span<const Operation> Operations() const noexcept override;
};

class CContentRestriction : public CRestriction
{
public:
    using CRestriction::CRestriction;

    void PutPropTag(long tag);
    void PutFuzzyLevel(long level);
    void PutValue(const VARIANT& value);

protected:
    std::span<const Operation> Operations() const noexcept override;
};

class CExistRestriction : public CRestriction
{
public:
    using CRestriction::CRestriction;

    void PutPropTag(long tag);

protected:
    std::span<const Operation> Operations() const noexcept override;
};

// Every inner restriction that is set must be met by some row of the sub-object table.
class CSubRestriction : public CRestriction
{
public:
    using CRestriction::CRestriction;

    void PutSubObject(long tag);
    ComPtr<IDispatch> SetInner(long kind) { return AddChild(kind); }

protected:
    std::span<const Operation> Operations() const noexcept override;
};
