#include "tests/quorvex/FakeSession.h"

#include <mapicode.h>
#include <mapitags.h>

#include <algorithm>
#include <span>

namespace fake
{
// Objects of the tree; in no unnamed namespace, since only COM calls reach them.
class TreeMessage final : public FakeMessage
{
public:
    TreeMessage(std::shared_ptr<Message> message, std::shared_ptr<MailStore> owner)
        : FakeMessage(std::move(message), owner->counters),
          store(std::move(owner))
    {
    }
    STDMETHODIMP SaveChanges(ULONG) override
    {
        ++store->saves;
        return S_OK;
    }
    STDMETHODIMP GetIDsFromNames(ULONG count, MAPINAMEID** names, ULONG flags, SPropTagArray** tags) override
    {
        // Named by the set and number of the flag's text and nothing else.
        constexpr GUID common = {0x00062008, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
        if (count != 1 || !(flags & MAPI_CREATE) || names[0]->ulKind != MNID_ID ||
            names[0]->Kind.lID != 0x8530 || !IsEqualGUID(*names[0]->lpguid, common))
            return MAPI_E_NO_SUPPORT;
        void* block = nullptr;
        FakeMapiMemory::Allocate(sizeof(SPropTagArray) + sizeof(ULONG), &block);
        *tags = static_cast<SPropTagArray*>(block);
        (*tags)->cValues = 1;
        (*tags)->aulPropTag[0] = PROP_TAG(PT_UNSPECIFIED, 0x8123);
        return S_OK;
    }

private:
    std::shared_ptr<MailStore> store;
};

class TreeFolder final : public FakeFolder
{
public:
    TreeFolder(std::shared_ptr<Folder> data, std::shared_ptr<MailStore> owner)
        : FakeFolder(data),
          folder(std::move(data)),
          store(std::move(owner))
    {
        ++store->foldersOpened;
    }
    STDMETHODIMP GetHierarchyTable(ULONG, IMAPITable** table) override
    {
        std::vector<Properties> rows;
        for (const auto& other : store->folders)
            if (other != folder && std::get<Bytes>(other->properties[PR_PARENT_ENTRYID]) == folder->entryId)
            {
                rows.push_back(other->properties);
                rows.back()[PR_ENTRYID] = other->entryId;
            }
        *table = MakeTable(std::move(rows), {}, counters).Detach();
        return S_OK;
    }
    STDMETHODIMP CopyMessages(ENTRYLIST* ids, const IID*, void* destination, ULONG, IMAPIProgress*,
                              ULONG flags) override;

private:
    std::shared_ptr<Folder> folder;
    std::shared_ptr<MailStore> store;
};

STDMETHODIMP TreeFolder::CopyMessages(ENTRYLIST* ids, const IID*, void* destination, ULONG, IMAPIProgress*,
                                      ULONG flags)
{
    if (store->copyMessages != S_OK)
        return store->copyMessages;
    Folder& target = *static_cast<TreeFolder*>(static_cast<IMAPIFolder*>(destination))->folder;
    for (const SBinary& id : std::span(ids->lpbin, ids->cValues))
    {
        const auto found = std::ranges::find(folder->messages, Bytes(id.lpb, id.lpb + id.cb),
                                             [](const auto& message) { return message->entryId; });
        if (found == folder->messages.end())
            return MAPI_E_NOT_FOUND;
        const std::shared_ptr<Message> original = *found;
        const auto copy = AddStoredMessage(target, original->properties);
        copy->properties[PR_SEARCH_KEY] = original->properties.at(PR_SEARCH_KEY);
        copy->habits = original->habits;
        if (!(flags & MESSAGE_MOVE))
            continue;
        if (store->keepsIds)
            copy->entryId = original->entryId;
        std::erase(folder->messages, original);
    }
    return S_OK;
}

class TreeStore final : public MapiProp<IMsgStore>
{
public:
    explicit TreeStore(std::shared_ptr<MailStore> data)
        : MapiProp({&IID_IUnknown, &IID_IMAPIProp, &IID_IMsgStore}),
          store(std::move(data))
    {
    }
    STDMETHODIMP Advise(ULONG, ENTRYID*, ULONG, IMAPIAdviseSink*, ULONG*) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP Unadvise(ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP CompareEntryIDs(ULONG, ENTRYID*, ULONG, ENTRYID*, ULONG, ULONG*) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP OpenEntry(ULONG size, ENTRYID* id, const IID*, ULONG flags, ULONG* type,
                           IUnknown** object) override;
    STDMETHODIMP SetReceiveFolder(LPTSTR, ULONG, ULONG, ENTRYID*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP GetReceiveFolder(LPTSTR, ULONG, ULONG*, ENTRYID**, LPTSTR*) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP GetReceiveFolderTable(ULONG, IMAPITable**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP StoreLogoff(ULONG*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP AbortSubmit(ULONG, ENTRYID*, ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP GetOutgoingQueue(ULONG, IMAPITable**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP SetLockState(IMessage*, ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP FinishedMsg(ULONG, ULONG, ENTRYID*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP NotifyNewMail(NOTIFICATION*) override { return MAPI_E_NO_SUPPORT; }

protected:
    Properties& Stored() override { return store->properties; }
    const PropHabits& Habits() const override { return store->habits; }

private:
    std::shared_ptr<MailStore> store;
};

STDMETHODIMP TreeStore::OpenEntry(ULONG size, ENTRYID* id, const IID*, ULONG flags, ULONG* type,
                                  IUnknown** object)
{
    *object = nullptr;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(id);
    const Bytes wanted = size ? Bytes(bytes, bytes + size) : store->folders.front()->entryId;
    for (const auto& folder : store->folders)
    {
        if (folder->entryId == wanted)
        {
            *type = MAPI_FOLDER;
            *object = static_cast<IMAPIFolder*>(Make<TreeFolder>(folder, store).Detach());
            return S_OK;
        }
        for (const auto& message : folder->messages)
            if (message->entryId == wanted)
            {
                if (FAILED(message->open))
                    return message->open;
                store->openFlags.push_back(flags);
                *type = MAPI_MESSAGE;
                *object = static_cast<IMessage*>(Make<TreeMessage>(message, store).Detach());
                return S_OK;
            }
    }
    return MAPI_E_NOT_FOUND;
}

class TreeSession final : public Unknown<IMAPISession>
{
public:
    explicit TreeSession(std::shared_ptr<MailStore> data)
        : Unknown({&IID_IUnknown, &IID_IMAPISession}),
          store(std::move(data))
    {
        ++FakeMapiSession::sessions;
    }
    STDMETHODIMP GetLastError(HRESULT, ULONG, MAPIERROR** error) override { return GiveLastError({}, error); }
    STDMETHODIMP GetMsgStoresTable(ULONG, IMAPITable** table) override
    {
        const Properties other{{PR_ENTRYID, Bytes{0, 0, 0, 0, 'x'}}, {PR_DEFAULT_STORE, false}};
        const Properties own{{PR_ENTRYID, store->entryId},
                             {PR_DEFAULT_STORE, FakeMapiSession::hasDefaultStore}};
        *table = MakeTable({other, own}, {}, store->counters).Detach();
        return S_OK;
    }
    STDMETHODIMP OpenMsgStore(ULONG_PTR, ULONG size, ENTRYID* id, const IID*, ULONG,
                              IMsgStore** opened) override
    {
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(id);
        if (Bytes(bytes, bytes + size) != store->entryId)
            return MAPI_E_NOT_FOUND;
        *opened = Make<TreeStore>(store).Detach();
        return S_OK;
    }
    STDMETHODIMP OpenAddressBook(ULONG_PTR, const IID*, ULONG, IAddrBook**) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP OpenProfileSection(MAPIUID*, const IID*, ULONG, IProfSect**) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP GetStatusTable(ULONG, IMAPITable**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP OpenEntry(ULONG, ENTRYID*, const IID*, ULONG, ULONG*, IUnknown**) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP CompareEntryIDs(ULONG firstSize, ENTRYID* first, ULONG secondSize, ENTRYID* second, ULONG,
                                 ULONG* same) override
    {
        const auto* one = reinterpret_cast<const std::uint8_t*>(first);
        const auto* two = reinterpret_cast<const std::uint8_t*>(second);
        *same = std::ranges::equal(std::span(one, firstSize), std::span(two, secondSize));
        return S_OK;
    }
    STDMETHODIMP Advise(ULONG, ENTRYID*, ULONG, IMAPIAdviseSink*, ULONG*) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP Unadvise(ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP MessageOptions(ULONG_PTR, ULONG, LPTSTR, IMessage*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP QueryDefaultMessageOpt(LPTSTR, ULONG, ULONG*, SPropValue**) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP EnumAdrTypes(ULONG, ULONG*, LPTSTR**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP QueryIdentity(ULONG*, ENTRYID**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP Logoff(ULONG_PTR, ULONG, ULONG) override
    {
        --FakeMapiSession::sessions;
        return S_OK;
    }
    STDMETHODIMP SetDefaultStore(ULONG, ULONG, ENTRYID*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP AdminServices(ULONG, IMsgServiceAdmin**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP ShowForm(ULONG_PTR, IMsgStore*, IMAPIFolder*, const IID*, ULONG, IMessage*, ULONG, ULONG,
                          ULONG, ULONG, LPSTR) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP PrepareForm(const IID*, IMessage*, ULONG*) override { return MAPI_E_NO_SUPPORT; }

private:
    std::shared_ptr<MailStore> store;
};

namespace
{
std::shared_ptr<MailStore> loggedOnTo;    // what LogonEx gives sessions on

HRESULT STDMETHODCALLTYPE Initialize(LPVOID options) noexcept
{
    if (FAILED(FakeMapiSession::initializeResult))
        return FakeMapiSession::initializeResult;
    FakeMapiSession::initializeFlags = static_cast<MAPIINIT_0*>(options)->ulFlags;
    ++FakeMapiSession::initialized;
    return S_OK;
}

void STDMETHODCALLTYPE Uninitialize() noexcept
{
    --FakeMapiSession::initialized;
}

HRESULT STDMETHODCALLTYPE LogonEx(ULONG_PTR, LPTSTR profile, LPTSTR, ULONG flags,
                                  IMAPISession** session) noexcept
{
    *session = nullptr;
    FakeMapiSession::logonFlags = flags;
    FakeMapiSession::logonProfile = profile ? profile : L"";
    if (FAILED(FakeMapiSession::logonResult))
        return FakeMapiSession::logonResult;
    *session = Make<TreeSession>(loggedOnTo).Detach();
    return S_OK;
}

constexpr MapiFunctions functions = {Initialize, Uninitialize, LogonEx, FakeMapiMemory::Allocate,
                                     FakeMapiMemory::Free};
}    // namespace

FakeMapiSession::FakeMapiSession(std::shared_ptr<MailStore> store)
{
    logonResult = S_OK;
    initializeResult = S_OK;
    hasDefaultStore = true;
    loggedOnTo = std::move(store);
    ReplaceMapi(&functions);
}

FakeMapiSession::~FakeMapiSession()
{
    loggedOnTo.reset();
    ReplaceMapi(nullptr);
}

std::shared_ptr<Folder> AddFolder(MailStore& store, const Folder* parent, const std::wstring& name,
                                  const std::wstring& containerClass)
{
    auto folder = std::make_shared<Folder>();
    folder->entryId = {0, 0, 0, 0, 'f', static_cast<std::uint8_t>(store.folders.size())};
    folder->counters = store.counters;
    folder->properties[PR_DISPLAY_NAME_W] = name;
    folder->properties[PR_PARENT_ENTRYID] = parent ? parent->entryId : folder->entryId;
    if (!containerClass.empty())
        folder->properties[PR_CONTAINER_CLASS_W] = containerClass;
    store.folders.push_back(folder);
    return folder;
}

std::shared_ptr<Message> AddStoredMessage(Folder& folder, Properties properties)
{
    auto message = AddMessage(folder, std::move(properties));
    message->properties[PR_ENTRYID] = message->entryId;
    message->properties[PR_PARENT_ENTRYID] = folder.entryId;
    message->properties.try_emplace(PR_SEARCH_KEY, message->entryId);
    return message;
}
}    // namespace fake
