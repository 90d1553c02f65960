#include "localmapi/MapiFolder.h"

#include "localmapi/Arguments.h"
#include "localmapi/FolderArguments.h"
#include "localmapi/FolderTableSource.h"
#include "localmapi/MapiFlags.h"
#include "localmapi/MapiMessage.h"
#include "localmapi/MapiProp.h"
#include "localmapi/MapiTable.h"
#include "localmapi/MessageTableSource.h"
#include "localmapi/StoreEntries.h"
#include "localmapi/StoreValues.h"
#include "localmapi/storage/Folders.h"
#include "localmapi/storage/MessageMoves.h"
#include "localmapi/storage/Messages.h"
#include "localmapi/storage/StoreError.h"

#include <mapiguid.h>
#include <mapitags.h>

namespace
{
class CMapiFolder final : public MapiProp<IMAPIFolder, IID_IMAPIContainer, IID_IMAPIFolder>
{
public:
    CMapiFolder(SharedStore store, std::int64_t id, bool modify)
        : store(std::move(store)),
          id(id),
          modify(modify)
    {
    }

    MAPI_IMAPICONTAINER_METHODS(noexcept override)
    MAPI_IMAPIFOLDER_METHODS(noexcept override)

    const StoreContext& Store() const override { return *store; }
    std::vector<std::uint32_t> ListTags() override;
    void GiveValues(std::span<const std::uint32_t> tags, const ValueReceiver& receive) override;
    SCODE ProblemWithChanging(std::uint32_t tag) const override;
    void WriteValues(const std::map<std::uint32_t, StoredValue>& values) override;
    Microsoft::WRL::ComPtr<IMAPITable> OpenObjectTable(std::uint32_t tag) override;

private:
    template <typename Source, typename... Arguments>
    HRESULT YieldTable(IMAPITable** table, Arguments... arguments)
    {
        Given(table) = nullptr;
        *table =
            MakeMapiTable(std::make_unique<Source>(store, id, arguments...)).Detach();    // now the caller's
        return S_OK;
    }
    std::vector<std::int64_t> MessagesOf(const ENTRYLIST* list) const;
    std::int64_t FolderToMake(const std::string& name, const StoredValue& comment, ULONG flags);

