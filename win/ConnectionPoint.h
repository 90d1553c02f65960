#pragma once

#include <windows.h>

#include <unknwn.h>

// Connects `sink` to the events `eventInterface` of `source`; `cookie` names the connection from then on.
// E_INVALIDARG without a source, E_POINTER without room for the cookie, else what the source says. A failure
// leaves `cookie` as it was.
HRESULT AtlAdvise(IUnknown* source, IUnknown* sink, REFIID eventInterface, DWORD* cookie) noexcept;

// Ends that connection.
HRESULT AtlUnadvise(IUnknown* source, REFIID eventInterface, DWORD cookie) noexcept;
