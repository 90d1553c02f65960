#pragma once

#include "localmapi/StoreContext.h"
#include "localmapi/storage/MessageDraft.h"

#include <windows.h>

#include <mapidefs.h>
#include <wrl/client.h>

#include <memory>

// The IAttach of one attachment, usable on any thread. Its changes become the message's by SaveChanges, and
// are written with the message. Throws MapiError MAPI_E_NOT_FOUND.
Microsoft::WRL::ComPtr<IAttach> OpenAttachObject(const SharedStore& store,
                                                 std::shared_ptr<MessageDraft> message, std::int64_t number,
                                                 bool modify);

// A new attachment under a number that the message has reserved for it.
Microsoft::WRL::ComPtr<IAttach> MakeAttachObject(const SharedStore& store,
                                                 std::shared_ptr<MessageDraft> message, std::int64_t number);
