#pragma once

#include "localmapi/StoreContext.h"

#include <windows.h>

#include <mapidefs.h>
#include <wrl/client.h>

// The IMAPIFolder of one folder, usable on any thread. Its properties are read from the file at every call
// and changed at once; SaveChanges has nothing to wait for. Without `modify` it refuses changes of its
// properties. Throws StoreError NoSuchFolder.
Microsoft::WRL::ComPtr<IMAPIFolder> OpenFolderObject(const SharedStore& store, std::int64_t id, bool modify);
