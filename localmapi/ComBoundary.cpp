#include "localmapi/ComBoundary.h"

#include "localmapi/MapiMemory.h"
#include "localmapi/TextConversion.h"
#include "localmapi/storage/StoreError.h"

#include <comdef.h>
#include <mapicode.h>

#include <new>

namespace
{
HRESULT ResultOf(StoreFault fault)
{
    switch (fault)
    {
    case StoreFault::FileMissing:
        return MAPI_E_NOT_FOUND;
    case StoreFault::NotAStore:
        return MAPI_E_CORRUPT_STORE;
    case StoreFault::NoSuchFolder:
    case StoreFault::NoSuchMessage:
        return MAPI_E_NOT_FOUND;
    case StoreFault::NameTaken:
        return MAPI_E_COLLISION;
    case StoreFault::NotAllowed:
    case StoreFault::ReadOnly:
        return MAPI_E_NO_ACCESS;
    case StoreFault::Busy:
        return MAPI_E_BUSY;
    case StoreFault::DiskFull:
        return MAPI_E_NOT_ENOUGH_DISK;
    case StoreFault::Full:
        return MAPI_E_NOT_ENOUGH_RESOURCES;
    case StoreFault::Other:
        break;
    }
    return MAPI_E_DISK_ERROR;
}

// The error's strings hang on it: wide ones, or the code page's when the caller did not ask for Unicode.
MapiBuffer<MAPIERROR> MakeError(const std::wstring& text, bool unicode)
{
    static constexpr wchar_t component[] = L"LocalMapi";
    MapiBuffer<MAPIERROR> error = MakeMapiBuffer<MAPIERROR>();
    const auto copy = [&](const std::wstring& from)
    {
        if (unicode)
        {
            auto* const wide = AllocateMapiArray<wchar_t>(from.size() + 1, error.get());
            from.copy(wide, from.size());
            return reinterpret_cast<LPTSTR>(wide);
        }
        const std::string ansi = AnsiFromWide(from);
        auto* const narrow = AllocateMapiArray<char>(ansi.size() + 1, error.get());
        ansi.copy(narrow, ansi.size());
        return reinterpret_cast<LPTSTR>(narrow);
    };
    error->ulVersion = 0;    // MAPI_ERROR_VERSION
    error->lpszError = copy(text);
    error->lpszComponent = copy(component);
    return error;
}
}    // namespace

HRESULT LastError::TranslateException() noexcept
{
    HRESULT result = MAPI_E_CALL_FAILED;
    std::wstring text;
    try
    {
        throw;
    }
    catch (const MapiError& error)
    {
        result = error.result;
        text = error.text;
    }
    catch (const StoreError& error)
    {
        result = ResultOf(error.fault);
        text = WideFromUtf8(error.what());
    }
    catch (const _com_error& error)
    {
        result = error.Error();
    }
    catch (const std::bad_alloc&)
    {
        result = MAPI_E_NOT_ENOUGH_MEMORY;
    }
    catch (const std::exception& error)
    {
        text = WideFromUtf8(error.what());
    }
    catch (...)
    {
        // Nothing is known of it but that the call failed.
    }
    Remember(result, std::move(text));
    return result;
}

void LastError::Remember(HRESULT result, std::wstring text) noexcept
{
    const std::lock_guard lock(mutex);
    lastResult = result;
    lastText = std::move(text);
}

HRESULT LastError::Get(HRESULT result, ULONG flags, MAPIERROR** error) noexcept
{
    if (!error)
        return MAPI_E_INVALID_PARAMETER;
    *error = nullptr;
    if (flags & ~MAPI_UNICODE)
        return MAPI_E_UNKNOWN_FLAGS;
    try
    {
        const std::lock_guard lock(mutex);
        if (result == lastResult && !lastText.empty())
            *error = MakeError(lastText, (flags & MAPI_UNICODE) != 0).release();    // now the caller's
        return S_OK;
    }
    catch (...)
    {
        return MAPI_E_NOT_ENOUGH_MEMORY;
    }
}
