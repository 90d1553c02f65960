#include "quorvex/Attachments.h"

#include "contracts/DispatchIds.h"
#include "quorvex/AttachmentName.h"
#include "quorvex/CollectionIndex.h"
#include "quorvex/MapiError.h"
#include "quorvex/PropVariant.h"
#include "quorvex/TableReader.h"

#include <mapitags.h>

namespace
{
std::wstring NameFromAttachment(IMessage* message, ULONG number)
{
    ComPtr<IAttach> attachment;
    CheckMapi(message->OpenAttach(number, nullptr, 0, &attachment), message, L"open an attachment");
    return AttachmentFileName(attachment.Get());
}
}    // namespace

CAttachmentCollection::CAttachmentCollection(IMessage* message)
{
    ComPtr<IMAPITable> table;
    CheckMapi(message->GetAttachmentTable(MAPI_UNICODE, &table), message, L"list the attachments");
    const ULONG columns[] = {PR_ATTACH_NUM, PR_ATTACH_LONG_FILENAME_W};
    ReadRows(table.Get(), columns, 1,
             [&](TableRow row)
             {
                 // Most attachments need not be opened to be named.
                 std::wstring name = row[1] && IsWholeText(*row[1]) ? TextOf(*row[1]) : std::wstring();
                 if (name.empty() && row[0])
                     name = NameFromAttachment(message, static_cast<ULONG>(row[0]->Value.l));
                 fileNames.push_back(std::move(name));
             });
}

std::span<const Operation> CAttachmentCollection::Operations() const noexcept
{
    static constexpr Operation operations[] = {
        Get<&CAttachmentCollection::GetCount>(dispid::attachmentCollection::count),
        Get<&CAttachmentCollection::GetItem>(dispid::attachmentCollection::item),
    };
    return operations;
}

long CAttachmentCollection::GetCount()
{
    return static_cast<long>(fileNames.size());
}

ComPtr<IDispatch> CAttachmentCollection::GetItem(const VARIANT& index)
{
    return MakeObject<CAttachment>(fileNames[PlaceOf(index, fileNames.size())]);
}

std::span<const Operation> CAttachment::Operations() const noexcept
{
    static constexpr Operation operations[] = {Get<&CAttachment::GetFileName>(dispid::attachment::fileName)};
    return operations;
}

std::wstring CAttachment::GetFileName()
{
    return fileName;
}
