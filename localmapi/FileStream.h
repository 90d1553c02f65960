#pragma once

#include <windows.h>

#include <objidl.h>
#include <wrl/client.h>

#include <string>

// A stream on the file `name`, opened as the STGM_ flags say. With SOF_UNIQUEFILENAME a new file of a
// name not used before: in the folder `name`, or in the folder for temporary files when that is empty, its
// name starting with `prefix`. Throws MapiError.
Microsoft::WRL::ComPtr<IStream> OpenFileStream(const std::wstring& name, const std::wstring& prefix,
                                               ULONG flags);
