#pragma once

#include <windows.h>

#include <oaidl.h>
#include <wrl/client.h>

#include <string>

// What an add-in gets as its own entry in the host's list: late-bound, with the properties ProgId (dispid 3)
// and Description (dispid 0).
Microsoft::WRL::ComPtr<IDispatch> MakeAddInInstance(const std::wstring& progId,
                                                    const std::wstring& description);
