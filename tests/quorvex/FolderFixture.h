#pragma once

#include "quorvex/FolderSnapshot.h"
#include "quorvex/Restriction.h"
#include "quorvex/TextDigest.h"
#include "tests/quorvex/FakeMapi.h"

#include <windows.h>

#include <mapidefs.h>
#include <mapitags.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// Restrictions in as few words as they need.
namespace restrict
{
    inline Restriction Property(ULONG tag, ULONG relop, RestrictionValue value)
    {
        return {.kind = RES_PROPERTY, .tag = tag, .relop = relop, .value = std::move(value)};
    }
    inline Restriction Equal(ULONG tag, const wchar_t* text)
    {
        return Property(tag, RELOP_EQ, std::wstring(text));
    }
    inline Restriction Content(ULONG tag, ULONG fuzzyLevel, const wchar_t* text)
    {
        return {.kind = RES_CONTENT, .tag = tag, .fuzzyLevel = fuzzyLevel, .value = std::wstring(text)};
    }
    inline Restriction Of(ULONG kind, std::vector<Restriction> children)
    {
        return {.kind = kind, .children = std::move(children)};
    }
    inline Restriction All(std::vector<Restriction> children)
    {
        return Of(RES_AND, std::move(children));
    }
    inline Restriction Sub(ULONG table, std::vector<Restriction> children)
    {
        return {.kind = RES_SUBRESTRICTION, .tag = table, .children = std::move(children)};
    }
    inline Restriction Exist(ULONG tag)
    {
        return {.kind = RES_EXIST, .tag = tag};
    }
}    // namespace restrict

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
