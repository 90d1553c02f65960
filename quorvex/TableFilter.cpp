#include "quorvex/TableFilter.h"

#include "contracts/DispatchIds.h"
#include "quorvex/RestrictionObjects.h"

#include <utility>

CTableFilter::CTableFilter(std::shared_ptr<ItemTableCursor> itsCursor,
                           std::shared_ptr<RestrictionTree> itsTree)
    : cursor(std::move(itsCursor)),
      tree(std::move(itsTree))
{
}

std::span<const Operation> CTableFilter::Operations() const noexcept
{
    static constexpr Operation operations[] = {
        Method<&CTableFilter::Clear>(dispid::tableFilter::clear),
        Method<&CTableFilter::SetRestriction>(dispid::tableFilter::setRestriction),
        Method<&CTableFilter::FindFirst>(dispid::tableFilter::findFirst),
        Method<&CTableFilter::FindNext>(dispid::tableFilter::findNext),
    };
    return operations;
}

void CTableFilter::Clear()
{
    const std::lock_guard lock(tree->mutex);
    tree->root.reset();
    cursor->Reset();
}

ComPtr<IDispatch> CTableFilter::SetRestriction(long kind)
{
    std::shared_ptr<RestrictionNode> root = MakeNode(static_cast<ULONG>(kind), nullptr);
    ComPtr<IDispatch> object = MakeRestrictionObject(tree, root);
    const std::lock_guard lock(tree->mutex);
    tree->root = std::move(root);
    cursor->Reset();
    return object;
}

bool CTableFilter::FindFirst(bool forward)
{
    const std::lock_guard lock(tree->mutex);
    return cursor->FindFirst(tree->root.get(), forward);
}

bool CTableFilter::FindNext(bool forward)
{
    const std::lock_guard lock(tree->mutex);
    return cursor->FindNext(tree->root.get(), forward);
}
