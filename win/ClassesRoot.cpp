#include "win/ClassesRoot.h"

#include "win/RegistryKey.h"

ClassesRoot::ClassesRoot(RegistrationScope scope) noexcept
{
    if (scope == RegistrationScope::User)
        result = Redirect();
}

ClassesRoot::~ClassesRoot()
{
    if (redirected)
        ::RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
}

HRESULT ClassesRoot::Redirect() noexcept
{
    const RegistryKey key = RegistryKey::Create(HKEY_CURRENT_USER, L"Software\\Classes", KEY_ALL_ACCESS);
    if (!key)
        return REGDB_E_WRITEREGDB;
    // The system keeps the key open by a handle of its own.
    const LSTATUS done = ::RegOverridePredefKey(HKEY_CLASSES_ROOT, key.get());
    redirected = done == ERROR_SUCCESS;
    return HRESULT_FROM_WIN32(static_cast<DWORD>(done));
}
