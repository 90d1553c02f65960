#include "explorer/CommandLine.h"

#include <gtest/gtest.h>

TEST(ExplorerCommandLine, TakesTheCaptionToClick)
{
    const CommandLine line = ParseCommandLine({L"--click", L"Some Button", L"--exit-after-click"});

    EXPECT_EQ(line.click, L"Some Button");
    EXPECT_TRUE(line.exitAfterClick);
}

TEST(ExplorerCommandLine, NamesTheWrongWord)
{
    try
    {
        ParseCommandLine({L"--clack"});
        ADD_FAILURE() << "the word was taken";
    }
    catch (const CommandLineError& wrong)
    {
        EXPECT_NE(wrong.GetText().find(L"--clack"), std::wstring::npos);
    }
}

TEST(ExplorerCommandLine, RefusesWordsThatMakeNoSense)
{
    EXPECT_THROW(ParseCommandLine({L"--click"}), CommandLineError);
    EXPECT_THROW(ParseCommandLine({L"--exit-after-click"}), CommandLineError);
    EXPECT_THROW(ParseCommandLine({L"--list-addins", L"--click", L"Some Button"}), CommandLineError);
}
