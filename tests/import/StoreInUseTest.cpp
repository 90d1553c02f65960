// A store that another program is writing to.
#include "import/Database.h"
#include "import/ImportError.h"
#include "import/StoreFile.h"
#include "tests/import/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>

namespace
{
class StoreOfAnother : public testing::Test
{
protected:
    StoreOfAnother() { OpenStore(path)->Commit(); }

    std::string FailureOf(const std::function<void()>& attempt) const
    {
        try
        {
            attempt();
        }
        catch (const StoreInUse& failure)
        {
            return failure.what();
        }
        return "no failure";
    }

    TemporaryDirectory directory;
    const std::filesystem::path path = directory.Path() / "store.db";
    const std::string inUse =
        "cannot write " + path.string() + ": another program is writing to it; try again when that has ended";
};

TEST_F(StoreOfAnother, IsSaidToBeInUseWhileThatImports)
{
    const auto other = OpenStore(path);

    EXPECT_EQ(FailureOf([&] { OpenStore(path); }), inUse);
}

TEST_F(StoreOfAnother, IsNotTakenForNoStoreWhileThatKeepsItToItself)
{
    Database other(path);
    other.Execute("BEGIN EXCLUSIVE");

    EXPECT_EQ(FailureOf([&] { CheckStorePath(path); }), inUse);
}
}    // namespace
