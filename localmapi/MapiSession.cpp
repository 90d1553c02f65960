#include "localmapi/MapiSession.h"

#include "localmapi/Arguments.h"
#include "localmapi/ComBoundary.h"
#include "localmapi/ComObject.h"
#include "localmapi/EntryId.h"
#include "localmapi/MapiMemory.h"
#include "localmapi/MsgServiceAdmin.h"
#include "localmapi/MsgStore.h"
#include "localmapi/ProfileTables.h"

#include <mapitags.h>

namespace
{
using Microsoft::WRL::ComPtr;

// The sentence that the store has for its failure, when it has one.
std::wstring TextOf(IMsgStore& store, HRESULT result)
{
    MAPIERROR* error = nullptr;
    if (FAILED(store.GetLastError(result, MAPI_UNICODE, &error)) || !error)
        return {};
    const MapiBuffer<MAPIERROR> owner(error);
    return reinterpret_cast<const wchar_t*>(error->lpszError);
}

EntryId EntryIdOf(IMsgStore& store)
{
    SizedSPropTagArray(1, tags) = {1, {PR_ENTRYID}};
    ULONG count = 0;
    SPropValue* read = nullptr;
    ThrowIfFailed(store.GetProps(reinterpret_cast<SPropTagArray*>(&tags), 0, &count, &read));
    const MapiBuffer<SPropValue> owner(read);
    if (count != 1 || read->ulPropTag != PR_ENTRYID)
        throw MapiError(MAPI_E_CORRUPT_STORE);
    return DecodeEntryId(read->Value.bin.cb, read->Value.bin.lpb);
}

class CMapiSession final : public ComObject<IMAPISession, IID_IMAPISession>
{
public:
    explicit CMapiSession(Profile profile) : profile(std::move(profile)) {}

    STDMETHODIMP GetLastError(HRESULT result, ULONG flags, LPMAPIERROR* error) noexcept override;
    STDMETHODIMP GetMsgStoresTable(ULONG flags, LPMAPITABLE* table) noexcept override;
    STDMETHODIMP OpenMsgStore(ULONG_PTR window, ULONG entryIdSize, LPENTRYID entryId, LPCIID iid, ULONG flags,
                              LPMDB* store) noexcept override;
    STDMETHODIMP OpenAddressBook(ULONG_PTR, LPCIID, ULONG, LPADRBOOK* addressBook) noexcept override
    {
        return NoSupport(addressBook);
    }
    STDMETHODIMP OpenProfileSection(LPMAPIUID, LPCIID, ULONG, LPPROFSECT* section) noexcept override
    {
        return NoSupport(section);
    }
    STDMETHODIMP GetStatusTable(ULONG flags, LPMAPITABLE* table) noexcept override;
    STDMETHODIMP OpenEntry(ULONG entryIdSize, LPENTRYID entryId, LPCIID iid, ULONG flags, ULONG* objectType,
                           LPUNKNOWN* object) noexcept override;
    STDMETHODIMP CompareEntryIDs(ULONG leftSize, LPENTRYID left, ULONG rightSize, LPENTRYID right,
                                 ULONG flags, ULONG* same) noexcept override;
    STDMETHODIMP Advise(ULONG, LPENTRYID, ULONG, LPMAPIADVISESINK, ULONG*) noexcept override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP Unadvise(ULONG) noexcept override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP MessageOptions(ULONG_PTR, ULONG, LPTSTR, LPMESSAGE) noexcept override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP QueryDefaultMessageOpt(LPTSTR, ULONG, ULONG*, LPSPropValue* options) noexcept override
    {
        return NoSupport(options);
    }
    STDMETHODIMP EnumAdrTypes(ULONG, ULONG*, LPTSTR** types) noexcept override { return NoSupport(types); }
    STDMETHODIMP QueryIdentity(ULONG*, LPENTRYID* entryId) noexcept override { return NoSupport(entryId); }
    STDMETHODIMP Logoff(ULONG_PTR window, ULONG flags, ULONG reserved) noexcept override;
    STDMETHODIMP SetDefaultStore(ULONG, ULONG, LPENTRYID) noexcept override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP AdminServices(ULONG flags, LPSERVICEADMIN* serviceAdmin) noexcept override;
    STDMETHODIMP ShowForm(ULONG_PTR, LPMDB, LPMAPIFOLDER, LPCIID, ULONG, LPMESSAGE, ULONG, ULONG, ULONG,
                          ULONG, LPSTR) noexcept override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP PrepareForm(LPCIID, LPMESSAGE, ULONG*) noexcept override { return MAPI_E_NO_SUPPORT; }

private:
    // Every method but the refused ones and GetLastError.
    template <typename Action>
    HRESULT LoggedOn(Action&& action) noexcept
    {
        return ComBoundary(lastError,
                           [&]
                           {
                               RequireLoggedOn();
                               action();
                           });
    }

    void RequireLoggedOn();
    ComPtr<IMsgStore> OpenStore();
    ComPtr<IMsgStore> OpenStoreOf(const EntryId& entryId);

