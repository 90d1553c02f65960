#include "quorvex/Recipients.h"

#include "contracts/DispatchIds.h"
#include "quorvex/CollectionIndex.h"
#include "quorvex/MapiError.h"
#include "quorvex/PropVariant.h"
#include "quorvex/TableReader.h"

#include <mapitags.h>

namespace
{
constexpr long kindOfRecipient =
    0x0FFFFFFF;    // without MAPI_P1 and MAPI_SUBMITTED, which a resent message adds
}

CRecipientCollection::CRecipientCollection(IMessage* message)
{
    ComPtr<IMAPITable> table;
    CheckMapi(message->GetRecipientTable(MAPI_UNICODE, &table), message, L"list the recipients");
    const ULONG columns[] = {PR_RECIPIENT_TYPE, PR_DISPLAY_NAME_W};
    ReadRows(table.Get(), columns, std::size(columns),
             [&](TableRow row)
             {
                 rows.push_back({row[0] ? row[0]->Value.l & kindOfRecipient : 0,
                                 row[1] ? TextOf(*row[1]) : std::wstring()});
             });
}

std::span<const Operation> CRecipientCollection::Operations() const noexcept
{
    static constexpr Operation operations[] = {
        Get<&CRecipientCollection::GetCount>(dispid::recipientCollection::count),
        Get<&CRecipientCollection::GetItem>(dispid::recipientCollection::item),
    };
    return operations;
}

long CRecipientCollection::GetCount()
{
    return static_cast<long>(rows.size());
}

ComPtr<IDispatch> CRecipientCollection::GetItem(const VARIANT& index)
{
    return MakeObject<CRecipient>(rows[PlaceOf(index, rows.size())]);
}

std::span<const Operation> CRecipient::Operations() const noexcept
{
    static constexpr Operation operations[] = {
        Get<&CRecipient::GetType>(dispid::recipient::type),
        Get<&CRecipient::GetName>(dispid::recipient::name),
    };
    return operations;
}

long CRecipient::GetType()
{
    return row.type;
}

std::wstring CRecipient::GetName()
{
    return row.name;
}
