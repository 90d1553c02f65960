#pragma once

#include "localmapi/EntryId.h"

#include <string>

// The one service of the one profile: a mail store in a file.
struct Profile
{
    std::wstring name;         // of the profile, as the client logged on to it
    std::wstring storePath;    // a DOS path
};

// What the profile's tables say of the store. They show it also when its file cannot be opened: then under
// names of the provider's own, and with the provider's uid in the entry id, which stands for whatever the
// file holds.
struct StoreDescription
{
    StoreUid uid;
    std::string displayName;    // UTF-8
    std::string serviceName;    // UTF-8, PR_SERVICE_NAME
};

StoreDescription DescribeStore(const std::wstring& storePath);
