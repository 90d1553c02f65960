#include "store/MapiHelper.h"

#include "tests/store/MapiHelperFixture.h"

#include <gmock/gmock.h>

#include <mapitags.h>

#include <algorithm>

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::Not;

namespace
{
Row Service(const std::string& name)
{
    return {{PR_SERVICE_NAME_A, name}};
}

Row StatusRow(const std::string& name)
{
    return {{PR_DISPLAY_NAME_A, name}, {PR_RESOURCE_TYPE, 39}};
}

std::string Repeated(const std::string& text, int count)
{
    std::string all;
    for (int i = 0; i < count; ++i)
        all += text;
    return all;
}
}    // namespace

TEST_F(MapiHelperFixture, LogsOnToTheRunningProfileWithoutAsking)
{
    Start();

    EXPECT_THAT(mail.calls, Contains("MAPILogonEx 80000030"));
    EXPECT_NE(helper.mapiSession, nullptr);
    EXPECT_EQ(publishedMapiSession, helper.mapiSession.Get());
}

TEST_F(MapiHelperFixture, AsksForNothingWithoutASession)
{
    mail.logon = MAPI_E_LOGON_FAILED;
    mail.serviceRows.push_back(Service("MSEMS"));

    Start();

    EXPECT_THAT(mail.calls, ElementsAre("MAPIInitialize", "MAPILogonEx 80000030"));
    EXPECT_EQ(helper.mapiSession, nullptr);
    EXPECT_EQ(publishedMapiSession, nullptr);
    EXPECT_FALSE(exchangeProfile);
    ASSERT_NE(helper.profileName, nullptr);
    EXPECT_STREQ(helper.profileName.get(), L"");
}

TEST_F(MapiHelperFixture, TakesTheProfilesNameFromTheRowOfMapiItself)
{
    Start();

    EXPECT_STREQ(helper.profileName.get(), L"Work");
}

TEST_F(MapiHelperFixture, ReadsTheProfilesNameAsUtf8)
{
    mail.statusRows = {StatusRow("B\xC3\xBCro \xE2\x82\xAC \xF0\x9F\x93\xA7")};

    Start();

    EXPECT_STREQ(helper.profileName.get(), L"B\u00FCro \u20AC \U0001F4E7");
}

TEST_F(MapiHelperFixture, KeepsAProfileNameThatJustFits)
{
    mail.statusRows = {StatusRow(Repeated("\xC3\xBC", 259))};

    Start();

    EXPECT_EQ(std::wstring(helper.profileName.get()), std::wstring(259, L'\u00FC'));
}

TEST_F(MapiHelperFixture, LeavesTheProfilesNameEmptyWhenItDoesNotFit)
{
    mail.statusRows = {StatusRow(std::string(260, 'x'))};

    Start();

    EXPECT_EQ(std::wstring(helper.profileName.get(), 260), std::wstring(260, L'\0'));
}

TEST_F(MapiHelperFixture, LeavesTheProfilesNameEmptyWithoutARowOfMapiItself)
{
    mail.statusRows.pop_back();

    Start();

    EXPECT_STREQ(helper.profileName.get(), L"");
}

TEST_F(MapiHelperFixture, LeavesTheProfilesNameEmptyWhenTheRowHasNone)
{
    mail.statusRows = {{{PR_RESOURCE_TYPE, 39}}};

    Start();

    EXPECT_STREQ(helper.profileName.get(), L"");
}

struct StatusFailure
{
    const char* name;
    HRESULT TableResults::*step;
};

class MapiHelperOverAFailingStatusTable : public MapiHelperFixture,
                                          public testing::WithParamInterface<StatusFailure>
{
};

TEST_P(MapiHelperOverAFailingStatusTable, DoesTheStepsThatFollow)
{
    mail.statusTable.*GetParam().step = MAPI_E_CALL_FAILED;
    mail.serviceRows.push_back(Service("MSEMS"));

    Start();

    EXPECT_STREQ(helper.profileName.get(), L"");
    EXPECT_NE(helper.defaultStore, nullptr);
    EXPECT_TRUE(exchangeProfile);
}

INSTANTIATE_TEST_SUITE_P(Steps, MapiHelperOverAFailingStatusTable,
                         testing::Values(StatusFailure{"GetStatusTable", &TableResults::open},
                                         StatusFailure{"SetColumns", &TableResults::setColumns},
                                         StatusFailure{"Restrict", &TableResults::restrict},
                                         StatusFailure{"QueryRows", &TableResults::queryRows}),
                         [](const auto& info) { return info.param.name; });

TEST_F(MapiHelperFixture, SetsTheExchangeFlagForTheExchangeService)
{
    mail.serviceRows = {Service("MSPST MS"), Service("MSEMS"), Service("CONTAB")};

    Start();

    EXPECT_EQ(exchangeProfile, TRUE);
}

TEST_F(MapiHelperFixture, LeavesTheExchangeFlagWithoutThatService)
{
    mail.serviceRows = {Service("msems"), Service("MSEMS2"), Service("MSEM"), Service(""), {}};

    Start();

    EXPECT_EQ(exchangeProfile, FALSE);
}

