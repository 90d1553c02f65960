#pragma once

#include <windows.h>

#include <comdef.h>

#include <oaidl.h>
#include <wrl/client.h>

// The description of an interface, from the type libraries among our module's resources. Throws _com_error
// when none of them describes it.
Microsoft::WRL::ComPtr<ITypeInfo> FindTypeInfo(REFIID iid);
