#pragma once

#include "tests/console/ChildProcess.h"
#include "tests/console/MailFile.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <vector>

// tqodr.exe in a prefix where both servers are registered, over a store file of the test's own.
class EndToEnd : public testing::Test
{
protected:
    EndToEnd() { UseStore(store.GetPath().wstring()); }
    ~EndToEnd() override { UseStore({}); }

    static void UseStore(const std::wstring& path)
    {
        SetEnvironmentVariableW(L"LOCALMAPI_STORE", path.empty() ? nullptr : path.c_str());
    }

    // Three messages called Minutes, one of them in Sent Items, and one that stands alone.
    void AddMinutes()
    {
        constexpr auto inbox = static_cast<long long>(StoreFolder::inbox);
        constexpr auto sentItems = static_cast<long long>(StoreFolder::sentItems);
        store.Add({{.folder = inbox, .subject = "Minutes"},
                   {.folder = inbox, .subject = "Alone"},
                   {.folder = inbox, .subject = "Minutes"},
                   {.folder = sentItems, .subject = "Minutes"}});
    }

    MailFile store;
    const std::vector<std::string> minutesUntouched = {"Inbox/Alone", "Inbox/Minutes", "Inbox/Minutes",
                                                       "Sent Items/Minutes"};
};
