#pragma once

#include "quorvex/FolderSnapshot.h"
#include "quorvex/TextDigest.h"
#include "tests/quorvex/Conditions.h"
#include "tests/quorvex/FakeMapi.h"

#include <windows.h>

#include <mapidefs.h>
#include <mapitags.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

// One folder of the fake store and a snapshot of it.
class FolderFixture : public testing::Test
{
protected:
    ~FolderFixture() override
    {
        folder.reset();
        snapshot.reset();
        EXPECT_EQ(fake::LiveObjects::count, 0);
        EXPECT_EQ(FakeMapiMemory::Outstanding(), 0u);
    }

    fake::Message& Add(fake::Properties properties)
    {
        return *fake::AddMessage(*folder, std::move(properties));
    }

    FolderSnapshot& Snapshot()
    {
        if (!snapshot)
            snapshot = std::make_unique<FolderSnapshot>(fake::Make<fake::FakeFolder>(folder),
                                                        std::make_shared<TextDigester>());
        return *snapshot;
    }

    std::vector<std::uint32_t> Search(const Restriction& restriction)
    {
        return Snapshot().Search(restriction);
    }

    using Rows = std::vector<std::uint32_t>;

    FakeMapiMemory memory;
    std::shared_ptr<fake::Folder> folder = std::make_shared<fake::Folder>();
    std::unique_ptr<FolderSnapshot> snapshot;
};
