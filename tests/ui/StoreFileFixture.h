#pragma once

#include "engine/ScanState.h"
#include "tests/localmapi/Sandbox.h"
#include "tests/localmapi/TemporaryStore.h"
#include "win/ComInitialization.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

// A run's state over a store file of the test's own, through the automation server and the system's MAPI.
class StoreFileFixture : public testing::Test
{
protected:
    // Of the folders that every store file starts with.
    static constexpr std::int64_t inbox = 3;
    static constexpr std::int64_t sentItems = 5;
    static constexpr std::int64_t deletedItems = 6;

    void LogOn()
    {
        ASSERT_TRUE(state->storeSession.Create());
        state->storeSession.LogOn();
    }
    std::int64_t CountMessages(std::int64_t folder) const
    {
        return file.ReadInteger("SELECT count(*) FROM message WHERE folder_id = " + std::to_string(folder));
    }

    TemporaryStore file;
    StoreVariable variable{std::filesystem::path(file.Path()).c_str()};
    ComInitialization com;    // outlives the state's objects
    std::unique_ptr<ScanState> state = std::make_unique<ScanState>();
};