TEST_F(MapiHelperFixture, NeverClearsTheExchangeFlag)
{
    exchangeProfile = TRUE;

    Start();
    StopMapiHelper(helper);

    EXPECT_EQ(exchangeProfile, TRUE);
}

TEST_F(MapiHelperFixture, LeavesTheExchangeFlagWithoutServiceAdministration)
{
    mail.serviceRows = {Service("MSEMS")};
    mail.adminServices = MAPI_E_NO_SUPPORT;

    Start();

    EXPECT_EQ(exchangeProfile, FALSE);
    EXPECT_NE(helper.defaultStore, nullptr);
}

TEST_F(MapiHelperFixture, LeavesTheExchangeFlagWithoutAServiceTable)
{
    mail.serviceRows = {Service("MSEMS")};
    mail.serviceTable.open = MAPI_E_NO_SUPPORT;

    Start();

    EXPECT_EQ(exchangeProfile, FALSE);
}

TEST_F(MapiHelperFixture, LeavesTheExchangeFlagWhenTheServicesCannotBeRead)
{
    mail.serviceRows = {Service("MSEMS")};
    mail.serviceTable.queryAllRows = MAPI_E_CALL_FAILED;

    Start();

    EXPECT_EQ(exchangeProfile, FALSE);
    EXPECT_THAT(mail.calls, Contains("HrQueryAllRows of the service table 3D09001E"));
}

TEST_F(MapiHelperFixture, LogsOffBeforeItReleasesAndReleasesBeforeItUninitializes)
{
    Start();
    mail.calls.clear();

    StopMapiHelper(helper);

    EXPECT_THAT(mail.calls, ElementsAre("Logoff", "session is gone", "store 2 is gone", "MAPIUninitialize"));
}

TEST_F(MapiHelperFixture, GivesEverythingBack)
{
    Start();

    StopMapiHelper(helper);

    ExpectInactive(helper);
    ExpectAllGivenBack(mail);
}

TEST_F(MapiHelperFixture, MayBeStoppedTwice)
{
    Start();
    StopMapiHelper(helper);
    mail.calls.clear();

    StopMapiHelper(helper);

    EXPECT_THAT(mail.calls, ElementsAre());
}

TEST_F(MapiHelperFixture, MayBeStoppedBeforeItStarts)
{
    StopMapiHelper(helper);

    ExpectInactive(helper);
}

TEST_F(MapiHelperFixture, MayBeStoppedWithoutASession)
{
    mail.logon = MAPI_E_LOGON_FAILED;
    Start();
    mail.calls.clear();

    StopMapiHelper(helper);

    EXPECT_THAT(mail.calls, ElementsAre("MAPIUninitialize"));
    ExpectInactive(helper);
}

TEST_F(MapiHelperFixture, StartsAgainAfterAStop)
{
    Start();
    StopMapiHelper(helper);

    Start();

    EXPECT_STREQ(helper.profileName.get(), L"Work");
    EXPECT_NE(helper.defaultStore, nullptr);
    EXPECT_EQ(BytesOf(helper.subtreeEntryId), (Bytes{0xE0, 1}));
}

TEST_F(MapiHelperFixture, StartsAgainAfterAFailure)
{
    mail.initialize = MAPI_E_CALL_FAILED;
    Start();
    mail.initialize = S_OK;

    Start();

    EXPECT_NE(helper.defaultStore, nullptr);
}

TEST_F(MapiHelperFixture, StartsAnewWhenItRunsAlready)
{
    Start();

    Start();

    EXPECT_EQ(mail.initialized, 1);
    EXPECT_EQ(mail.logons - mail.logoffs, 1);
    EXPECT_NE(helper.defaultStore, nullptr);
}

TEST_F(MapiHelperFixture, IsStoppedByItsEnd)
{
    {
        MapiHelper own;
        StartMapiHelper(own, exchangeProfile);
    }

    ExpectInactive(helper);
    ExpectAllGivenBack(mail);
}

TEST_F(MapiHelperFixture, LeavesTheRunningHelperAloneWhenAnotherStops)
{
    Start();
    MapiHelper other;

    StopMapiHelper(other);

    EXPECT_EQ(publishedMapiSession, helper.mapiSession.Get());
    EXPECT_EQ(publishedMapiStore, helper.defaultStore.Get());
    EXPECT_EQ(publishedMapiFreeBuffer, helper.mapiFreeBuffer);
}

TEST_F(MapiHelperFixture, HoldsNothingMoreAfterTwoHundredRounds)
{
    Start();
    StopMapiHelper(helper);
    DWORD before = 0;
    GetProcessHandleCount(GetCurrentProcess(), &before);

    for (int round = 0; round < 200; ++round)
    {
        Start();
        StopMapiHelper(helper);
    }

    DWORD after = 0;
    GetProcessHandleCount(GetCurrentProcess(), &after);
    EXPECT_EQ(after, before);
    EXPECT_EQ(mail.logons, 201);
    ExpectAllGivenBack(mail);
}