    const SharedStore store;
    const std::int64_t id;
    const bool modify;
};

// MAPI's answer when a job on several messages was done to `done` of them.
HRESULT PartlyDone(std::size_t done, std::size_t asked)
{
    return done == asked ? S_OK : MAPI_W_PARTIAL_COMPLETION;
}

std::vector<std::uint32_t> CMapiFolder::ListTags()
{
    std::vector<std::uint32_t> tags = FolderValueTags(id);
    const std::vector<StoredValue> values = ReadValues(tags);
    std::vector<std::uint32_t> present;
    for (std::size_t i = 0; i < tags.size(); ++i)
    {
        if (!std::holds_alternative<std::monostate>(values[i]))
            present.push_back(tags[i]);
    }
    return present;
}

void CMapiFolder::GiveValues(std::span<const std::uint32_t> tags, const ValueReceiver& receive)
{
    std::vector<std::uint32_t> asked(tags.begin(), tags.end());
    asked.push_back(tag::storedFolderId);
    const std::vector<StoredValue> values = ReadFolderValues(*store, {&id, 1}, asked);
    if (std::holds_alternative<std::monostate>(values.back()))
        throw MapiError(MAPI_E_OBJECT_DELETED);
    for (std::size_t i = 0; i < tags.size(); ++i)
        receive(i, tags[i] == tag::accessLevel ? std::int64_t{modify ? MAPI_MODIFY : 0} : values[i]);
}

SCODE CMapiFolder::ProblemWithChanging(std::uint32_t tag) const
{
    if (!IsWritableFolderProperty(tag))
        return MAPI_E_COMPUTED;
    return modify ? S_OK : MAPI_E_NO_ACCESS;
}

void CMapiFolder::WriteValues(const std::map<std::uint32_t, StoredValue>& values)
{
    UpdateFolder(*store->file, id, values);
}

Microsoft::WRL::ComPtr<IMAPITable> CMapiFolder::OpenObjectTable(std::uint32_t tag)
{
    if (tag == PR_CONTAINER_CONTENTS)
        return MakeMapiTable(std::make_unique<MessageTableSource>(store, id));
    if (tag == PR_CONTAINER_HIERARCHY)
        return MakeMapiTable(std::make_unique<FolderTableSource>(store, id, false));
    return nullptr;
}

STDMETHODIMP CMapiFolder::GetContentsTable(ULONG flags, IMAPITable** table) noexcept
{
    return ComBoundary(lastError,
                       [&]
                       {
                           RequireKnownFlags(flags, MAPI_UNICODE | MAPI_DEFERRED_ERRORS | MAPI_ASSOCIATED |
                                                        mapi_flag::showSoftDeletes);
                           // The store keeps neither hidden nor deleted messages beside the visible ones.
                           if (flags & (MAPI_ASSOCIATED | mapi_flag::showSoftDeletes))
                               throw MapiError(MAPI_E_NO_SUPPORT);
                           return YieldTable<MessageTableSource>(table);
                       });
}

STDMETHODIMP CMapiFolder::GetHierarchyTable(ULONG flags, IMAPITable** table) noexcept
{
    return ComBoundary(lastError,
                       [&]
                       {
                           RequireKnownFlags(flags, MAPI_UNICODE | MAPI_DEFERRED_ERRORS | CONVENIENT_DEPTH);
                           return YieldTable<FolderTableSource>(table, (flags & CONVENIENT_DEPTH) != 0);
                       });
}

STDMETHODIMP CMapiFolder::OpenEntry(ULONG size, ENTRYID* entryId, const IID* iid, ULONG flags,
                                    ULONG* objectType, IUnknown** entry) noexcept
{
    return ComBoundary(lastError,
                       [&] { OpenStoreEntry(store, size, entryId, iid, flags, objectType, entry); });
}

STDMETHODIMP CMapiFolder::SetSearchCriteria(SRestriction*, ENTRYLIST*, ULONG) noexcept
{
    return MAPI_E_NO_SUPPORT;
}

STDMETHODIMP CMapiFolder::GetSearchCriteria(ULONG, SRestriction** restriction, ENTRYLIST** folders,
                                            ULONG*) noexcept
{
    return NoSupport(restriction, folders);
}

STDMETHODIMP CMapiFolder::CreateMessage(const IID* iid, ULONG flags, IMessage** message) noexcept
{
    return ComBoundary(lastError,
                       [&]
                       {
                           Given(message) = nullptr;
                           RequireKnownFlags(flags, MAPI_DEFERRED_ERRORS);
                           const auto made = MakeMessageObject(store, id);
                           YieldInterface(*made.Get(), iid ? iid : &IID_IMessage,
                                          reinterpret_cast<IUnknown**>(message));
                       });
}

STDMETHODIMP CMapiFolder::CopyMessages(ENTRYLIST* list, const IID*, void* destination, ULONG, IMAPIProgress*,
                                       ULONG flags) noexcept
{
    return ComBoundary(lastError,
                       [&]
                       {
                           RequireKnownFlags(flags, MESSAGE_MOVE | MESSAGE_DIALOG | MAPI_DECLINE_OK);
                           const std::vector<std::int64_t> messages = MessagesOf(list);
                           const std::int64_t target = FolderIdOf(*store, destination);
                           const auto job = flags & MESSAGE_MOVE ? &::MoveMessages : &::CopyMessages;
                           return PartlyDone(job(*store->file, id, messages, target), messages.size());
                       });
}

STDMETHODIMP CMapiFolder::DeleteMessages(ENTRYLIST* list, ULONG, IMAPIProgress*, ULONG flags) noexcept
{
    return ComBoundary(lastError,
                       [&]
                       {
                           RequireKnownFlags(flags, MESSAGE_DIALOG | mapi_flag::deleteHardDelete);
                           const std::vector<std::int64_t> messages = MessagesOf(list);
                           return PartlyDone(::DeleteMessages(*store->file, id, messages), messages.size());
                       });
}

STDMETHODIMP CMapiFolder::CreateFolder(ULONG type, LPTSTR name, LPTSTR comment, const IID* iid, ULONG flags,
                                       IMAPIFolder** folder) noexcept
{
    return ComBoundary(
        lastError,
        [&]
        {
            Given(folder) = nullptr;
            RequireKnownFlags(flags, MAPI_UNICODE | MAPI_DEFERRED_ERRORS | OPEN_IF_EXISTS);
            if (type != FOLDER_GENERIC)
                throw MapiError(MAPI_E_NO_SUPPORT);
            const StoredValue note = comment ? StoredValue(TextOfCaller(comment, flags)) : StoredValue();
            const std::int64_t made = FolderToMake(TextOfCaller(&Given(name), flags), note, flags);
            const auto object = OpenFolderObject(store, made, true);
            YieldInterface(*object.Get(), iid ? iid : &IID_IMAPIFolder, reinterpret_cast<IUnknown**>(folder));
        });
}

STDMETHODIMP CMapiFolder::CopyFolder(ULONG, ENTRYID*, const IID*, void*, LPTSTR, ULONG, IMAPIProgress*,
                                     ULONG) noexcept
{
    return MAPI_E_NO_SUPPORT;
}

STDMETHODIMP CMapiFolder::DeleteFolder(ULONG size, ENTRYID* entryId, ULONG, IMAPIProgress*,
                                       ULONG flags) noexcept
{
    return ComBoundary(lastError,
                       [&]
                       {
                           RequireKnownFlags(flags, DEL_MESSAGES | DEL_FOLDERS | FOLDER_DIALOG |
                                                        mapi_flag::deleteHardDelete);
                           const std::int64_t folder =
                               DecodeEntryIdOf(store->uid, EntryKind::Folder, size, entryId).id;
                           RequireChild(*store, id, folder);
                           RequireEmptyEnough(*store, folder, flags);
                           ::DeleteFolder(*store->file, folder);
                       });
}

STDMETHODIMP CMapiFolder::SetReadFlags(ENTRYLIST* list, ULONG, IMAPIProgress*, ULONG flags) noexcept
{
    return ComBoundary(
        lastError,
        [&]
        {
            RequireKnownFlags(flags, CLEAR_READ_FLAG | SUPPRESS_RECEIPT | GENERATE_RECEIPT_ONLY |
                                         MESSAGE_DIALOG | MAPI_DEFERRED_ERRORS);
            const std::vector<std::int64_t> messages =
                list ? MessagesOf(list) : ReadMessageIds(*store->file, id);
            // The store sends no receipts; where only one is wanted there is nothing to do.
            if (flags & GENERATE_RECEIPT_ONLY)
                return S_OK;
            const bool read = !(flags & CLEAR_READ_FLAG);
            return PartlyDone(SetMessagesRead(*store->file, id, messages, read), messages.size());
        });
}

STDMETHODIMP CMapiFolder::GetMessageStatus(ULONG, ENTRYID*, ULONG, ULONG*) noexcept
{
    return MAPI_E_NO_SUPPORT;
}

STDMETHODIMP CMapiFolder::SetMessageStatus(ULONG, ENTRYID*, ULONG, ULONG, ULONG*) noexcept
{
    return MAPI_E_NO_SUPPORT;
}

STDMETHODIMP CMapiFolder::SaveContentsSort(SSortOrderSet*, ULONG) noexcept
{
    return MAPI_E_NO_SUPPORT;
}

STDMETHODIMP CMapiFolder::EmptyFolder(ULONG, IMAPIProgress*, ULONG flags) noexcept
{
    return ComBoundary(lastError,
                       [&]
                       {
                           RequireKnownFlags(flags,
                                             DEL_ASSOCIATED | FOLDER_DIALOG | mapi_flag::deleteHardDelete);
                           ::EmptyFolder(*store->file, id);
                       });
}

std::vector<std::int64_t> CMapiFolder::MessagesOf(const ENTRYLIST* list) const
{
    return MessageIdsOf(*store, Given(list));
}

std::int64_t CMapiFolder::FolderToMake(const std::string& name, const StoredValue& comment, ULONG flags)
{
    if (name.empty())
        throw MapiError(MAPI_E_INVALID_PARAMETER, L"A folder needs a name.");
    const std::int64_t existing = flags & OPEN_IF_EXISTS ? FindFolder(*store->file, id, name) : 0;
    return existing != 0 ? existing : ::CreateFolder(*store->file, id, name, comment);
}
}    // namespace

Microsoft::WRL::ComPtr<IMAPIFolder> OpenFolderObject(const SharedStore& store, std::int64_t id, bool modify)
{
    constexpr std::uint32_t existence[] = {tag::storedFolderId};
    if (std::holds_alternative<std::monostate>(ReadFolderValues(*store, {&id, 1}, existence).front()))
        throw StoreError(StoreFault::NoSuchFolder, "The folder is not in the mail store any more.");
    return MakeObject<CMapiFolder>(store, id, modify);
}
