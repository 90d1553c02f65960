#include "store/MapiLibrary.h"

#include "tests/store/MapiHelperFixture.h"

#include <mapitags.h>

namespace
{
// A helper started over one build of the library.
struct Started
{
    explicit Started(const wchar_t* variant) : folder(variant)
    {
        mail.serviceRows.push_back({{PR_SERVICE_NAME_A, std::string("MSEMS")}});
        StartMapiHelper(helper, exchangeProfile);
    }

    TestMapi32Folder folder;
    FakeProfile mail;
    MapiHelper helper;
    BOOL exchangeProfile = FALSE;
};

class MapiLibraryWithNames : public testing::TestWithParam<const wchar_t*>
{
};

class UnusableMapiLibrary : public testing::TestWithParam<const wchar_t*>
{
};

std::string NameOf(const testing::TestParamInfo<const wchar_t*>& info)
{
    const std::wstring name = info.param;
    return std::string(name.begin(), name.end());
}
}    // namespace

TEST_P(MapiLibraryWithNames, IsReadToTheLastStep)
{
    Started started(GetParam());

    EXPECT_NE(started.helper.defaultStore, nullptr);
    EXPECT_EQ(BytesOf(started.helper.subtreeEntryId), (Bytes{0xE0, 1}));
    EXPECT_TRUE(started.exchangeProfile);
    StopMapiHelper(started.helper);
    ExpectAllGivenBack(started.mail);
}

// In the last both names are there, and the plain ones stand for functions that fail.
INSTANTIATE_TEST_SUITE_P(Exports, MapiLibraryWithNames, testing::Values(L"decorated", L"plain", L"both"),
                         NameOf);

TEST_P(UnusableMapiLibrary, LeavesTheHelperInactive)
{
    Started started(GetParam());

    ExpectInactive(started.helper);
    EXPECT_FALSE(started.exchangeProfile);
    EXPECT_TRUE(started.mail.calls.empty());
    ExpectAllGivenBack(started.mail);
}

INSTANTIATE_TEST_SUITE_P(Exports, UnusableMapiLibrary,
                         testing::Values(L"without_initialize", L"without_uninitialize", L"without_logon",
                                         L"without_free", L"refusing"),
                         NameOf);

TEST(MapiLibrary, LeavesTheHelperInactiveWhereThereIsNone)
{
    if (ModuleHandle(LoadLibraryW(L"mapi32.dll")))
        GTEST_SKIP() << "this Windows has Extended MAPI";
    const FakeProfile mail;
    MapiHelper helper;
    BOOL exchangeProfile = FALSE;

    StartMapiHelper(helper, exchangeProfile);

    ExpectInactive(helper);
    EXPECT_FALSE(exchangeProfile);
    StopMapiHelper(helper);
    ExpectInactive(helper);
}

TEST(MapiLibrary, GoesWithoutTheStepsThatNeedWhatItLacks)
{
    Started started(L"bare");

    EXPECT_STREQ(started.helper.profileName.get(), L"Work");
    EXPECT_NE(publishedMapiSession, nullptr);
    EXPECT_NE(publishedMapiFreeBuffer, nullptr);
    EXPECT_EQ(publishedHrQueryAllRows, nullptr);
    EXPECT_EQ(publishedHrGetOneProp, nullptr);
    EXPECT_EQ(started.helper.defaultStore, nullptr);
    EXPECT_FALSE(started.exchangeProfile);
    StopMapiHelper(started.helper);
    ExpectInactive(started.helper);
    ExpectAllGivenBack(started.mail);
}

TEST_F(MapiHelperFixture, IsLoadedByTheNameInThePaths)
{
    Start();

    EXPECT_STREQ(helper.mapiPaths.mailClient, L"Outlook");
    EXPECT_STREQ(helper.mapiPaths.library, L"mapi32.dll");
    EXPECT_EQ(helper.mapiModule.get(), GetModuleHandleW(helper.mapiPaths.library));
}

TEST_F(MapiHelperFixture, PublishesTheFunctionsOfItsLibrary)
{
    Start();

    EXPECT_NE(publishedMapiFreeBuffer, nullptr);
    EXPECT_EQ(publishedMapiFreeBuffer, helper.mapiFreeBuffer);
    EXPECT_NE(publishedHrQueryAllRows, nullptr);
    EXPECT_EQ(publishedHrQueryAllRows, helper.hrQueryAllRows);
    EXPECT_NE(publishedHrGetOneProp, nullptr);
    EXPECT_EQ(publishedHrGetOneProp, helper.hrGetOneProp);
}

TEST_F(MapiHelperFixture, UnloadsALibraryThatDoesNotInitialize)
{
    mail.initialize = MAPI_E_CALL_FAILED;

    Start();

    ExpectInactive(helper);
    EXPECT_EQ(mail.calls, std::vector<std::string>{"MAPIInitialize"});
    EXPECT_EQ(GetModuleHandleW(L"mapi32.dll"), nullptr);
}

TEST_F(MapiHelperFixture, TakesAnInitializationWithAReservationForAFailure)
{
    mail.initialize = S_FALSE;

    Start();

    ExpectInactive(helper);
    EXPECT_EQ(mail.CountCalls("MAPIUninitialize"), 0);
}
