#include "tests/localmapi/Restrictions.h"
#include "tests/localmapi/SampleTable.h"

#include <mapicode.h>

#include <gtest/gtest.h>

#include <limits>

namespace
{
class TableRestriction : public testing::Test
{
protected:
    Texts RowsThatMeet(SRestriction restriction)
    {
        const auto table = MakeSampleTable(samples);
        const HRESULT result = table->Restrict(&restriction, 0);
        return SUCCEEDED(result) ? ReadSubjects(*table.Get()) : Texts{L"<refused>"};
    }

    HRESULT RefusalOf(SRestriction restriction)
    {
        const auto table = MakeSampleTable(samples);
        return table->Restrict(&restriction, 0);
    }

    SRestriction SubjectIs(const wchar_t* subject)
    {
        return make.Property(RELOP_EQ, PR_SUBJECT_W, make.Text(PR_SUBJECT_W, subject));
    }

    SRestriction SizeIs(ULONG relop, LONG size)
    {
        return make.Property(relop, PR_MESSAGE_SIZE, Restrictions::Number(PR_MESSAGE_SIZE, size));
    }

    Texts SubjectsThatHold(ULONG fuzzyLevel, const wchar_t* part)
    {
        return RowsThatMeet(make.Content(fuzzyLevel, PR_SUBJECT_W, make.Text(PR_SUBJECT_W, part)));
    }

    Restrictions make;
    std::vector<SampleRow> samples = {{"Minutes", 10}, {"minutes of May", 20}, {"", 30}};
};
}    // namespace

TEST_F(TableRestriction, ComparesTextsExactly)
{
    EXPECT_EQ(RowsThatMeet(SubjectIs(L"Minutes")), (Texts{L"Minutes"}));
    EXPECT_EQ(RowsThatMeet(SubjectIs(L"MINUTES")), Texts{});
    EXPECT_EQ(RowsThatMeet(SubjectIs(L"")), (Texts{L""}));
}

TEST_F(TableRestriction, TakesEitherFormOfAText)
{
    char subject[] = "Minutes";
    SPropValue narrow = {};
    narrow.ulPropTag = PR_SUBJECT_A;
    narrow.Value.lpszA = subject;

    EXPECT_EQ(RowsThatMeet(make.Property(RELOP_EQ, PR_SUBJECT_A, narrow)), (Texts{L"Minutes"}));
    EXPECT_EQ(RowsThatMeet(make.Property(RELOP_EQ, PR_SUBJECT_W, narrow)), (Texts{L"Minutes"}));
}

TEST_F(TableRestriction, KnowsEveryRelationOfNumbers)
{
    samples = {{"low", 10}, {"mid", 20}, {"high", 30}};

    EXPECT_EQ(RowsThatMeet(SizeIs(RELOP_LT, 20)), (Texts{L"low"}));
    EXPECT_EQ(RowsThatMeet(SizeIs(RELOP_LE, 20)), (Texts{L"low", L"mid"}));
    EXPECT_EQ(RowsThatMeet(SizeIs(RELOP_GT, 20)), (Texts{L"high"}));
    EXPECT_EQ(RowsThatMeet(SizeIs(RELOP_GE, 20)), (Texts{L"mid", L"high"}));
    EXPECT_EQ(RowsThatMeet(SizeIs(RELOP_EQ, 20)), (Texts{L"mid"}));
    EXPECT_EQ(RowsThatMeet(SizeIs(RELOP_NE, 20)), (Texts{L"low", L"high"}));
}

TEST_F(TableRestriction, ComparesNegativeNumbersAsNegative)
{
    samples = {{"below", -1}, {"above", 1}};

    EXPECT_EQ(RowsThatMeet(SizeIs(RELOP_LT, 0)), (Texts{L"below"}));
}

TEST_F(TableRestriction, HoldsARealThatIsNoNumberUnlikeAll)
{
    constexpr ULONG tag = PROP_TAG(PT_DOUBLE, 0x6611);
    samples = {{"one", 0, {{tag, 1.0}}}, {"none", 0}};
    const SPropValue noNumber = Restrictions::Real(tag, std::numeric_limits<double>::quiet_NaN());

    for (const ULONG relop : {RELOP_LT, RELOP_LE, RELOP_GT, RELOP_GE, RELOP_EQ})
        EXPECT_EQ(RowsThatMeet(make.Property(relop, tag, noNumber)), Texts{}) << relop;
    EXPECT_EQ(RowsThatMeet(make.Property(RELOP_NE, tag, noNumber)), (Texts{L"one"}));
}

