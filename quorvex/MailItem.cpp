#include "quorvex/MailItem.h"

#include "contracts/DispatchIds.h"
#include "quorvex/Attachments.h"
#include "quorvex/AutomationDate.h"
#include "quorvex/Folder.h"
#include "quorvex/FolderSnapshotCache.h"
#include "quorvex/MapiError.h"
#include "quorvex/MapiTags.h"
#include "quorvex/MessageTransfer.h"
#include "quorvex/Recipients.h"

#include <mapicode.h>

#include <algorithm>

namespace
{
// What is read together: who needs one of them mostly needs the others.
constexpr ULONG textTags[] = {PR_SUBJECT_W, PR_SENDER_EMAIL_ADDRESS_W, PR_SENDER_NAME_W, PR_BODY_W,
                              PR_TRANSPORT_MESSAGE_HEADERS_W};

std::optional<std::size_t> PlaceIn(std::span<const ULONG> tags, ULONG tag)
{
    const auto found = std::ranges::find(tags, tag);
    if (found == tags.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - tags.begin());
}

// Tags with named or high ids come as negative VT_I4, as VT_UI4 or as a large number of another type.
ULONG TagOf(const VARIANT& value)
{
    _variant_t number;
    const HRESULT result = VariantChangeType(&number, const_cast<VARIANT*>(&value), 0, VT_I8);
    if (FAILED(result))
        throw MapiError(result, L"A property tag is a 32-bit number.");
    return static_cast<ULONG>(number.llVal);
}

void SetProperty(IMAPIProp* object, SPropValue value)
{
    MapiBuffer<SPropProblemArray> problems;
    CheckMapi(object->SetProps(1, &value, problems.put()), object, L"change the message");
    if (problems && problems->cProblem > 0)
        ThrowMapiError(problems->aProblem[0].scode, nullptr, L"change the message");
}

// Around a change of the store: lets go of what is known of the folders, even when the change fails. A store
// may have made it all the same.
class ChangeOfStore
{
public:
    explicit ChangeOfStore(SessionContext& changed) : session(changed) {}
    ~ChangeOfStore() { session.Snapshots().InvalidateAll(); }
    ChangeOfStore(const ChangeOfStore&) = delete;
    ChangeOfStore& operator=(const ChangeOfStore&) = delete;

private:
    SessionContext& session;
};

ULONG FlagTextTag(IMAPIProp* object)
{
    GUID propertySet = tag::commonPropertySet;
    MAPINAMEID name{};
    name.lpguid = &propertySet;
    name.ulKind = MNID_ID;
    name.Kind.lID = tag::flagTextId;
    MAPINAMEID* names = &name;
    MapiBuffer<SPropTagArray> tags;
    CheckMapi(object->GetIDsFromNames(1, &names, MAPI_CREATE, tags.put()), object, L"name the flag's text");
    return CHANGE_PROP_TYPE(tags->aulPropTag[0], PT_UNICODE);
}
}    // namespace

CMailItem::CMailItem(std::shared_ptr<SessionContext> context, ComPtr<IMsgStore> itsStore, EntryIdBytes itsId,
                     ComPtr<IMAPIFolder> itsFolder, ULONG flags, std::vector<std::uint8_t> searchKey)
    : session(std::move(context)),
      store(std::move(itsStore)),
      openFlags(flags),
      id(std::move(itsId)),
      knownBy(std::move(searchKey)),
      folder(std::move(itsFolder))
{
}

const EntryIdBytes& CMailItem::Id()
{
    if (id.empty() && !knownBy.empty())
    {
        const std::optional<EntryIdBytes> found = LastWithSearchKey(folder.Get(), knownBy);
        if (!found)
            throw MapiError(MAPI_E_NOT_FOUND,
                            L"The message that was moved is not in its new folder any more.");
        id = *found;
    }
    return id;
}

