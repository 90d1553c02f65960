#include "localmapi/MapiMessage.h"

#include "localmapi/Arguments.h"
#include "localmapi/MapiAttach.h"
#include "localmapi/MapiProp.h"
#include "localmapi/MapiTable.h"
#include "localmapi/MessageParts.h"
#include "localmapi/StoreEntries.h"
#include "localmapi/StoreValues.h"
#include "localmapi/SubObjectTables.h"
#include "localmapi/storage/MessageColumns.h"
#include "localmapi/storage/MessageDraft.h"

#include <mapiguid.h>

#include <algorithm>

namespace
{
class CMapiMessage final : public MapiProp<IMessage, IID_IMessage>
{
public:
    CMapiMessage(SharedStore store, std::shared_ptr<MessageDraft> draft, bool modify)
        : store(std::move(store)),
          draft(std::move(draft)),
          modify(modify)
    {
    }

    MAPI_IMESSAGE_METHODS(noexcept override)

    const StoreContext& Store() const override { return *store; }
    std::vector<std::uint32_t> ListTags() override;
    void GiveValues(std::span<const std::uint32_t> tags, const ValueReceiver& receive) override;
    SCODE ProblemWithChanging(std::uint32_t tag) const override;
    void WriteValues(const std::map<std::uint32_t, StoredValue>& values) override;
    void Save() override;
    Microsoft::WRL::ComPtr<IMAPITable> OpenObjectTable(std::uint32_t tag) override;
    bool CanBeCopied() const override { return true; }
    void CopyPartsTo(IUnknown& target, std::span<const std::uint32_t> excludedTags) override;

private:
    void RequireModify() const
    {
        if (!modify)
            throw MapiError(MAPI_E_NO_ACCESS);
    }
    StoredValue PlaceValue(std::uint32_t tag) const;

    const SharedStore store;
    const std::shared_ptr<MessageDraft> draft;
    const bool modify;
};

std::vector<std::uint32_t> CMapiMessage::ListTags()
{
    std::vector<std::uint32_t> tags = draft->ListTags();
    tags.push_back(tag::accessLevel);
    if (draft->Id() != 0)
    {
        const std::vector<std::uint32_t> place = MessagePlaceTags();
        tags.insert(tags.end(), place.begin(), place.end());
    }
    return tags;
}

void CMapiMessage::GiveValues(std::span<const std::uint32_t> tags, const ValueReceiver& receive)
{
    const auto isStored = [&](std::uint32_t tag)
    { return tag != tag::accessLevel && !IsPlaceOfMessage(*store, tag); };
    if (std::ranges::all_of(tags, isStored))
        return draft->Read(tags, receive);

    std::vector<std::uint32_t> stored;
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < tags.size(); ++i)
    {
        if (isStored(tags[i]))
        {
            stored.push_back(tags[i]);
            places.push_back(i);
        }
        else if (tags[i] == tag::accessLevel)
            receive(i, std::int64_t{modify ? MAPI_MODIFY : 0});
        else
            receive(i, PlaceValue(tags[i]));
    }
    draft->Read(stored, [&](std::size_t i, const StoredValue& value) { receive(places[i], value); });
}

StoredValue CMapiMessage::PlaceValue(std::uint32_t tag) const
{
    const std::int64_t id = draft->Id();
    const bool identifiesMessage = tag == tag::entryId || tag == tag::recordKey || tag == tag::instanceKey;
    if (id == 0 && identifiesMessage)
        return {};
    return PlaceValueOfMessage(*store, tag, id, draft->FolderId());
}

SCODE CMapiMessage::ProblemWithChanging(std::uint32_t tag) const
{
    if (IsPlaceOfMessage(*store, tag) || tag == tag::accessLevel || !IsWritableMessageProperty(tag))
        return MAPI_E_COMPUTED;
    return modify ? S_OK : MAPI_E_NO_ACCESS;
}

void CMapiMessage::WriteValues(const std::map<std::uint32_t, StoredValue>& values)
{
    for (const auto& [tag, value] : values)
        draft->Set(tag, value);
}

void CMapiMessage::Save()
{
    RequireModify();
    draft->Save();
}

Microsoft::WRL::ComPtr<IMAPITable> CMapiMessage::OpenObjectTable(std::uint32_t tag)
{
    if (tag == tag::messageRecipients)
        return MakeMapiTable(MakeRecipientTableSource(draft->Recipients()));
    if (tag == tag::messageAttachments)
        return MakeMapiTable(MakeAttachmentTableSource(draft->Attachments()));
    return nullptr;
}

void CMapiMessage::CopyPartsTo(IUnknown& target, std::span<const std::uint32_t> excludedTags)
{
    Microsoft::WRL::ComPtr<IMessage> message;
    if (SUCCEEDED(target.QueryInterface(IID_IMessage, &message)))
        CopyMessageParts(*draft, *message.Get(), excludedTags);
}