TEST_F(TableRestriction, ComparesTimesAsInstants)
{
    samples = {{"early", 0, {{PR_CLIENT_SUBMIT_TIME, std::int64_t{0x01d00000ffffffff}}}},
               {"late", 0, {{PR_CLIENT_SUBMIT_TIME, std::int64_t{0x01d0000100000000}}}}};
    SPropValue time = {};
    time.ulPropTag = PR_CLIENT_SUBMIT_TIME;
    time.Value.ft = {0, 0x01d00001};

    EXPECT_EQ(RowsThatMeet(make.Property(RELOP_GE, PR_CLIENT_SUBMIT_TIME, time)), (Texts{L"late"}));
}

TEST_F(TableRestriction, LetsNoRelationHoldForAnAbsentProperty)
{
    const SPropValue sender = make.Text(PR_SENDER_NAME_W, L"Ann");

    EXPECT_EQ(RowsThatMeet(make.Property(RELOP_EQ, PR_SENDER_NAME_W, sender)), Texts{});
    EXPECT_EQ(RowsThatMeet(make.Property(RELOP_NE, PR_SENDER_NAME_W, sender)), Texts{});
    EXPECT_EQ(RowsThatMeet(make.Not(make.Property(RELOP_EQ, PR_SENDER_NAME_W, sender))).size(), 3u);
}

TEST_F(TableRestriction, MatchesWholeTextsPartsAndBeginnings)
{
    EXPECT_EQ(SubjectsThatHold(FL_FULLSTRING, L"Minutes"), (Texts{L"Minutes"}));
    EXPECT_EQ(SubjectsThatHold(FL_SUBSTRING, L"inutes"), (Texts{L"Minutes", L"minutes of May"}));
    EXPECT_EQ(SubjectsThatHold(FL_PREFIX, L"Min"), (Texts{L"Minutes"}));
    EXPECT_EQ(SubjectsThatHold(FL_PREFIX, L"inutes"), Texts{});
    EXPECT_EQ(SubjectsThatHold(FL_SUBSTRING, L"minutes of May and June"), Texts{});
}

TEST_F(TableRestriction, MatchesWithoutRegardToCaseWhenTold)
{
    EXPECT_EQ(SubjectsThatHold(FL_FULLSTRING | FL_IGNORECASE, L"MINUTES"), (Texts{L"Minutes"}));
    EXPECT_EQ(SubjectsThatHold(FL_PREFIX | FL_IGNORECASE, L"MIN"), (Texts{L"Minutes", L"minutes of May"}));
    EXPECT_EQ(SubjectsThatHold(FL_SUBSTRING | FL_IGNORECASE, L"OF mAY"), (Texts{L"minutes of May"}));
}

TEST_F(TableRestriction, MatchesWithoutRegardToAccentsWhenTold)
{
    samples = {{"r\xc3\xa9sum\xc3\xa9"}, {"resume"}, {"Resume"}};

    EXPECT_EQ(SubjectsThatHold(FL_FULLSTRING | FL_IGNORENONSPACE, L"resume"),
              (Texts{L"r\u00e9sum\u00e9", L"resume"}));
    EXPECT_EQ(SubjectsThatHold(FL_FULLSTRING | FL_LOOSE, L"RESUME").size(), 3u);
    EXPECT_EQ(SubjectsThatHold(FL_FULLSTRING, L"resume"), (Texts{L"resume"}));
}

TEST_F(TableRestriction, FindsTheEmptyTextInEveryTextAsPartAndBeginning)
{
    EXPECT_EQ(SubjectsThatHold(FL_SUBSTRING, L"").size(), 3u);
    EXPECT_EQ(SubjectsThatHold(FL_PREFIX, L"").size(), 3u);
    EXPECT_EQ(SubjectsThatHold(FL_FULLSTRING, L""), (Texts{L""}));
}

TEST_F(TableRestriction, MatchesBytes)
{
    samples = {{"it", 0, {{PR_SEARCH_KEY, Blob{1, 2, 3}}}}, {"other", 0, {{PR_SEARCH_KEY, Blob{1, 3}}}}};
    BYTE bytes[] = {2, 3};
    SPropValue key = {};
    key.ulPropTag = PR_SEARCH_KEY;
    key.Value.bin = {2, bytes};

    EXPECT_EQ(RowsThatMeet(make.Content(FL_SUBSTRING, PR_SEARCH_KEY, key)), (Texts{L"it"}));
    EXPECT_EQ(RowsThatMeet(make.Content(FL_FULLSTRING, PR_SEARCH_KEY, key)), Texts{});
}

