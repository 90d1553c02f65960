#pragma once

#include "localmapi/StoreContext.h"

#include <windows.h>

#include <mapidefs.h>
#include <wrl/client.h>

// The IMessage of one message, usable on any thread; nothing is written before SaveChanges but the read mark.
// Without `modify` it refuses changes. Throws StoreError NoSuchMessage.
Microsoft::WRL::ComPtr<IMessage> OpenMessageObject(const SharedStore& store, std::int64_t id, bool modify);

// A new message for the folder, which is nowhere before its first SaveChanges.
Microsoft::WRL::ComPtr<IMessage> MakeMessageObject(const SharedStore& store, std::int64_t folderId);