STDMETHODIMP CMapiMessage::GetAttachmentTable(ULONG flags, IMAPITable** table) noexcept
{
    return ComBoundary(lastError,
                       [&]
                       {
                           Given(table) = nullptr;
                           RequireKnownFlags(flags, MAPI_UNICODE | MAPI_DEFERRED_ERRORS);
                           *table = OpenObjectTable(tag::messageAttachments).Detach();    // now the caller's
                       });
}

STDMETHODIMP CMapiMessage::OpenAttach(ULONG number, const IID* iid, ULONG flags, IAttach** attach) noexcept
{
    return ComBoundary(
        lastError,
        [&]
        {
            Given(attach) = nullptr;
            RequireKnownFlags(flags, MAPI_MODIFY | MAPI_BEST_ACCESS | MAPI_DEFERRED_ERRORS);
            const auto object = OpenAttachObject(store, draft, number, modify && AsksToModify(flags));
            YieldInterface(*object.Get(), iid ? iid : &IID_IAttachment, reinterpret_cast<IUnknown**>(attach));
        });
}

STDMETHODIMP CMapiMessage::CreateAttach(const IID* iid, ULONG flags, ULONG* number, IAttach** attach) noexcept
{
    return ComBoundary(lastError,
                       [&]
                       {
                           Given(attach) = nullptr;
                           Given(number) = 0;
                           RequireKnownFlags(flags, MAPI_DEFERRED_ERRORS);
                           RequireModify();
                           const std::int64_t reserved = draft->ReserveAttachmentNumber();
                           const auto object = MakeAttachObject(store, draft, reserved);
                           YieldInterface(*object.Get(), iid ? iid : &IID_IAttachment,
                                          reinterpret_cast<IUnknown**>(attach));
                           *number = static_cast<ULONG>(reserved);
                       });
}

STDMETHODIMP CMapiMessage::DeleteAttach(ULONG number, ULONG, IMAPIProgress*, ULONG flags) noexcept
{
    return ComBoundary(lastError,
                       [&]
                       {
                           RequireKnownFlags(flags, ATTACH_DIALOG);
                           RequireModify();
                           if (!draft->DeleteAttachment(number))
                               throw MapiError(MAPI_E_NOT_FOUND);
                       });
}

STDMETHODIMP CMapiMessage::GetRecipientTable(ULONG flags, IMAPITable** table) noexcept
{
    return ComBoundary(lastError,
                       [&]
                       {
                           Given(table) = nullptr;
                           RequireKnownFlags(flags, MAPI_UNICODE | MAPI_DEFERRED_ERRORS);
                           *table = OpenObjectTable(tag::messageRecipients).Detach();    // now the caller's
                       });
}

STDMETHODIMP CMapiMessage::ModifyRecipients(ULONG flags, ADRLIST* list) noexcept
{
    return ComBoundary(lastError,
                       [&]
                       {
                           RequireKnownFlags(flags, MODRECIP_ADD | MODRECIP_MODIFY | MODRECIP_REMOVE);
                           RequireModify();
                           // One client's calls only: two threads that change one message's recipients must
                           // agree among themselves.
                           draft->SetRecipients(ModifiedRecipients(draft->Recipients(), flags, Given(list)));
                       });
}

STDMETHODIMP CMapiMessage::SubmitMessage(ULONG) noexcept
{
    return MAPI_E_NO_SUPPORT;
}

STDMETHODIMP CMapiMessage::SetReadFlag(ULONG flags) noexcept
{
    return ComBoundary(lastError,
                       [&]
                       {
                           RequireKnownFlags(flags, CLEAR_READ_FLAG | SUPPRESS_RECEIPT |
                                                        GENERATE_RECEIPT_ONLY | MAPI_DEFERRED_ERRORS |
                                                        CLEAR_RN_PENDING | CLEAR_NRN_PENDING);
                           if (flags & ~(CLEAR_READ_FLAG | SUPPRESS_RECEIPT | MAPI_DEFERRED_ERRORS))
                               return;
                           draft->SetRead(!(flags & CLEAR_READ_FLAG));
                       });
}
}    // namespace

Microsoft::WRL::ComPtr<IMessage> OpenMessageObject(const SharedStore& store, std::int64_t id, bool modify)
{
    return MakeObject<CMapiMessage>(store, MessageDraft::Open(store->file, id), modify);
}

Microsoft::WRL::ComPtr<IMessage> MakeMessageObject(const SharedStore& store, std::int64_t folderId)
{
    return MakeObject<CMapiMessage>(store, MessageDraft::Make(store->file, folderId), true);
}
