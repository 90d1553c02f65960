#pragma once

#include "localmapi/Profile.h"

#include <windows.h>

#include <mapix.h>
#include <wrl/client.h>

// A session with the profile's one store, usable on any thread. The store is opened by the first call that
// needs it and stays open until the session ends and the clients let go of it. After Logoff every call
// answers MAPI_E_NOT_INITIALIZED.
Microsoft::WRL::ComPtr<IMAPISession> MakeMapiSession(Profile profile);
