#include "localmapi/MsgStore.h"

#include "localmapi/Arguments.h"
#include "localmapi/MapiFlags.h"
#include "localmapi/MapiMemory.h"
#include "localmapi/MapiProp.h"
#include "localmapi/StoreContext.h"
#include "localmapi/StoreEntries.h"
#include "localmapi/TextConversion.h"
#include "localmapi/storage/Folders.h"

#include <mapiguid.h>

#include <cstring>

namespace
{
class CMsgStore final : public MapiProp<IMsgStore, IID_IMsgStore>
{
public:
    explicit CMsgStore(SharedStore store) : store(std::move(store)), values(MakeValues(*this->store)) {}

    MAPI_IMSGSTORE_METHODS(noexcept override)

    const StoreContext& Store() const override { return *store; }
    std::vector<std::uint32_t> ListTags() override;
    void GiveValues(std::span<const std::uint32_t> tags, const ValueReceiver& receive) override;
    SCODE ProblemWithChanging(std::uint32_t) const override { return MAPI_E_COMPUTED; }
    void WriteValues(const std::map<std::uint32_t, StoredValue>&) override {}

private:
    static std::map<std::uint32_t, StoredValue> MakeValues(const StoreContext& store);

    const SharedStore store;
    const std::map<std::uint32_t, StoredValue> values;
};

std::map<std::uint32_t, StoredValue> CMsgStore::MakeValues(const StoreContext& store)
{
    constexpr std::int64_t support = STORE_ENTRYID_UNIQUE | STORE_MODIFY_OK | STORE_CREATE_OK |
                                     STORE_ATTACH_OK | STORE_RESTRICTION_OK | STORE_SORT_OK |
                                     mapi_flag::storeUnicodeOk;
    constexpr std::int64_t folders = FOLDER_IPM_SUBTREE_VALID | FOLDER_IPM_INBOX_VALID |
                                     FOLDER_IPM_OUTBOX_VALID | FOLDER_IPM_WASTEBASKET_VALID |
                                     FOLDER_IPM_SENTMAIL_VALID;
    const auto folder = [&](std::int64_t id) { return store.EntryIdOf(EntryKind::Folder, id); };
    const Blob own = store.EntryIdOf(EntryKind::Store, 0);
    return {{tag::displayName, store.displayName},
            {tag::entryId, own},
            {tag::storeEntryId, own},
            {tag::recordKey, store.UidBytes()},
            {tag::storeRecordKey, store.UidBytes()},
            {tag::mappingSignature, store.UidBytes()},
            {tag::objectType, std::int64_t{MAPI_STORE}},
            {tag::resourceType, std::int64_t{MAPI_STORE_PROVIDER}},
            {tag::defaultStore, std::int64_t{1}},
            {tag::access, std::int64_t{MAPI_ACCESS_MODIFY | MAPI_ACCESS_READ}},
            {tag::accessLevel, std::int64_t{MAPI_MODIFY}},
            {tag::storeSupportMask, support},
            {tag::mdbProvider, Blob(std::begin(providerUid), std::end(providerUid))},
            {tag::validFolderMask, folders},
            {tag::ipmSubtreeEntryId, folder(folder_id::ipmSubtree)},
            {tag::ipmOutboxEntryId, folder(folder_id::outbox)},
            {tag::ipmWastebasketEntryId, folder(folder_id::deletedItems)},
            {tag::ipmSentmailEntryId, folder(folder_id::sentItems)}};
}

std::vector<std::uint32_t> CMsgStore::ListTags()
{
    std::vector<std::uint32_t> tags;
    for (const auto& [tag, value] : values)
        tags.push_back(tag);
    return tags;
}

void CMsgStore::GiveValues(std::span<const std::uint32_t> tags, const ValueReceiver& receive)
{
    for (std::size_t i = 0; i < tags.size(); ++i)
    {
        const auto found = values.find(tags[i]);
        receive(i, found == values.end() ? StoredValue() : found->second);
    }
}

STDMETHODIMP CMsgStore::Advise(ULONG, ENTRYID*, ULONG, IMAPIAdviseSink*, ULONG*) noexcept
{
    return MAPI_E_NO_SUPPORT;
}

STDMETHODIMP CMsgStore::Unadvise(ULONG) noexcept
{
    return MAPI_E_NO_SUPPORT;
}

STDMETHODIMP CMsgStore::CompareEntryIDs(ULONG size1, ENTRYID* entryId1, ULONG size2, ENTRYID* entryId2,
                                        ULONG flags, ULONG* equal) noexcept
{
    return ComBoundary(lastError,
                       [&]
                       {
                           Given(equal) = FALSE;
                           RequireKnownFlags(flags, 0);
                           *equal =
                               DecodeEntryId(size1, entryId1).NamesSameObject(DecodeEntryId(size2, entryId2));
                       });
}

STDMETHODIMP CMsgStore::OpenEntry(ULONG size, ENTRYID* entryId, const IID* iid, ULONG flags,
                                  ULONG* objectType, IUnknown** entry) noexcept
{
    return ComBoundary(lastError,
                       [&] { OpenStoreEntry(store, size, entryId, iid, flags, objectType, entry); });
}

STDMETHODIMP CMsgStore::SetReceiveFolder(LPTSTR, ULONG, ULONG, ENTRYID*) noexcept
{
    return MAPI_E_NO_SUPPORT;
}

// Every class of message is received in the Inbox, whose entry is the one of the empty class.
STDMETHODIMP CMsgStore::GetReceiveFolder(LPTSTR, ULONG flags, ULONG* size, ENTRYID** entryId,
                                         LPTSTR* explicitClass) noexcept
{
    return ComBoundary(lastError,
                       [&]
                       {
                           Given(size) = 0;
                           Given(entryId) = nullptr;
                           RequireKnownFlags(flags, MAPI_UNICODE);
                           const Blob inbox = store->EntryIdOf(EntryKind::Folder, folder_id::inbox);
                           auto copy = MakeMapiBuffer<ENTRYID>(inbox.size());
                           std::memcpy(copy.get(), inbox.data(), inbox.size());
                           if (explicitClass)
                               *explicitClass =
                                   MakeMapiBuffer<TCHAR>().release();    // empty, and now the caller's
                           *size = static_cast<ULONG>(inbox.size());
                           *entryId = copy.release();    // now the caller's
                       });
}

STDMETHODIMP CMsgStore::GetReceiveFolderTable(ULONG, IMAPITable** table) noexcept
{
    return NoSupport(table);
}

STDMETHODIMP CMsgStore::StoreLogoff(ULONG* flags) noexcept
{
    // Nothing is ever on its way in or out.
    if (flags)
        *flags = LOGOFF_COMPLETE;
    return S_OK;
}

STDMETHODIMP CMsgStore::AbortSubmit(ULONG, ENTRYID*, ULONG) noexcept
{
    return MAPI_E_NO_SUPPORT;
}

STDMETHODIMP CMsgStore::GetOutgoingQueue(ULONG, IMAPITable** table) noexcept
{
    return NoSupport(table);
}

STDMETHODIMP CMsgStore::SetLockState(IMessage*, ULONG) noexcept
{
    return MAPI_E_NO_SUPPORT;
}

STDMETHODIMP CMsgStore::FinishedMsg(ULONG, ULONG, ENTRYID*) noexcept
{
    return MAPI_E_NO_SUPPORT;
}

STDMETHODIMP CMsgStore::NotifyNewMail(NOTIFICATION*) noexcept
{
    return MAPI_E_NO_SUPPORT;
}
}    // namespace

Microsoft::WRL::ComPtr<IMsgStore> OpenStoreObject(const std::wstring& path)
{
    return MakeObject<CMsgStore>(OpenStoreContext(Utf8FromWide(path)));
}
