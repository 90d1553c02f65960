#pragma once

#include "quorvex/FolderSnapshot.h"

#include <windows.h>

#include <oaidl.h>
#include <wrl/client.h>

#include <memory>

class SessionContext;

// A new automation object for the item table of a folder, whose rows are the snapshot's, in its order.
Microsoft::WRL::ComPtr<IDispatch> MakeItemTable(std::shared_ptr<SessionContext> session,
                                                std::shared_ptr<FolderSnapshot> snapshot);
