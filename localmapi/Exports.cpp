// The library's exports: what the system's mapi32.dll hands its callers on to, and COM's registration.
#include "localmapi/Arguments.h"
#include "localmapi/ComBoundary.h"
#include "localmapi/FileStream.h"
#include "localmapi/MapiMemory.h"
#include "localmapi/MapiSession.h"
#include "localmapi/ModuleCount.h"
#include "localmapi/Registration.h"
#include "localmapi/StorePath.h"
#include "localmapi/TableUtilities.h"
#include "localmapi/TextConversion.h"

#include <windows.h>

#include <mapix.h>

#include <mapiutil.h>

#include <atomic>

namespace
{
HINSTANCE instance = nullptr;    // written by DllMain alone
std::atomic<long> initializations = 0;

std::wstring ModulePath()
{
    std::wstring path(MAX_PATH, L'\0');
    DWORD length = GetModuleFileNameW(instance, path.data(), static_cast<DWORD>(path.size()));
    while (length == path.size())
    {
        path.resize(path.size() * 2);
        length = GetModuleFileNameW(instance, path.data(), static_cast<DWORD>(path.size()));
    }
    if (length == 0)
        throw MapiError(HRESULT_FROM_WIN32(GetLastError()));
    path.resize(length);
    return path;
}

// Text arguments are wide when the call's flags say so, else in the ANSI code page.
std::wstring TextArgument(LPTSTR text, ULONG flags)
{
    if (!text)
        return {};
    return flags & MAPI_UNICODE ? std::wstring(reinterpret_cast<const wchar_t*>(text))
                                : WideFromAnsi(reinterpret_cast<const char*>(text));
}
}    // namespace

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void*)
{
    if (reason == DLL_PROCESS_ATTACH)
        instance = module;
    return TRUE;
}

extern "C" HRESULT WINAPI DllRegisterServer()
{
    return ComBoundary([] { RegisterMailClient(ModulePath()); });
}

extern "C" HRESULT WINAPI DllUnregisterServer()
{
    return ComBoundary([] { UnregisterMailClient(); });
}

// mapi32.dll asks for COM's two as well; there is no class to make.
extern "C" HRESULT WINAPI DllGetClassObject(REFCLSID, REFIID, void** object)
{
    if (!object)
        return E_POINTER;
    *object = nullptr;
    return CLASS_E_CLASSNOTAVAILABLE;
}

extern "C" HRESULT WINAPI DllCanUnloadNow()
{
    return initializations == 0 && ModuleCount::Get() == 0 ? S_OK : S_FALSE;
}

HRESULT WINAPI MAPIInitialize(LPVOID)
{
    ++initializations;
    return S_OK;
}

void WINAPI MAPIUninitialize()
{
    --initializations;
}

HRESULT WINAPI MAPILogonEx(ULONG_PTR, LPTSTR profileName, LPTSTR, ULONG flags, LPMAPISESSION* session)
{
    return ComBoundary(
        [&]
        {
            Given(session) = nullptr;
            if (initializations <= 0)
                throw MapiError(MAPI_E_NOT_INITIALIZED);
            const std::optional<std::wstring> storePath = FindStorePath();
            if (!storePath)
                throw MapiError(MAPI_E_LOGON_FAILED);
            std::wstring name = TextArgument(profileName, flags);
            if (name.empty())
                name = L"LocalMapi";
            *session = MakeMapiSession({std::move(name), *storePath}).Detach();    // now the caller's
        });
}

HRESULT WINAPI MAPIAdminProfiles(ULONG, LPPROFADMIN* profileAdmin)
{
    return NoSupport(profileAdmin);
}

SCODE WINAPI MAPIAllocateBuffer(ULONG size, LPVOID* buffer)
{
    return mapi_memory::AllocateBuffer(size, buffer);
}

SCODE WINAPI MAPIAllocateMore(ULONG size, LPVOID owner, LPVOID* buffer)
{
    return mapi_memory::AllocateMore(size, owner, buffer);
}

ULONG WINAPI MAPIFreeBuffer(LPVOID buffer)
{
    return mapi_memory::FreeBuffer(buffer);
}

extern "C" SCODE WINAPI ScInitMapiUtil(ULONG)
{
    return S_OK;
}

extern "C" void WINAPI DeinitMapiUtil() {}

extern "C" HRESULT WINAPI HrQueryAllRows(LPMAPITABLE table, LPSPropTagArray columns,
                                         LPSRestriction restriction, LPSSortOrderSet order, LONG rowLimit,
                                         LPSRowSet* rows)
{
    return ComBoundary(
        [&]
        {
            Given(rows) = nullptr;
            *rows = QueryAllRows(Given(table), columns, restriction, order, rowLimit)
                        .release();    // now the caller's
        });
}

// Notifications would have to come on the caller's thread; there are none, so any sink will do as it is.
extern "C" HRESULT WINAPI HrThisThreadAdviseSink(LPMAPIADVISESINK sink, LPMAPIADVISESINK* wrapped)
{
    return ComBoundary(
        [&]
        {
            Given(wrapped) = nullptr;
            *wrapped = Microsoft::WRL::ComPtr<IMAPIAdviseSink>(&Given(sink)).Detach();    // now the caller's
        });
}

extern "C" LPMALLOC WINAPI MAPIGetDefaultMalloc()
{
    IMalloc* allocator = nullptr;
    return SUCCEEDED(CoGetMalloc(1, &allocator)) ? allocator : nullptr;
}

// The names are in the ANSI code page: the bit that elsewhere means Unicode is SOF_UNIQUEFILENAME here. The
// stream is COM's own, so the caller's memory functions are not needed.
extern "C" HRESULT WINAPI OpenStreamOnFile(LPALLOCATEBUFFER, LPFREEBUFFER, ULONG flags, LPTSTR fileName,
                                           LPTSTR prefix, LPSTREAM* stream)
{
    return ComBoundary(
        [&]
        {
            Given(stream) = nullptr;
            *stream = OpenFileStream(TextArgument(fileName, 0), TextArgument(prefix, 0), flags).Detach();
        });
}

extern "C" HRESULT WINAPI WrapCompressedRTFStream(LPSTREAM, ULONG, LPSTREAM* uncompressed)
{
    return NoSupport(uncompressed);
}

// The library has no components in other files.
extern "C" BOOL WINAPI FGetComponentPath(LPSTR, LPSTR, LPSTR path, DWORD size, BOOL)
{
    if (path && size > 0)
        *path = '\0';
    return FALSE;
}