TEST_F(TableRestriction, JoinsRestrictions)
{
    const SRestriction small = SizeIs(RELOP_LT, 25);
    const SRestriction minutes = SubjectIs(L"Minutes");

    EXPECT_EQ(RowsThatMeet(make.All({small, minutes})), (Texts{L"Minutes"}));
    EXPECT_EQ(RowsThatMeet(make.Any({minutes, SizeIs(RELOP_EQ, 30)})), (Texts{L"Minutes", L""}));
    EXPECT_EQ(RowsThatMeet(make.All({small, make.Not(minutes)})), (Texts{L"minutes of May"}));
    EXPECT_EQ(RowsThatMeet(make.All({})).size(), 3u);
    EXPECT_EQ(RowsThatMeet(make.Any({})), Texts{});
}

TEST_F(TableRestriction, ComparesTwoPropertiesOfARow)
{
    samples = {{"same", 7, {{PR_IMPORTANCE, std::int64_t{7}}}},
               {"smaller", 3, {{PR_IMPORTANCE, std::int64_t{7}}}}};

    EXPECT_EQ(RowsThatMeet(make.Compare(RELOP_EQ, PR_MESSAGE_SIZE, PR_IMPORTANCE)), (Texts{L"same"}));
    EXPECT_EQ(RowsThatMeet(make.Compare(RELOP_LT, PR_MESSAGE_SIZE, PR_IMPORTANCE)), (Texts{L"smaller"}));
}

TEST_F(TableRestriction, LooksAtBits)
{
    samples = {{"read", 0, {{PR_MESSAGE_FLAGS, std::int64_t{MSGFLAG_READ}}}},
               {"unsent", 0, {{PR_MESSAGE_FLAGS, std::int64_t{MSGFLAG_UNSENT}}}}};

    EXPECT_EQ(RowsThatMeet(make.BitMask(BMR_NEZ, PR_MESSAGE_FLAGS, MSGFLAG_READ)), (Texts{L"read"}));
    EXPECT_EQ(RowsThatMeet(make.BitMask(BMR_EQZ, PR_MESSAGE_FLAGS, MSGFLAG_READ)), (Texts{L"unsent"}));
}

TEST_F(TableRestriction, ComparesTheBytesAPropertyTakes)
{
    // "Minutes" and its end in UTF-16, then in a code page of one byte a character.
    EXPECT_EQ(RowsThatMeet(make.Size(RELOP_EQ, PR_SUBJECT_W, 16)), (Texts{L"Minutes"}));
    EXPECT_EQ(RowsThatMeet(make.Size(RELOP_EQ, PR_SUBJECT_A, 8)), (Texts{L"Minutes"}));
    EXPECT_EQ(RowsThatMeet(make.Size(RELOP_EQ, PR_MESSAGE_SIZE, 4)).size(), 3u);
    EXPECT_EQ(RowsThatMeet(make.Size(RELOP_GE, PR_SENDER_NAME_W, 0)), Texts{});
}

TEST_F(TableRestriction, TellsWhetherAPropertyIsThere)
{
    samples = {{"with", 0, {{PR_SENDER_NAME_W, std::string()}}}, {"without"}};

    EXPECT_EQ(RowsThatMeet(make.Exist(PR_SENDER_NAME_W)), (Texts{L"with"}));
    EXPECT_EQ(RowsThatMeet(make.Exist(PR_SENDER_NAME_A)), (Texts{L"with"}));
}

TEST_F(TableRestriction, LooksForOneSubObjectThatMeetsAllOfTheInnerRestriction)
{
    samples = {
        {"one has both", 0, {}, {"a plan.txt"}}, {"each has one", 0, {}, {"a.doc", "plan.txt"}}, {"none"}};
    const auto nameHolds = [&](const wchar_t* part) {
        return make.Content(FL_SUBSTRING, PR_ATTACH_LONG_FILENAME_W,
                            make.Text(PR_ATTACH_LONG_FILENAME_W, part));
    };

    EXPECT_EQ(RowsThatMeet(make.Sub(PR_MESSAGE_ATTACHMENTS, nameHolds(L"plan"))),
              (Texts{L"one has both", L"each has one"}));
    EXPECT_EQ(
        RowsThatMeet(make.Sub(PR_MESSAGE_ATTACHMENTS, make.All({nameHolds(L"plan"), nameHolds(L"a ")}))),
        (Texts{L"one has both"}));
    EXPECT_EQ(RowsThatMeet(make.Sub(PR_MESSAGE_RECIPIENTS, nameHolds(L"plan"))), Texts{});
}

