#include "localmapi/storage/StoreFile.h"

#include "localmapi/storage/StoreError.h"
#include "tests/localmapi/TemporaryStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

namespace
{
using testing::HasSubstr;

// The refusal of opening a file, if there is one.
StoreError RefusalOf(const std::string& path)
{
    try
    {
        StoreFile::Open(path);
    }
    catch (const StoreError& error)
    {
        return error;
    }
    return {StoreFault::Other, "opened"};
}

TEST(StoreFileOpening, ReadsTheSettingsOfAFreshStore)
{
    const TemporaryStore store;

    const auto file = store.Open();

    EXPECT_EQ(file->ReadSetting("service_name"), StoredValue(std::string("LocalMapi")));
    EXPECT_EQ(file->ReadUid().size(), 16u);
    EXPECT_EQ(file->ReadSetting("never set"), StoredValue());
}

TEST(StoreFileOpening, NamesTheFileThatDoesNotExistAndMakesNone)
{
    const TemporaryStore store;
    const std::string missing = store.Path() + "2";

    const StoreError refusal = RefusalOf(missing);

    EXPECT_EQ(refusal.fault, StoreFault::FileMissing);
    EXPECT_EQ(refusal.what(), "The mail store " + missing + " does not exist.");
    EXPECT_FALSE(std::filesystem::exists(missing));
}

TEST(StoreFileOpening, RefusesAFileThatIsNoDatabase)
{
    const TemporaryStore store;
    std::ofstream(store.Folder() / "store.db") << std::string(5000, 'x');

    const StoreError refusal = RefusalOf(store.Path());

    EXPECT_EQ(refusal.fault, StoreFault::NotAStore);
    EXPECT_THAT(refusal.what(), HasSubstr(store.Path()));
}

TEST(StoreFileOpening, RefusesAStoreThatWasCutOff)
{
    const TemporaryStore store;
    std::filesystem::resize_file(store.Folder() / "store.db", 2 * 4096);

    const StoreError refusal = RefusalOf(store.Path());

    EXPECT_EQ(refusal.fault, StoreFault::NotAStore);
    EXPECT_EQ(refusal.what(), "The mail store " + store.Path() + " is damaged.");
}

TEST(StoreFileOpening, RefusesAStoreWithoutItsSpecialFolders)
{
    const TemporaryStore store;
    store.Run("DELETE FROM folder WHERE name = 'Notes'");

    EXPECT_EQ(RefusalOf(store.Path()).fault, StoreFault::NotAStore);
}

TEST(StoreFileOpening, RefusesAnotherProgramsDatabase)
{
    const TemporaryStore store;
    store.Run("PRAGMA application_id = 42");

    EXPECT_EQ(RefusalOf(store.Path()).fault, StoreFault::NotAStore);
}

TEST(StoreFileOpening, RefusesAStoreWhoseTextsAreNotInUtf8)
{
    const TemporaryStore store;
    std::string script =
        "PRAGMA encoding = 'UTF-16le'; PRAGMA application_id = " +
        std::to_string(store.ReadInteger("PRAGMA application_id")) +
        "; PRAGMA user_version = " + std::to_string(store.ReadInteger("PRAGMA user_version")) + ";";
    for (const std::string& line : ReadLines(
             store, "SELECT sql || ';' FROM sqlite_schema WHERE sql IS NOT NULL AND name NOT LIKE 'sqlite%'"))
        script += line;
    std::filesystem::remove(store.Path());
    store.Run(script);

    const StoreError refusal = RefusalOf(store.Path());

    EXPECT_EQ(refusal.fault, StoreFault::NotAStore);
    EXPECT_THAT(refusal.what(), HasSubstr("damaged"));
}

TEST(StoreFileOpening, RefusesAStoreOfALaterVersion)
{
    const TemporaryStore store;
    store.Run("PRAGMA user_version = 2");

    const StoreError refusal = RefusalOf(store.Path());

    EXPECT_EQ(refusal.fault, StoreFault::NotAStore);
    EXPECT_THAT(refusal.what(), HasSubstr("version"));
}

TEST(StoreFileOpening, RefusesAFolderAndAnEmptyFile)
{
    const TemporaryStore store;
    std::ofstream(store.Folder() / "store.db", std::ios::trunc).close();
    const std::u8string folder = store.Folder().u8string();

    EXPECT_EQ(RefusalOf(std::string(folder.begin(), folder.end())).fault, StoreFault::NotAStore);
    EXPECT_EQ(RefusalOf(store.Path()).fault, StoreFault::NotAStore);
}

TEST(StoreFileOpening, ChoosesTheWriteAheadLog)
{
    const TemporaryStore store;

    const auto file = store.Open();

    EXPECT_EQ(ReadLines(store, "PRAGMA journal_mode"), std::vector<std::string>{"wal"});
}

TEST(TransactionOfAStore, LeavesNothingBehindWithoutACommit)
{
    const TemporaryStore store;
    const auto file = store.Open();
    {
        const StoreFile::Lease lease = file->Use();
        Transaction transaction(*lease);
        lease->Execute("DELETE FROM setting");
    }

    EXPECT_EQ(store.ReadInteger("SELECT count(*) FROM setting"), 3);
}
}    // namespace