std::span<const Operation> CMailItem::Operations() const noexcept
{
    static constexpr Operation operations[] = {
        Get<&CMailItem::GetEntryId>(dispid::mailItem::entryId),
        Get<&CMailItem::GetSubject>(dispid::mailItem::subject),
        Get<&CMailItem::GetBodyText>(dispid::mailItem::bodyText),
        Get<&CMailItem::GetSenderEmail>(dispid::mailItem::senderEmail),
        Get<&CMailItem::GetSenderName>(dispid::mailItem::senderName),
        Get<&CMailItem::GetField>(dispid::mailItem::field),
        Get<&CMailItem::GetSentTime>(dispid::mailItem::sentTime),
        Get<&CMailItem::GetRecipients>(dispid::mailItem::recipients),
        Get<&CMailItem::GetAttachments>(dispid::mailItem::attachments),
        Put<&CMailItem::PutExpiryTime>(dispid::mailItem::expiryTime),
        Put<&CMailItem::PutFlagText>(dispid::mailItem::flagText),
        Put<&CMailItem::PutFlagStatus>(dispid::mailItem::flagStatus),
        Method<&CMailItem::Save>(dispid::mailItem::save),
        Method<&CMailItem::Delete>(dispid::mailItem::deleteItem),
        Method<&CMailItem::CopyTo>(dispid::mailItem::copyTo),
        Method<&CMailItem::MoveTo>(dispid::mailItem::moveTo),
    };
    return operations;
}

void CMailItem::Open()
{
    const std::lock_guard lock(mutex);
    OpenMessage();
}

IMessage* CMailItem::OpenMessage()
{
    if (message)
        return message.Get();
    ULONG type = 0;
    ComPtr<IUnknown> object;
    CheckMapi(store->OpenEntry(static_cast<ULONG>(Id().size()), AsEntryId(Id()), nullptr, openFlags, &type,
                               &object),
              store.Get(), L"open the message");
    if (type != MAPI_MESSAGE || FAILED(object->QueryInterface(IID_IMessage, &message)))
        throw MapiError(MAPI_E_INVALID_OBJECT, L"The entry id is not a message's.");
    return message.Get();
}

IMAPIFolder* CMailItem::OpenFolder()
{
    if (!folder)
    {
        const auto parent = ReadBinary(OpenMessage(), PR_PARENT_ENTRYID);
        if (!parent)
            throw MapiError(MAPI_E_NOT_FOUND, L"The message does not say in which folder it lies.");
        folder = session->OpenFolder(store.Get(), *parent);
    }
    return folder.Get();
}

// A text that is read with the others and kept. `tag` is one of textTags.
_variant_t CMailItem::KeptText(ULONG tag)
{
    if (!texts)
        texts.emplace(OpenMessage(), textTags);
    return texts->Variant(*PlaceIn(textTags, tag));
}

_variant_t CMailItem::Text(ULONG tag)
{
    const std::lock_guard lock(mutex);
    _variant_t text = KeptText(tag);
    return text.vt == VT_BSTR ? ToVariant(std::move(text)) : TextVariant({});
}

_variant_t CMailItem::GetSubject()
{
    return Text(PR_SUBJECT_W);
}

_variant_t CMailItem::GetSenderEmail()
{
    return Text(PR_SENDER_EMAIL_ADDRESS_W);
}

_variant_t CMailItem::GetSenderName()
{
    return Text(PR_SENDER_NAME_W);
}

_variant_t CMailItem::GetBodyText()
{
    _variant_t body = Text(PR_BODY_W);
    NoteText(PR_BODY_W, body);
    return body;
}

_variant_t CMailItem::GetField(const VARIANT& tagValue)
{
    const ULONG tag = UnicodeForm(TagOf(tagValue));
    const std::lock_guard lock(mutex);
    if (!PlaceIn(textTags, tag))
        return PropertyValues(OpenMessage(), {&tag, 1}).Variant(0);
    _variant_t text = KeptText(tag);
    NoteText(tag, text);
    return text;
}

// A search for the same text need not read it again.
void CMailItem::NoteText(ULONG tag, const _variant_t& text)
{
    const bool isText = text.vt == VT_BSTR && text.bstrVal;
    session->Snapshots().NoteText(
        id, tag, isText ? std::wstring_view(text.bstrVal, SysStringLen(text.bstrVal)) : std::wstring_view());
}

DATE CMailItem::GetSentTime()
{
    const std::lock_guard lock(mutex);
    const std::optional<FILETIME> sent = ReadTime(OpenMessage(), PR_CLIENT_SUBMIT_TIME);
    return sent ? LocalDateFromUtc(*sent) : noDate;
}

std::wstring CMailItem::GetEntryId()
{
    const std::lock_guard lock(mutex);
    // Tables may give short-term ids, which hold for this session alone; the message knows its long-term one.
    if (!Id().empty() && !(Id().front() & MAPI_SHORTTERM))
        return ToHex(Id());
    return ToHex(ReadBinary(OpenMessage(), PR_ENTRYID).value_or(Id()));
}

