#pragma once

#include <windows.h>

#include <unknwn.h>

/* What compiled proxies fill the first three slots with; mingw's headers declare these for C++ only. */
HRESULT STDMETHODCALLTYPE IUnknown_QueryInterface_Proxy(IUnknown* This, REFIID riid, void** object);
ULONG STDMETHODCALLTYPE IUnknown_AddRef_Proxy(IUnknown* This);
ULONG STDMETHODCALLTYPE IUnknown_Release_Proxy(IUnknown* This);
