#pragma once

#include "quorvex/DispatchObject.h"
#include "quorvex/ItemTableCursor.h"
#include "quorvex/RestrictionTree.h"

#include <windows.h>

#include <oaidl.h>

#include <memory>
#include <span>

// The filter of an item table: its restriction, and the search that moves the table's current row.
class CTableFilter : public CDispatchObject
{
public:
    CTableFilter(std::shared_ptr<ItemTableCursor> cursor, std::shared_ptr<RestrictionTree> tree);

    void Clear();
    ComPtr<IDispatch> SetRestriction(long kind);
    bool FindFirst(bool forward);
    bool FindNext(bool forward);

protected:
    std::span<const Operation> Operations() const noexcept override;

private:
    const std::shared_ptr<ItemTableCursor> cursor;
    const std::shared_ptr<RestrictionTree> tree;
};
