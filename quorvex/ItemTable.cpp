#include "quorvex/ItemTable.h"

#include "contracts/DispatchIds.h"
#include "quorvex/DispatchObject.h"
#include "quorvex/ItemTableCursor.h"
#include "quorvex/MapiError.h"
#include "quorvex/RestrictionTree.h"
#include "quorvex/SafeArrays.h"
#include "quorvex/SessionContext.h"
#include "quorvex/TableFilter.h"

#include <span>
#include <utility>

namespace
{
class CItemTable : public CDispatchObject
{
public:
    CItemTable(std::shared_ptr<SessionContext> itsSession, std::shared_ptr<FolderSnapshot> snapshot)
        : session(std::move(itsSession)),
          cursor(std::make_shared<ItemTableCursor>(std::move(snapshot))),
          tree(std::make_shared<RestrictionTree>())
    {
    }

    void PutColumns(const VARIANT& tags);
    _variant_t GetRow() { return VariantsAsArray(cursor->Row()); }
    ComPtr<IDispatch> GetFilter() { return MakeObject<CTableFilter>(cursor, tree); }

protected:
    std::span<const Operation> Operations() const noexcept override
    {
        static constexpr Operation operations[] = {
            Put<&CItemTable::PutColumns>(dispid::itemTable::columns),
            Method<&CItemTable::GetRow>(dispid::itemTable::getRow),
            Get<&CItemTable::GetFilter>(dispid::itemTable::filter),
        };
        return operations;
    }

private:
    const std::shared_ptr<SessionContext> session;    // keeps the MAPI session while the table lives
    const std::shared_ptr<ItemTableCursor> cursor;
    const std::shared_ptr<RestrictionTree> tree;
};

void CItemTable::PutColumns(const VARIANT& tags)
{
    if (!(tags.vt & VT_ARRAY))
        throw MapiError(DISP_E_TYPEMISMATCH, L"Columns are an array of property tags.");
    SAFEARRAY* array = tags.vt & VT_BYREF ? *tags.pparray : tags.parray;
    // No array says nothing about the columns: they stay as they are.
    if (array)
        cursor->SetColumns(TagsOfArray(array));
}
}    // namespace

ComPtr<IDispatch> MakeItemTable(std::shared_ptr<SessionContext> session,
                                std::shared_ptr<FolderSnapshot> snapshot)
{
    return MakeObject<CItemTable>(std::move(session), std::move(snapshot));
}
