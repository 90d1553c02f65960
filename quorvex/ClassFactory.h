#pragma once

#include <windows.h>

#include <unknwn.h>

// The class that clients create by the ProgID "QuorvexDll.RDOSession". The registry script names it too.
inline constexpr CLSID sessionClass = {
    0x72559189, 0xe9e5, 0x476e, {0x8c, 0xad, 0xb1, 0x2d, 0x4f, 0x24, 0xce, 0x09}};

// DllGetClassObject's work: gives out the class object of `classId`, which makes sessions.
HRESULT GetClassObject(REFCLSID classId, REFIID iid, void** object) noexcept;