    LastError lastError;
    const Profile profile;
    std::mutex mutex;           // guards all below
    ComPtr<IMsgStore> store;    // null until it is needed
    bool loggedOff = false;
};

STDMETHODIMP CMapiSession::GetLastError(HRESULT result, ULONG flags, LPMAPIERROR* error) noexcept
{
    return lastError.Get(result, flags, error);
}

STDMETHODIMP CMapiSession::GetMsgStoresTable(ULONG flags, LPMAPITABLE* table) noexcept
{
    return LoggedOn(
        [&]
        {
            Given(table) = nullptr;
            RequireKnownFlags(flags, MAPI_UNICODE);
            *table = MakeMsgStoresTable(DescribeStore(profile.storePath)).Detach();    // now the caller's
        });
}

STDMETHODIMP CMapiSession::OpenMsgStore(ULONG_PTR, ULONG entryIdSize, LPENTRYID entryId, LPCIID iid, ULONG,
                                        LPMDB* opened) noexcept
{
    return LoggedOn(
        [&]
        {
            Given(opened) = nullptr;
            ComPtr<IMsgStore> wanted;
            if (entryIdSize == 0)
                wanted = OpenStore();
            else
                wanted = OpenStoreOf(DecodeEntryId(entryIdSize, entryId));
            ThrowIfFailed(
                wanted->QueryInterface(iid ? *iid : IID_IMsgStore, reinterpret_cast<void**>(opened)));
        });
}

STDMETHODIMP CMapiSession::GetStatusTable(ULONG flags, LPMAPITABLE* table) noexcept
{
    return LoggedOn(
        [&]
        {
            Given(table) = nullptr;
            RequireKnownFlags(flags, MAPI_UNICODE);
            *table = MakeStatusTable(profile.name).Detach();    // now the caller's
        });
}

STDMETHODIMP CMapiSession::OpenEntry(ULONG entryIdSize, LPENTRYID entryId, LPCIID iid, ULONG flags,
                                     ULONG* objectType, LPUNKNOWN* object) noexcept
{
    return LoggedOn(
        [&]
        {
            Given(object) = nullptr;
            Given(objectType) = 0;
            const EntryId decoded = DecodeEntryId(entryIdSize, entryId);
            const ComPtr<IMsgStore> owner = OpenStoreOf(decoded);
            if (decoded.kind == EntryKind::Store)
            {
                ThrowIfFailed(
                    owner->QueryInterface(iid ? *iid : IID_IMsgStore, reinterpret_cast<void**>(object)));
                *objectType = MAPI_STORE;
                return;
            }
            const HRESULT result = owner->OpenEntry(entryIdSize, entryId, iid, flags, objectType, object);
            if (FAILED(result))
                throw MapiError(result, TextOf(*owner.Get(), result));
        });
}

STDMETHODIMP CMapiSession::CompareEntryIDs(ULONG leftSize, LPENTRYID left, ULONG rightSize, LPENTRYID right,
                                           ULONG flags, ULONG* same) noexcept
{
    return LoggedOn(
        [&]
        {
            Given(same) = FALSE;
            RequireKnownFlags(flags, 0);
            *same = DecodeEntryId(leftSize, left).NamesSameObject(DecodeEntryId(rightSize, right));
        });
}

STDMETHODIMP CMapiSession::Logoff(ULONG_PTR, ULONG, ULONG) noexcept
{
    return LoggedOn(
        [&]
        {
            const std::lock_guard lock(mutex);
            store.Reset();
            loggedOff = true;
        });
}

STDMETHODIMP CMapiSession::AdminServices(ULONG flags, LPSERVICEADMIN* serviceAdmin) noexcept
{
    return LoggedOn(
        [&]
        {
            Given(serviceAdmin) = nullptr;
            RequireKnownFlags(flags, MAPI_UNICODE);
            *serviceAdmin = MakeMsgServiceAdmin(profile.storePath).Detach();    // now the caller's
        });
}

void CMapiSession::RequireLoggedOn()
{
    const std::lock_guard lock(mutex);
    if (loggedOff)
        throw MapiError(MAPI_E_NOT_INITIALIZED, L"The mail session has ended.");
}

ComPtr<IMsgStore> CMapiSession::OpenStore()
{
    const std::lock_guard lock(mutex);
    if (!store)
        store = OpenStoreObject(profile.storePath);
    return store;
}

ComPtr<IMsgStore> CMapiSession::OpenStoreOf(const EntryId& entryId)
{
    const ComPtr<IMsgStore> only = OpenStore();
    // The list of stores gives the provider's uid out while the store's own cannot be read.
    const bool namesWhateverStoreThereIs =
        entryId.kind == EntryKind::Store && entryId.storeUid == providerUid;
    if (!namesWhateverStoreThereIs && entryId.storeUid != EntryIdOf(*only.Get()).storeUid)
        throw MapiError(MAPI_E_UNKNOWN_ENTRYID, L"The item belongs to another mail store.");
    return only;
}
}    // namespace

ComPtr<IMAPISession> MakeMapiSession(Profile profile)
{
    return MakeObject<CMapiSession>(std::move(profile));
}
