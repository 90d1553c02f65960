#pragma once

#include <windows.h>

#include <mapidefs.h>
#include <wrl/client.h>

#include <string>

// Opens the mail store in the file at `path` (a DOS path). The object and all that it opens may be used on
// any thread; the file stays open until the last of them is released. Folders and messages are reached from
// it by IMsgStore::OpenEntry, which the session's own OpenEntry calls too. Throws StoreError, whose text
// names the file, when the file is missing, damaged or no mail store.
Microsoft::WRL::ComPtr<IMsgStore> OpenStoreObject(const std::wstring& path);
