#pragma once

#include "localmapi/Profile.h"

#include <windows.h>

#include <mapidefs.h>
#include <wrl/client.h>

// The tables of one row each that tell a profile's contents.

// IMAPISession::GetMsgStoresTable: the store, the default one.
Microsoft::WRL::ComPtr<IMAPITable> MakeMsgStoresTable(const StoreDescription& store);

// IMAPISession::GetStatusTable: the MAPI subsystem, under the profile's name.
Microsoft::WRL::ComPtr<IMAPITable> MakeStatusTable(const std::wstring& profileName);

// IMsgServiceAdmin::GetMsgServiceTable: the service with the store.
Microsoft::WRL::ComPtr<IMAPITable> MakeMsgServiceTable(const StoreDescription& store);
