#include "quorvex/MapiError.h"

#include <mapicode.h>

#include <algorithm>
#include <cwchar>

namespace
{
struct NamedFailure
{
    HRESULT code;
    const wchar_t* name;
};

constexpr NamedFailure namedFailures[] = {
    {MAPI_E_NO_SUPPORT, L"MAPI_E_NO_SUPPORT"},
    {MAPI_E_BAD_CHARWIDTH, L"MAPI_E_BAD_CHARWIDTH"},
    {MAPI_E_UNKNOWN_FLAGS, L"MAPI_E_UNKNOWN_FLAGS"},
    {MAPI_E_INVALID_ENTRYID, L"MAPI_E_INVALID_ENTRYID"},
    {MAPI_E_INVALID_OBJECT, L"MAPI_E_INVALID_OBJECT"},
    {MAPI_E_OBJECT_CHANGED, L"MAPI_E_OBJECT_CHANGED"},
    {MAPI_E_OBJECT_DELETED, L"MAPI_E_OBJECT_DELETED"},
    {MAPI_E_BUSY, L"MAPI_E_BUSY"},
    {MAPI_E_NOT_ENOUGH_DISK, L"MAPI_E_NOT_ENOUGH_DISK"},
    {MAPI_E_NOT_ENOUGH_RESOURCES, L"MAPI_E_NOT_ENOUGH_RESOURCES"},
    {MAPI_E_NOT_FOUND, L"MAPI_E_NOT_FOUND"},
    {MAPI_E_VERSION, L"MAPI_E_VERSION"},
    {MAPI_E_LOGON_FAILED, L"MAPI_E_LOGON_FAILED"},
    {MAPI_E_USER_CANCEL, L"MAPI_E_USER_CANCEL"},
    {MAPI_E_NETWORK_ERROR, L"MAPI_E_NETWORK_ERROR"},
    {MAPI_E_DISK_ERROR, L"MAPI_E_DISK_ERROR"},
    {MAPI_E_TOO_COMPLEX, L"MAPI_E_TOO_COMPLEX"},
    {MAPI_E_COMPUTED, L"MAPI_E_COMPUTED"},
    {MAPI_E_CORRUPT_DATA, L"MAPI_E_CORRUPT_DATA"},
    {MAPI_E_UNCONFIGURED, L"MAPI_E_UNCONFIGURED"},
    {MAPI_E_FAILONEPROVIDER, L"MAPI_E_FAILONEPROVIDER"},
    {MAPI_E_TABLE_TOO_BIG, L"MAPI_E_TABLE_TOO_BIG"},
    {MAPI_E_COLLISION, L"MAPI_E_COLLISION"},
    {MAPI_E_NOT_INITIALIZED, L"MAPI_E_NOT_INITIALIZED"},
    {MAPI_E_NO_ACCESS, L"MAPI_E_NO_ACCESS"},
    {MAPI_E_NOT_ENOUGH_MEMORY, L"MAPI_E_NOT_ENOUGH_MEMORY"},
    {MAPI_E_INVALID_PARAMETER, L"MAPI_E_INVALID_PARAMETER"},
    {MAPI_E_INTERFACE_NOT_SUPPORTED, L"MAPI_E_INTERFACE_NOT_SUPPORTED"},
    {MAPI_E_CALL_FAILED, L"MAPI_E_CALL_FAILED"},
};
}    // namespace

std::wstring NameOfFailure(HRESULT failure)
{
    const auto named = std::ranges::find(namedFailures, failure, &NamedFailure::code);
    if (named != std::end(namedFailures))
        return named->name;
    wchar_t number[12];
    std::swprintf(number, std::size(number), L"0x%08lX", static_cast<unsigned long>(failure));
    return number;
}

void ThrowMapiError(HRESULT failure, const MAPIERROR* lastError, const wchar_t* step)
{
    std::wstring text = std::wstring(L"Could not ") + step + L": ";
    if (lastError && lastError->lpszError && *lastError->lpszError)
        text += std::wstring(lastError->lpszError) + L" (" + NameOfFailure(failure) + L")";
    else
        text += NameOfFailure(failure);
    throw MapiError(failure, std::move(text));
}

void CheckMapi(HRESULT result, const wchar_t* step)
{
    if (FAILED(result))
        ThrowMapiError(result, nullptr, step);
}
