#pragma once

#include <windows.h>

#include <mapix.h>
#include <wrl/client.h>

#include <string>

// The services of the profile with the one store at `storePath` (a DOS path): the list of them. The profile
// stands in the environment and the registry, so nothing in it can be changed here.
Microsoft::WRL::ComPtr<IMsgServiceAdmin> MakeMsgServiceAdmin(std::wstring storePath);
