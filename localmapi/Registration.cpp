#include "localmapi/Registration.h"

#include "localmapi/RegistryKey.h"

namespace
{
constexpr wchar_t clientsPath[] = L"Software\\Clients\\Mail";
constexpr wchar_t clientPath[] = L"Software\\Clients\\Mail\\LocalMapi";
constexpr wchar_t clientName[] = L"LocalMapi";
constexpr wchar_t formerDefault[] = L"FormerDefault";
constexpr wchar_t defaultValue[] = L"";

bool IsOurs(const std::optional<std::wstring>& client)
{
    return client && CompareStringOrdinal(client->c_str(), -1, clientName, -1, TRUE) == CSTR_EQUAL;
}

// A second registration would otherwise remember ourselves as the former default.
void RememberFormerDefault(const RegistryKey& clients, const RegistryKey& ours)
{
    const std::optional<std::wstring> current = clients.ReadText(defaultValue);
    if (IsOurs(current))
        return;
    if (current)
        ours.WriteText(formerDefault, *current);
    else
        ours.DeleteValue(formerDefault);
}

void PutFormerDefaultBack(const RegistryKey& clients)
{
    if (!IsOurs(clients.ReadText(defaultValue)))
        return;
    const std::optional<RegistryKey> ours = RegistryKey::Open(HKEY_LOCAL_MACHINE, clientPath);
    const std::optional<std::wstring> former = ours ? ours->ReadText(formerDefault) : std::nullopt;
    if (former)
        clients.WriteText(defaultValue, *former);
    else
        clients.DeleteValue(defaultValue);
}
}    // namespace

void RegisterMailClient(const std::wstring& modulePath)
{
    const RegistryKey clients = RegistryKey::Create(HKEY_LOCAL_MACHINE, clientsPath);
    const RegistryKey ours = RegistryKey::Create(HKEY_LOCAL_MACHINE, clientPath);
    ours.WriteText(defaultValue, clientName);
    ours.WriteText(L"DLLPathEx", modulePath);
    RememberFormerDefault(clients, ours);
    clients.WriteText(defaultValue, clientName);
}

void UnregisterMailClient()
{
    if (const auto clients = RegistryKey::Open(HKEY_LOCAL_MACHINE, clientsPath, KEY_READ | KEY_WRITE))
        PutFormerDefaultBack(*clients);
    RegistryKey::DeleteTree(HKEY_LOCAL_MACHINE, clientPath);
}
