#include "console/FolderPaths.h"
#include "console/CommandLine.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
enum Folder
{
    top,
    inbox,
    lists,
    listsRust,
    slashName,
    sent,
    slashedLists,
    deepSlash,
    accented,
};

FolderPaths MakePaths()
{
    return FolderPaths({
        {L"Top of Personal Folders", -1},
        {L"Inbox", top},
        {L"Lists", inbox},
        {L"rust", lists},
        {L"TCP/IP", inbox},
        {L"Sent Items", top},
        {L"Inbox/Lists", top},
        {L"a/b", slashedLists},
        {L"\u00C9t\u00E9", top},
    });
}

std::wstring RefusalOf(const FolderPaths& paths, const std::wstring& path)
{
    try
    {
        paths.Find(path);
    }
    catch (const UsageError& error)
    {
        return error.GetText();
    }
    return L"found";
}
}    // namespace

TEST(FolderPaths, FindsAFolderByTheNamesBelowTheTop)
{
    EXPECT_EQ(MakePaths().Find(L"Inbox"), inbox);
    EXPECT_EQ(MakePaths().Find(L"Inbox/Lists/rust"), listsRust);
    EXPECT_EQ(MakePaths().Find(L"Sent Items"), sent);
}

TEST(FolderPaths, TakesUpperAndLowerCaseAsTheSameInEveryScript)
{
    EXPECT_EQ(MakePaths().Find(L"iNBOX/lists/RUST"), listsRust);
    EXPECT_EQ(MakePaths().Find(L"\u00E9T\u00C9"), accented);
}

TEST(FolderPaths, AcceptsTheTopFoldersOwnNameInFront)
{
    EXPECT_EQ(MakePaths().Find(L"top of personal folders/Inbox/Lists"), lists);
    EXPECT_EQ(MakePaths().Find(L"Top of Personal Folders"), top);
}

TEST(FolderPaths, PrefersAFolderBelowTheTopToTheTopItselfWhenBothHaveTheName)
{
    const FolderPaths paths({{L"Mail", -1}, {L"Mail", 0}, {L"Mail", 1}});

    EXPECT_EQ(paths.Find(L"Mail"), 1);
    EXPECT_EQ(paths.Find(L"Mail/Mail"), 2);
    EXPECT_EQ(paths.Find(L"Mail/Mail/Mail"), 2);
}

TEST(FolderPaths, IgnoresASlashAtEitherEnd)
{
    EXPECT_EQ(MakePaths().Find(L"/Inbox/Lists/"), lists);
}

TEST(FolderPaths, ReachesANameWithASlashPlainlyWhereNothingElseMatches)
{
    EXPECT_EQ(MakePaths().Find(L"Inbox/TCP/IP"), slashName);
    EXPECT_EQ(MakePaths().Find(L"Inbox/Lists/a/b"), deepSlash);
}

TEST(FolderPaths, ReadsASlashAsTheStepToASubfolderFirst)
{
    EXPECT_EQ(MakePaths().Find(L"Inbox/Lists"), lists);
}

TEST(FolderPaths, ReachesANameWithASlashByDoublingIt)
{
    EXPECT_EQ(MakePaths().Find(L"Inbox//Lists"), slashedLists);
    EXPECT_EQ(MakePaths().Find(L"Inbox//Lists/a//b"), deepSlash);
}

TEST(FolderPaths, TellsFoldersThatDifferInCaseAloneApartByTheCaseWritten)
{
    const FolderPaths paths({{L"Mail", -1}, {L"lists", 0}, {L"Lists", 0}});

    EXPECT_EQ(paths.Find(L"Lists"), 2);
    EXPECT_EQ(paths.Find(L"lists"), 1);
    EXPECT_EQ(paths.Find(L"LISTS"), 1);
}

TEST(FolderPaths, FindsEveryFolderByThePathItGives)
{
    const FolderPaths paths = MakePaths();

    for (int folder = top; folder <= accented; ++folder)
        EXPECT_EQ(paths.Find(paths.GetPath(folder)), folder);
}

TEST(FolderPaths, RefusesAnUnknownFolderAndNamesThoseThatStandWhereThePathWentAstray)
{
    const std::wstring below = RefusalOf(MakePaths(), L"Inbox/Lsts");
    const std::wstring atTop = RefusalOf(MakePaths(), L"Junk");

    EXPECT_NE(below.find(L"no folder \"Inbox/Lsts\""), std::wstring::npos);
    EXPECT_NE(below.find(L"\"Inbox/Lists\""), std::wstring::npos);
    EXPECT_EQ(below.find(L"Sent Items"), std::wstring::npos);
    EXPECT_NE(atTop.find(L"\"Sent Items\""), std::wstring::npos);
}

TEST(FolderPaths, RefusesPartsOfNamesAndEmptyPaths)
{
    for (const wchar_t* path : {L"Inb", L"Inbox//", L"Inbox/Lists/x", L"", L"/", L"Top", L"InboxLists"})
    {
        EXPECT_NE(RefusalOf(MakePaths(), path), L"found") << testing::PrintToString(path);
    }
}

TEST(FolderPaths, RefusesEveryPathInAnEmptyTree)
{
    EXPECT_NE(RefusalOf(FolderPaths({}), L"Inbox"), L"found");
}

TEST(FolderPaths, KnowsWhichFoldersLieWithinAnother)
{
    const FolderPaths paths = MakePaths();

    EXPECT_TRUE(paths.IsWithin(listsRust, inbox));
    EXPECT_TRUE(paths.IsWithin(inbox, inbox));
    EXPECT_TRUE(paths.IsWithin(deepSlash, top));
    EXPECT_FALSE(paths.IsWithin(sent, inbox));
    EXPECT_FALSE(paths.IsWithin(inbox, lists));
}

TEST(FolderPaths, CountsTheStepsFromTheTop)
{
    EXPECT_EQ(MakePaths().GetDepth(top), 0);
    EXPECT_EQ(MakePaths().GetDepth(listsRust), 3);
}
