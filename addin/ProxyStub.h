#pragma once

#include <windows.h>

// The proxy and stub of IDuplicateRemover, merged into this library by the interface compiler. They need the
// library's handle: PrxDllMain takes it at DLL_PROCESS_ATTACH.
extern "C"
{
    BOOL WINAPI PrxDllMain(HINSTANCE instance, DWORD reason, LPVOID reserved);
    HRESULT STDAPICALLTYPE PrxDllGetClassObject(REFCLSID classId, REFIID iid, void** result);
    HRESULT STDAPICALLTYPE PrxDllCanUnloadNow();
    HRESULT STDAPICALLTYPE PrxDllRegisterServer();
    HRESULT STDAPICALLTYPE PrxDllUnregisterServer();
}