TEST_F(TableRestriction, LooksThroughComments)
{
    SRestriction inner = SubjectIs(L"Minutes");
    SRestriction comment = Restrictions::Of(RES_COMMENT);
    comment.res.resComment.lpRes = &inner;

    EXPECT_EQ(RowsThatMeet(comment), (Texts{L"Minutes"}));
    EXPECT_EQ(RowsThatMeet(Restrictions::Of(RES_COMMENT)).size(), 3u);
}

TEST_F(TableRestriction, MeetsTheSameRowsWhicheverBatchTheyAreIn)
{
    samples.clear();
    for (int row = 0; row < 2000; ++row)
        samples.push_back({row % 3 == 0 ? "yes" : "no", row});

    EXPECT_EQ(RowsThatMeet(SubjectIs(L"yes")), Texts(667, L"yes"));
}

TEST_F(TableRestriction, OutlivesTheClientsOwn)
{
    const auto table = MakeSampleTable(samples);
    {
        Restrictions shortLived;
        SRestriction restriction =
            shortLived.Property(RELOP_EQ, PR_SUBJECT_W, shortLived.Text(PR_SUBJECT_W, L"Minutes"));
        ASSERT_EQ(table->Restrict(&restriction, 0), S_OK);
    }

    EXPECT_EQ(ReadSubjects(*table.Get()), (Texts{L"Minutes"}));
}

TEST_F(TableRestriction, RefusesWhatItDoesNotEvaluate)
{
    SRestriction deep = SubjectIs(L"x");
    for (int depth = 0; depth < 5000; ++depth)
        deep = make.Not(deep);

    EXPECT_EQ(RefusalOf(Restrictions::Of(99)), MAPI_E_TOO_COMPLEX);
    EXPECT_EQ(RefusalOf(SizeIs(RELOP_RE, 1)), MAPI_E_TOO_COMPLEX);
    EXPECT_EQ(
        RefusalOf(make.Content(FL_SUBSTRING, PR_MESSAGE_SIZE, Restrictions::Number(PR_MESSAGE_SIZE, 1))),
        MAPI_E_TOO_COMPLEX);
    EXPECT_EQ(RefusalOf(deep), MAPI_E_TOO_COMPLEX);
}

TEST_F(TableRestriction, RefusesAValueOfAnotherTypeThanItsTag)
{
    EXPECT_EQ(RefusalOf(make.Property(RELOP_EQ, PR_SUBJECT_W, Restrictions::Number(PR_MESSAGE_SIZE, 1))),
              MAPI_E_INVALID_TYPE);
    EXPECT_EQ(RefusalOf(make.Compare(RELOP_EQ, PR_SUBJECT_W, PR_MESSAGE_SIZE)), MAPI_E_INVALID_TYPE);
    EXPECT_EQ(RefusalOf(make.BitMask(BMR_NEZ, PR_SUBJECT_W, 1)), MAPI_E_INVALID_TYPE);
}

TEST_F(TableRestriction, RefusesMissingParts)
{
    SRestriction all = Restrictions::Of(RES_AND);
    all.res.resAnd.cRes = 2;

    EXPECT_EQ(RefusalOf(all), MAPI_E_INVALID_PARAMETER);
    EXPECT_EQ(RefusalOf(Restrictions::Of(RES_NOT)), MAPI_E_INVALID_PARAMETER);
    EXPECT_EQ(RefusalOf(Restrictions::Of(RES_PROPERTY)), MAPI_E_INVALID_PARAMETER);
    EXPECT_EQ(RefusalOf(Restrictions::Of(RES_SUBRESTRICTION)), MAPI_E_INVALID_PARAMETER);
}

TEST_F(TableRestriction, KeepsItsFormerRestrictionWhenANewOneIsRefused)
{
    const auto table = MakeSampleTable(samples);
    SRestriction good = SubjectIs(L"Minutes");
    SRestriction bad = Restrictions::Of(99);
    table->Restrict(&good, 0);

    table->Restrict(&bad, 0);

    EXPECT_EQ(ReadSubjects(*table.Get()), (Texts{L"Minutes"}));
}