ComPtr<IDispatch> CMailItem::GetRecipients()
{
    const std::lock_guard lock(mutex);
    return MakeObject<CRecipientCollection>(OpenMessage());
}

ComPtr<IDispatch> CMailItem::GetAttachments()
{
    const std::lock_guard lock(mutex);
    return MakeObject<CAttachmentCollection>(OpenMessage());
}

void CMailItem::PutExpiryTime(DATE time)
{
    SPropValue value{};
    value.ulPropTag = PR_EXPIRY_TIME;
    value.Value.ft = UtcFromLocalDate(time);
    const std::lock_guard lock(mutex);
    SetProperty(OpenMessage(), value);
}

void CMailItem::PutFlagText(const std::wstring& text)
{
    const std::lock_guard lock(mutex);
    SPropValue value{};
    value.ulPropTag = FlagTextTag(OpenMessage());
    value.Value.lpszW = const_cast<wchar_t*>(text.c_str());
    SetProperty(OpenMessage(), value);
}

void CMailItem::PutFlagStatus(long status)
{
    SPropValue value{};
    value.ulPropTag = tag::flagStatus;
    value.Value.l = status;
    const std::lock_guard lock(mutex);
    SetProperty(OpenMessage(), value);
}

void CMailItem::Save()
{
    const std::lock_guard lock(mutex);
    IMessage* opened = OpenMessage();
    const ChangeOfStore change(*session);
    CheckMapi(opened->SaveChanges(KEEP_OPEN_READWRITE), opened, L"save the message");
}

void CMailItem::Delete(const VARIANT& choice)
{
    const long kind = LongOf(choice);
    if (kind != 0 && kind != 1)
        throw MapiError(E_INVALIDARG, L"Delete takes 0 (for good) or 1 (move to Deleted Items).");
    const std::lock_guard lock(mutex);
    if (kind == 1)
    {
        const auto wastebasket = ReadBinary(store.Get(), PR_IPM_WASTEBASKET_ENTRYID);
        if (!wastebasket)
            throw MapiError(MAPI_E_NOT_FOUND, L"The message store has no Deleted Items folder to move to.");
        MoveInto(session->OpenFolder(store.Get(), *wastebasket).Get(), *wastebasket);
        return;
    }
    const ChangeOfStore change(*session);
    DeleteMessage(OpenFolder(), Id());
}

void CMailItem::CopyTo(const VARIANT& destination)
{
    _variant_t object;
    const HRESULT result = VariantChangeType(&object, const_cast<VARIANT*>(&destination), 0, VT_DISPATCH);
    if (FAILED(result))
        throw MapiError(result, L"A folder is needed to copy to.");
    const CFolder& target = CFolder::Of(object.pdispVal);
    const std::lock_guard lock(mutex);
    const ChangeOfStore change(*session);
    TransferMessage(OpenFolder(), Id(), target.MapiFolder(), Transfer::Copy);
}

bool CMailItem::MoveInto(IMAPIFolder* target, const EntryIdBytes& targetId)
{
    IMAPIFolder* source = OpenFolder();
    const auto sourceId = ReadBinary(source, PR_ENTRYID);
    if (sourceId && IsSameEntry(session->Session(), *sourceId, targetId))
        return false;    // a store may well make a copy of it and lose the order
    const ChangeOfStore change(*session);
    TransferMessage(source, Id(), target, Transfer::Move);
    return true;
}

ComPtr<IDispatch> CMailItem::MoveTo(IDispatch* destination)
{
    const CFolder& target = CFolder::Of(destination);
    const std::lock_guard lock(mutex);
    const std::vector<std::uint8_t> searchKey =
        ReadBinary(OpenMessage(), PR_SEARCH_KEY).value_or(std::vector<std::uint8_t>());
    if (!MoveInto(target.MapiFolder(), target.Id()))
        return ComPtr<IDispatch>(this);
    const ComPtr<IMAPIFolder> targetFolder(target.MapiFolder());
    if (LiesIn(*session, target.Store().Get(), id, target.Id()))
        return MakeObject<CMailItem>(session, target.Store(), id, targetFolder);
    if (searchKey.empty())
        return nullptr;    // it is moved all the same
    // Its new id is looked for when it is wanted: that reads the whole folder, and most callers let go of the
    // item.
    return MakeObject<CMailItem>(session, target.Store(), EntryIdBytes(), targetFolder, MAPI_BEST_ACCESS,
                                 searchKey);
}
