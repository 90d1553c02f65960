#include "engine/MatchFilter.h"

#include "tests/engine/ScanFixture.h"
#include "win/SafeArray.h"
#include "win/Variant.h"

#include <windows.h>

#include <oleauto.h>

namespace
{
using Lines = std::vector<std::string>;

class MatchFilter : public ScanFixture
{
protected:
    FakeFolder& folder = store.root;
    FakeMessage wanted;    // the values that are looked for
    _variant_t sendTime;

    LONG Find()
    {
        const CItemCollection items = store.MakeFolder(folder).GetItems();
        store.log.lines.clear();
        return FindDuplicatesOfItem(
            state, wanted.subject, items, wanted.body, wanted.senderEmail, wanted.senderName,
            wanted.headers.empty() ? _variant_t() : TextVariant(wanted.headers), sendTime);
    }

    // The calls that put conditions together: behind the root restriction, before the columns.
    Lines ConditionCalls()
    {
        Find();
        const auto root = std::ranges::find(store.log.lines, "Filter 2 method(I4 0)");
        const auto columns = std::ranges::find_if(store.log.lines, [](const std::string& line)
                                                  { return line.starts_with("Table 3"); });
        return Lines(root + 1, columns);
    }
};

const Lines subjectCalls{"And 2 method(I4 4)", "Property 2 put(I4 3604511)", "Property 10 put(I4 4)",
                         "Property 3 put(BSTR Minutes)"};
const Lines bodyCalls{"And 2 method(I4 4)", "Property 2 put(I4 268435487)", "Property 10 put(I4 4)",
                      "Property 3 put(BSTR As agreed.)"};
const Lines senderEmailCalls{"And 2 method(I4 4)", "Property 2 put(I4 203358239)", "Property 10 put(I4 4)",
                             "Property 3 put(BSTR ann@example.org)"};

Lines Join(std::initializer_list<Lines> parts)
{
    Lines joined;
    for (const Lines& part : parts)
        joined.insert(joined.end(), part.begin(), part.end());
    return joined;
}

const Lines alwaysCalls = Join({subjectCalls, bodyCalls, senderEmailCalls});

TEST_F(MatchFilter, MakesTheCallsOfAWholeSearchInOrder)
{
    folder.AddMessage();
    folder.AddMessage({.subject = L"Other"});
    folder.AddMessage();

    Find();

    const Lines before{"Items 13 get()", "Table 9 get()", "Filter 1 method()", "Filter 2 method(I4 0)"};
    const Lines after{"Table 3 put(ARRAY 0x2016 of 21: 0xfff0102)",
                      "Filter 5 method(BOOL -1)",
                      "Table 7 method()",
                      "Filter 7 method(BOOL -1)",
                      "Table 7 method()",
                      "Filter 7 method(BOOL -1)"};
    EXPECT_EQ(store.log.lines, Join({before, alwaysCalls, after}));
    EXPECT_TRUE(store.log.refused.empty());
}

TEST_F(MatchFilter, ReadsNoRowWhenNothingMatches)
{
    EXPECT_EQ(Find(), 0);

    EXPECT_EQ(store.log.lines.back(), "Filter 5 method(BOOL -1)");
}

TEST_F(MatchFilter, ComparesSubjectTextAndSenderAddressWithoutAnyCriterion)
{
    EXPECT_EQ(ConditionCalls(), alwaysCalls);
}

TEST_F(MatchFilter, MatchesOnSubjectAloneWithoutBodyAndSenderAddress)
{
    wanted.body = wanted.senderEmail = L"";
    folder.AddMessage({.body = L"something else", .senderEmail = L"bob@example.org"});

    EXPECT_EQ(ConditionCalls(), subjectCalls);
    EXPECT_EQ(Find(), 1);
}

TEST_F(MatchFilter, AsksForAnEmptySubjectWhenTheItemHasNone)
{
    wanted.subject = L"";
    folder.AddMessage({.subject = L"Minutes"});
    folder.AddMessage({.subject = L""});

    EXPECT_EQ(Find(), 1);
}

TEST_F(MatchFilter, AsksForAnEmptySenderNameWhenThatIsCompared)
{
    wanted.senderName = L"";
    state.useSenderName = 1;
    folder.AddMessage({.senderName = L"Ann"});
    folder.AddMessage({.senderName = L""});

    EXPECT_EQ(Find(), 1);
    EXPECT_EQ(ConditionCalls(), Join({alwaysCalls,
                                      {"And 2 method(I4 4)", "Property 2 put(I4 203030559)",
                                       "Property 10 put(I4 4)", "Property 3 put(BSTR )"}}));
}

TEST_F(MatchFilter, ComparesRecipientsAsJoinedDisplayStringsByTypeInOrder)
{
    state.useRecipientName = 1;
    state.bccNames = {L"Eve"};
    state.ccNames = {L"Carl"};
    state.toNames = {L"Bob", L"Dora", L"Otto"};

    EXPECT_EQ(ConditionCalls(), Join({alwaysCalls,
                                      {"And 2 method(I4 3)", "Content 10 put(I4 65536)",
                                       "Content 2 put(I4 235143199)", "Content 3 put(BSTR Bob; Dora; Otto)"},
                                      {"And 2 method(I4 3)", "Content 10 put(I4 65536)",
                                       "Content 2 put(I4 235077663)", "Content 3 put(BSTR Carl)"},
                                      {"And 2 method(I4 3)", "Content 10 put(I4 65536)",
                                       "Content 2 put(I4 235012127)", "Content 3 put(BSTR Eve)"}}));
}

TEST_F(MatchFilter, MatchesRecipientsInAnotherCaseButNotInAnotherOrder)
{
    state.useRecipientName = 1;
    state.toNames = {L"Bob", L"Dora"};
    folder.AddMessage({.recipients = {{1, L"BOB"}, {1, L"dora"}}});
    folder.AddMessage({.recipients = {{1, L"Dora"}, {1, L"Bob"}}});

    EXPECT_EQ(Find(), 1);
}

TEST_F(MatchFilter, AddsNoConditionForARecipientTypeTheItemDoesNotHave)
{
    state.useRecipientName = 1;

    EXPECT_EQ(ConditionCalls(), alwaysCalls);
}

TEST_F(MatchFilter, LeavesRecipientsAloneWhenTheyAreNotCompared)
{
    state.toNames = {L"Bob"};

    EXPECT_EQ(ConditionCalls(), alwaysCalls);
}

TEST_F(MatchFilter, ComparesInternetHeadersWhenTheItemHasSome)
{
    state.useInternetHeader = 1;

    EXPECT_EQ(ConditionCalls(),
              Join({alwaysCalls,
                    {"And 2 method(I4 4)", "Property 2 put(I4 8192031)", "Property 10 put(I4 4)",
                     "Property 3 put(BSTR Message-ID: <1@example.org>)"}}));
}

TEST_F(MatchFilter, AddsNoConditionForHeadersTheItemDoesNotHave)
{
    state.useInternetHeader = 1;
    wanted.headers = L"";

    EXPECT_EQ(ConditionCalls(), alwaysCalls);
}

TEST_F(MatchFilter, DoesNotLeaveOutHeadersThatCameAsSomethingElse)
{
    folder.AddMessage();
    state.useInternetHeader = 1;
    const CItemCollection items = store.MakeFolder(folder).GetItems();
    store.log.lines.clear();

    FindDuplicatesOfItem(state, wanted.subject, items, wanted.body, wanted.senderEmail, wanted.senderName,
                         _variant_t(E_FAIL, VT_ERROR), sendTime);

    EXPECT_EQ(std::ranges::count(store.log.lines, "Property 2 put(I4 8192031)"), 1);
}

TEST_F(MatchFilter, SetsOneInnerConditionForEachAttachmentOnOneSubRestriction)
{
    state.useAttachments = 1;
    state.attachmentNames = {L"a.pdf", L"b.zip"};

    EXPECT_EQ(ConditionCalls(), Join({alwaysCalls,
                                      {"And 2 method(I4 9)", "Sub 3 put(I4 236126221)"},
                                      {"Sub 2 method(I4 3)", "Content 10 put(I4 65536)",
                                       "Content 2 put(I4 805371935)", "Content 3 put(BSTR a.pdf)"},
                                      {"Sub 2 method(I4 3)", "Content 10 put(I4 65536)",
                                       "Content 2 put(I4 805371935)", "Content 3 put(BSTR b.zip)"}}));
}

TEST_F(MatchFilter, AddsNoConditionForAttachmentsTheItemDoesNotHave)
{
    state.useAttachments = 1;

    EXPECT_EQ(ConditionCalls(), alwaysCalls);
}

TEST_F(MatchFilter, ComparesTheSendTimeAsARangeWithItsUpperEndOutside)
{
    state.useSendTime = 1;
    state.sendTimeRangeSet = 1;
    sendTime = DateVariant(45000.25);
    state.sendTimeUpper = DateVariant(45000.5);
    folder.AddMessage({.sent = 45000.25});
    folder.AddMessage({.sent = 45000.5});

    EXPECT_EQ(Find(), 1);
    EXPECT_EQ(ConditionCalls(), Join({alwaysCalls,
                                      {"And 2 method(I4 4)", "Property 2 put(I4 3735616)",
                                       "Property 10 put(I4 3)", "Property 3 put(DATE 45000.250000)"},
                                      {"And 2 method(I4 4)", "Property 2 put(I4 3735616)",
                                       "Property 10 put(I4 0)", "Property 3 put(DATE 45000.500000)"}}));
}

TEST_F(MatchFilter, LeavesTheSendTimeAloneWithoutARange)
{
    state.useSendTime = 1;

    EXPECT_EQ(ConditionCalls(), alwaysCalls);
}

TEST_F(MatchFilter, AdmitsOnlyMessagesDeliveredSinceTheCutOff)
{
    state.useTimeSpan = 1;
    state.cutoffDate = DateVariant(45000.5);
    folder.AddMessage({.delivered = 45000.5});
    folder.AddMessage({.delivered = 45000.25});

    EXPECT_EQ(Find(), 1);
    EXPECT_EQ(ConditionCalls(), Join({alwaysCalls,
                                      {"And 2 method(I4 4)", "Property 2 put(I4 235274304)",
                                       "Property 10 put(I4 3)", "Property 3 put(DATE 45000.500000)"}}));
}

TEST_F(MatchFilter, RecordsEveryMatchInTheTablesOrderAndAddsToTheTotal)
{
    state.duplicateCount = 5;
    const std::wstring first = folder.AddMessage();
    const std::wstring second = folder.AddMessage();

    const LONG found = Find();

    EXPECT_EQ(found, 2);
    EXPECT_EQ(FoundIds(), (std::vector{first, second}));
    EXPECT_EQ(state.duplicateCount, 7);
}

TEST_F(MatchFilter, PassesOverTheFirstMatchWhenAskedTo)
{
    state.firstMatchPending = 1;
    folder.AddMessage();
    const std::wstring second = folder.AddMessage();

    const LONG found = Find();

    EXPECT_EQ(found, 1);
    EXPECT_EQ(FoundIds(), std::vector{second});
    EXPECT_EQ(state.firstMatchPending, 0);
}

TEST_F(MatchFilter, CountsTheItemAsItsOwnDuplicateWhenNotAskedToPassOverOne)
{
    const std::wstring itself = folder.AddMessage();

    EXPECT_EQ(Find(), 1);
    EXPECT_EQ(FoundIds(), std::vector{itself});
}

TEST_F(MatchFilter, KeepsWaitingForTheFirstMatchWhereNothingMatches)
{
    state.firstMatchPending = 1;

    Find();

    EXPECT_EQ(state.firstMatchPending, 1);
}

TEST_F(MatchFilter, RecordsLongTermIdsOnAnExchangeProfile)
{
    state.exchangeProfile = true;
    const std::wstring id = folder.AddMessage();

    Find();

    EXPECT_EQ(FoundIds(), std::vector{L"EE" + id});
    EXPECT_TRUE(std::ranges::count(store.log.lines, "Table 3 put(ARRAY 0x2016 of 21: 0x66700102)"));
}

TEST_F(MatchFilter, KeepsWhatIsRecordedButCountsNothingWhenTheStoreFailsAmidTheRows)
{
    const std::wstring first = folder.AddMessage();
    folder.AddMessage();
    Find();
    const std::size_t secondRow = store.log.lines.size() - 1;
    state.duplicateIds.Clear();
    state.duplicateCount = 0;
    const CItemCollection items = store.MakeFolder(folder).GetItems();
    store.log.lines.clear();
    store.log.failAt = secondRow;

    const LONG found = FindDuplicatesOfItem(state, wanted.subject, items, wanted.body, wanted.senderEmail,
                                            wanted.senderName, TextVariant(wanted.headers), sendTime);

    EXPECT_EQ(found, 0);
    EXPECT_EQ(FoundIds(), std::vector{first});
    EXPECT_EQ(state.duplicateCount, 0);
}

TEST_F(MatchFilter, EndsTheSearchWithoutACallOnAMissingItemCollection)
{
    EXPECT_EQ(FindDuplicatesOfItem(state, L"", CItemCollection(), L"", L"", L"", {}, {}), 0);

    EXPECT_TRUE(store.log.lines.empty());
}

// An array variant of bytes, each held by a variant of its own or not.
template <typename Element>
_variant_t Array(VARTYPE type, std::initializer_list<Element> elements)
{
    SAFEARRAYBOUND bound{static_cast<ULONG>(elements.size()), 1};
    _variant_t array;
    array.parray = ::SafeArrayCreate(type, 1, &bound);
    array.vt = VT_ARRAY | type;
    LONG index = 1;
    for (Element element : elements)
    {
        ::SafeArrayPutElement(array.parray, &index, &element);
        ++index;
    }
    return array;
}

TEST(EntryIdToHex, WritesTwoUpperCaseDigitsForEachByte)
{
    EXPECT_EQ(EntryIdToHex(Array<BYTE>(VT_UI1, {0x00, 0x0A, 0xFF, 0x10})), L"000AFF10");
}

TEST(EntryIdToHex, TakesTheBytesOutOfAnArrayOfVariantsAndLeavesOutTheRest)
{
    const _variant_t mixed =
        Array<_variant_t>(VT_VARIANT, {_variant_t(BYTE{0x0A}), LongVariant(7), _variant_t(BYTE{0})});

    EXPECT_EQ(EntryIdToHex(mixed), L"0A00");
}

TEST(EntryIdToHex, IsEmptyForAValueThatIsNoArrayOfBytes)
{
    EXPECT_EQ(EntryIdToHex(_variant_t()), L"");
    EXPECT_EQ(EntryIdToHex(TextVariant(L"0A")), L"");
    EXPECT_EQ(EntryIdToHex(Array<LONG>(VT_I4, {10})), L"");
}
}    // namespace
