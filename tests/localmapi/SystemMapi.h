#pragma once

#include <windows.h>

#include <mapix.h>
#include <wrl/client.h>

#include <mapiutil.h>

#include <memory>
#include <string>
#include <type_traits>

// The system's mapi32.dll, loaded as any MAPI client loads it; what it answers is the registered provider's.
class SystemMapi
{
public:
    template <typename Function>
    Function* Find(const char* name) const
    {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(library.get(), name)));
    }

    HRESULT Initialize() const { return Find<MAPIINITIALIZE>("MAPIInitialize")(nullptr); }
    void Uninitialize() const { Find<MAPIUNINITIALIZE>("MAPIUninitialize")(); }

    HRESULT Logon(const std::wstring& profile, IMAPISession** session) const
    {
        std::wstring name = profile;
        return Find<MAPILOGONEX>("MAPILogonEx")(0, name.data(), nullptr,
                                                MAPI_EXTENDED | MAPI_UNICODE | MAPI_NEW_SESSION, session);
    }

    SCODE Allocate(ULONG size, void** buffer) const
    {
        return Find<MAPIALLOCATEBUFFER>("MAPIAllocateBuffer")(size, buffer);
    }
    SCODE AllocateMore(ULONG size, void* owner, void** buffer) const
    {
        return Find<MAPIALLOCATEMORE>("MAPIAllocateMore")(size, owner, buffer);
    }
    ULONG Free(void* buffer) const { return Find<MAPIFREEBUFFER>("MAPIFreeBuffer")(buffer); }

    HRESULT QueryAllRows(IMAPITable* table, SPropTagArray* columns, SRestriction* restriction, LONG limit,
                         SRowSet** rows) const
    {
        return Find<decltype(HrQueryAllRows)>("HrQueryAllRows@24")(table, columns, restriction, nullptr,
                                                                   limit, rows);
    }

private:
    struct Unloader
    {
        void operator()(HMODULE module) const noexcept { FreeLibrary(module); }
    };

    std::unique_ptr<std::remove_pointer_t<HMODULE>, Unloader> library{LoadLibraryW(L"mapi32.dll")};
};
