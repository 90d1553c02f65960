#include "explorer/AddIn.h"

#include "explorer/AddInInstance.h"
#include "win/ComBoundary.h"
#include "win/RegistryKey.h"
#include "win/SafeArray.h"

#include <windows.h>

#include <objbase.h>

#include <algorithm>

using Microsoft::WRL::ComPtr;

namespace
{
constexpr wchar_t addInsKey[] = L"Software\\Microsoft\\Office\\Outlook\\Addins";
constexpr DWORD longestName = 1024;    // in bytes
constexpr DWORD loadAtStartup = 2;     // a bit of LoadBehavior; 1 is: loaded at the moment

DWORD ReadNumber(const RegistryKey& key, const wchar_t* name)
{
    DWORD value = 0;
    DWORD size = sizeof value;
    return ::RegGetValueW(key.get(), nullptr, name, RRF_RT_REG_DWORD, nullptr, &value, &size) == ERROR_SUCCESS
               ? value
               : 0;
}

AddInEntry ReadEntry(const RegistryKey& parent, const std::wstring& progId)
{
    const RegistryKey key = RegistryKey::Open(parent.get(), progId, KEY_READ);
    AddInEntry entry{progId, progId};
    if (!key)
        return entry;
    if (const std::wstring name = key.QueryString(L"FriendlyName", longestName); !name.empty())
        entry.friendlyName = name;
    entry.loadsAtStartup = (ReadNumber(key, L"LoadBehavior") & loadAtStartup) != 0;
    return entry;
}

void AppendEntries(HKEY root, std::vector<AddInEntry>& entries)
{
    const RegistryKey key = RegistryKey::Open(root, addInsKey, KEY_READ);
    if (!key)
        return;
    wchar_t name[256];
    for (DWORD index = 0;; ++index)
    {
        DWORD length = ARRAYSIZE(name);
        if (::RegEnumKeyExW(key.get(), index, name, &length, nullptr, nullptr, nullptr, nullptr) !=
            ERROR_SUCCESS)
            return;
        if (std::ranges::none_of(entries, [&](const AddInEntry& one) { return one.progId == name; }))
            entries.push_back(ReadEntry(key, name));
    }
}

// Calls into an add-in: what it makes meanwhile is known as its own.
class OwnerScope
{
public:
    OwnerScope(CApplication& application, OwnerNumber owner) noexcept : application(application)
    {
        application.SetOwner(owner);
    }
    OwnerScope(const OwnerScope&) = delete;
    OwnerScope& operator=(const OwnerScope&) = delete;
    ~OwnerScope() { application.SetOwner(0); }

private:
    CApplication& application;
};

SafeArray NoArguments()
{
    return SafeArray(::SafeArrayCreateVector(VT_VARIANT, 0, 0));
}

// One call of an add-in's; what it throws against all rules becomes its result.
template <typename Call>
HRESULT Guarded(Call&& call) noexcept
{
    HRESULT called = S_OK;
    const HRESULT thrown = ComBoundary([&] { called = call(); });
    return FAILED(thrown) ? thrown : called;
}
}    // namespace

std::vector<AddInEntry> ReadAddInEntries()
{
    std::vector<AddInEntry> entries;
    AppendEntries(HKEY_CURRENT_USER, entries);
    AppendEntries(HKEY_LOCAL_MACHINE, entries);
    return entries;
}

void AddIn::Load(CApplication& application, ext_ConnectMode mode)
{
    if (state == AddInState::loaded)
        return;
    result = Connect(application, mode);
    state = FAILED(result) ? AddInState::failed : AddInState::loaded;
    if (state == AddInState::failed)
    {
        extension.Reset();
        application.GetBars().RemoveOwnedBy(number);
        ::CoFreeUnusedLibrariesEx(0, 0);
    }
}

HRESULT AddIn::Connect(CApplication& application, ext_ConnectMode mode)
{
    CLSID classId{};
    const HRESULT known = ::CLSIDFromProgID(entry.progId.c_str(), &classId);
    if (FAILED(known))
        return known;
    const HRESULT made = Guarded(
        [&] { return ::CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&extension)); });
    if (FAILED(made))
        return made;
    const ComPtr<IDispatch> instance = MakeAddInInstance(entry.progId, entry.friendlyName);
    const SafeArray custom = NoArguments();
    SAFEARRAY* arguments = custom.get();
    const OwnerScope owner(application, number);
    const HRESULT connected =
        Guarded([&] { return extension->OnConnection(&application, mode, instance.Get(), &arguments); });
    // A refused connection has left whatever it made so far: the add-in may put it away.
    if (FAILED(connected))
        (void)Guarded([&] { return extension->OnDisconnection(ext_dm_UserClosed, &arguments); });
    return connected;
}

void AddIn::TellStartupComplete()
{
    const SafeArray custom = NoArguments();
    SAFEARRAY* arguments = custom.get();
    // Add-ins that have nothing to do then refuse the call.
    if (extension)
        (void)Guarded([&] { return extension->OnStartupComplete(&arguments); });
}

void AddIn::TellBeginShutdown()
{
    const SafeArray custom = NoArguments();
    SAFEARRAY* arguments = custom.get();
    if (extension)
        (void)Guarded([&] { return extension->OnBeginShutdown(&arguments); });
}

void AddIn::Unload(CApplication& application, ext_DisconnectMode mode)
{
    if (!extension)
        return;
    const SafeArray custom = NoArguments();
    SAFEARRAY* arguments = custom.get();
    result = Guarded([&] { return extension->OnDisconnection(mode, &arguments); });
    // Its own destructor may let go of buttons: they have to be there still.
    extension.Reset();
    application.GetBars().RemoveOwnedBy(number);
    state = AddInState::notLoaded;
    ::CoFreeUnusedLibrariesEx(0, 0);
}
