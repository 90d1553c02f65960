#include "quorvex/FolderSnapshot.h"

#include "quorvex/MapiError.h"
#include "tests/quorvex/FolderFixture.h"

#include <windows.h>

#include <mapicode.h>

#include <string>

using namespace where;

namespace
{
constexpr ULONG longTermEntryIdTag = 0x66700102;

// The shape of every search that the engine makes.
Restriction LikeThis(const wchar_t* subject, const wchar_t* body)
{
    return All(
        {Equal(PR_SUBJECT_W, subject), Equal(PR_BODY_W, body), Equal(PR_SENDER_EMAIL_ADDRESS_W, L"a@x")});
}

fake::Properties Mail(std::wstring subject, std::wstring body)
{
    return {{PR_SUBJECT_W, std::move(subject)},
            {PR_BODY_W, std::move(body)},
            {PR_SENDER_EMAIL_ADDRESS_W, std::wstring(L"a@x")},
            {PR_SENDER_NAME_W, std::wstring(L"Ann")}};
}
}    // namespace

class FolderSnapshotTest : public FolderFixture
{
};

TEST_F(FolderSnapshotTest, ListsTheMessagesInTheTablesOrder)
{
    folder->table.rowsAtOnce = 2;
    for (int number = 0; number < 5; ++number)
        Add({});

    ASSERT_EQ(Snapshot().Count(), 5u);
    for (std::size_t row = 0; row < 5; ++row)
        EXPECT_EQ(Snapshot().EntryId(row), folder->messages[row]->entryId);
}

TEST_F(FolderSnapshotTest, RefusesARowThatThereIsNot)
{
    Add({});

    EXPECT_THROW(Snapshot().EntryId(1), MapiError);
    EXPECT_THROW(Snapshot().OpenMessage(1), MapiError);
}

TEST_F(FolderSnapshotTest, GivesTheLongTermIdsThatTheTableHas)
{
    Add({{longTermEntryIdTag, fake::Bytes{1, 0, 255}}});
    Add({});

    EXPECT_EQ(Snapshot().LongTermEntryId(0), (EntryIdBytes{1, 0, 255}));
    EXPECT_EQ(Snapshot().LongTermEntryId(1), EntryIdBytes{});
}

TEST_F(FolderSnapshotTest, FindsEveryMessageWithoutARestriction)
{
    Add({});
    Add({});

    EXPECT_EQ(Search({}), (Rows{0, 1}));
}

TEST_F(FolderSnapshotTest, ReadsAMissingTextAsEmptyText)
{
    Add({});
    Add({{PR_SUBJECT_W, std::wstring()}});
    Add({{PR_SUBJECT_W, std::wstring(L"Minutes")}});

    EXPECT_EQ(Search(Equal(PR_SUBJECT_W, L"")), (Rows{0, 1}));
}

TEST_F(FolderSnapshotTest, ComparesTextsCharacterForCharacter)
{
    Add(Mail(L"Minutes", L"b"));
    Add(Mail(L"minutes", L"b"));
    Add(Mail(L"Minutes ", L"b"));

    EXPECT_EQ(Search(LikeThis(L"Minutes", L"b")), (Rows{0}));
}

TEST_F(FolderSnapshotTest, TellsLongTextsApartThatTheTableCuts)
{
    folder->table.cutTextAt = 255;
    const std::wstring beginning(255, L'x');
    Add(Mail(beginning, L"b"));
    Add(Mail(beginning + L"1", L"b"));
    Add(Mail(beginning + L"2", L"b"));

    EXPECT_EQ(Search(Equal(PR_SUBJECT_W, (beginning + L"2").c_str())), (Rows{2}));
    EXPECT_EQ(Search(Equal(PR_SUBJECT_W, beginning.c_str())), (Rows{0}));
}

TEST_F(FolderSnapshotTest, ReadsFromTheMessageWhatTheTableRefuses)
{
    folder->table.refusedColumns[PR_SUBJECT_W] = MAPI_E_NO_SUPPORT;
    folder->table.errorColumns[PR_SENDER_EMAIL_ADDRESS_W] = MAPI_E_NOT_FOUND;
    Add(Mail(L"Minutes", L"b"));
    Add(Mail(L"Agenda", L"b"));

    EXPECT_EQ(Search(LikeThis(L"Agenda", L"b")), (Rows{1}));
}

TEST_F(FolderSnapshotTest, ReadsBodiesThatGetPropsFindsTooLong)
{
    const std::wstring body(5000, L'y');
    Add(Mail(L"Minutes", body + L"1")).habits.longValueAt = 100;
    Add(Mail(L"Minutes", body + L"2")).habits.longValueAt = 100;

    EXPECT_EQ(Search(LikeThis(L"Minutes", (body + L"2").c_str())), (Rows{1}));
}

TEST_F(FolderSnapshotTest, FollowsTheFuzzyLevel)
{
    Add({{PR_DISPLAY_TO_W, std::wstring(L"Ann; BOB")}});
    Add({{PR_DISPLAY_TO_W, std::wstring(L"Ann; Bob; Carl")}});

    EXPECT_EQ(Search(Content(PR_DISPLAY_TO_W, FL_FULLSTRING | FL_IGNORECASE, L"ann; bob")), (Rows{0}));
    EXPECT_EQ(Search(Content(PR_DISPLAY_TO_W, FL_FULLSTRING, L"ann; bob")), (Rows{}));
    EXPECT_EQ(Search(Content(PR_DISPLAY_TO_W, FL_PREFIX | FL_IGNORECASE, L"ann; bob")), (Rows{0, 1}));
    EXPECT_EQ(Search(Content(PR_DISPLAY_TO_W, FL_PREFIX, L"Bob")), (Rows{}));
    EXPECT_EQ(Search(Content(PR_DISPLAY_TO_W, FL_SUBSTRING, L"Bob")), (Rows{1}));
    EXPECT_EQ(Search(Content(PR_DISPLAY_TO_W, FL_SUBSTRING | FL_IGNORECASE, L"bOB")), (Rows{0, 1}));
}

TEST_F(FolderSnapshotTest, ComparesTimesAsInstants)
{
    Add({{PR_CLIENT_SUBMIT_TIME, fake::FileTime{1000}}});
    Add({{PR_CLIENT_SUBMIT_TIME, fake::FileTime{1999}}});
    Add({{PR_CLIENT_SUBMIT_TIME, fake::FileTime{2000}}});
    Add({});

    const Rows found = Search(All({Property(PR_CLIENT_SUBMIT_TIME, RELOP_GE, std::int64_t{1000}),
                                   Property(PR_CLIENT_SUBMIT_TIME, RELOP_LT, std::int64_t{2000})}));

    EXPECT_EQ(found, (Rows{0, 1}));
}

TEST_F(FolderSnapshotTest, LetsAMissingTimeMeetNoCondition)
{
    Add({});

    EXPECT_EQ(Search(Property(PR_MESSAGE_DELIVERY_TIME, RELOP_GE, std::int64_t{0})), (Rows{}));
    EXPECT_EQ(Search(Property(PR_MESSAGE_DELIVERY_TIME, RELOP_NE, std::int64_t{0})), (Rows{}));
}

TEST_F(FolderSnapshotTest, FailsRatherThanPassATimeItCouldNotReadForAMissingOne)
{
    folder->table.errorColumns[PR_MESSAGE_DELIVERY_TIME] = MAPI_E_NOT_ENOUGH_MEMORY;
    Add({{PR_MESSAGE_DELIVERY_TIME, fake::FileTime{1000}}}).habits.errorProps[PR_MESSAGE_DELIVERY_TIME] =
        MAPI_E_NOT_ENOUGH_MEMORY;

    EXPECT_THROW(Search(Property(PR_MESSAGE_DELIVERY_TIME, RELOP_GE, std::int64_t{0})), MapiError);
}

TEST_F(FolderSnapshotTest, ComparesBinariesThatAreTooLongForOneCall)
{
    folder->table.errorColumns[PR_SEARCH_KEY] = MAPI_E_NOT_ENOUGH_MEMORY;
    for (const std::uint8_t last : {1, 2})
    {
        fake::Bytes key(300, 7);
        key.push_back(last);
        Add({{PR_SEARCH_KEY, key}}).habits.longValueAt = 200;
    }
    fake::Bytes wanted(300, 7);
    wanted.push_back(2);

    EXPECT_EQ(Search(Property(PR_SEARCH_KEY, RELOP_EQ, wanted)), (Rows{1}));
}

TEST_F(FolderSnapshotTest, WantsEachInnerRestrictionMetBySomeAttachment)
{
    const auto named = [](const wchar_t* name) {
        return fake::Properties{{PR_DISPLAY_NAME_W, std::wstring(name)}};
    };
    Add({}).attachments = {named(L"a.txt")};
    Add({}).attachments = {named(L"B.TXT"), named(L"x"), named(L"A.txt")};
    Add({}).attachments = {named(L"a.txt"), named(L"a.txt")};
    Add({});

    const Rows found =
        Search(Sub(PR_MESSAGE_ATTACHMENTS, {Content(PR_DISPLAY_NAME_W, FL_IGNORECASE, L"a.txt"),
                                            Content(PR_DISPLAY_NAME_W, FL_IGNORECASE, L"b.txt")}));

    EXPECT_EQ(found, (Rows{1}));
}

TEST_F(FolderSnapshotTest, FindsAnAttachmentByItsFileNameToo)
{
    Add({}).attachments = {{{PR_ATTACH_LONG_FILENAME_W, std::wstring(L"report.pdf")}}};
    Add({}).attachments = {{{PR_ATTACH_LONG_FILENAME_W, std::wstring(L"report.pdf")},
                            {PR_DISPLAY_NAME_W, std::wstring(L"The report")}}};

    EXPECT_EQ(Search(Sub(PR_MESSAGE_ATTACHMENTS, {Content(PR_DISPLAY_NAME_W, FL_FULLSTRING, L"report.pdf")})),
              (Rows{0, 1}));
    EXPECT_EQ(Search(Sub(PR_MESSAGE_ATTACHMENTS, {Content(PR_DISPLAY_NAME_W, FL_FULLSTRING, L"The report")})),
              (Rows{1}));
}

TEST_F(FolderSnapshotTest, HoldsASubRestrictionAgainstOneRecipientAtATime)
{
    const auto recipient = [](const wchar_t* name, int type) {
        return fake::Properties{{PR_DISPLAY_NAME_W, std::wstring(name)}, {PR_RECIPIENT_TYPE, type}};
    };
    Add({}).recipients = {recipient(L"Ann", MAPI_TO), recipient(L"Bob", MAPI_CC)};
    Add({}).recipients = {recipient(L"Bob", MAPI_TO)};

    const Rows found = Search(
        Sub(PR_MESSAGE_RECIPIENTS, {All({Equal(PR_DISPLAY_NAME_W, L"Bob"),
                                         Property(PR_RECIPIENT_TYPE, RELOP_EQ, std::int64_t{MAPI_TO})})}));

    EXPECT_EQ(found, (Rows{1}));
}

TEST_F(FolderSnapshotTest, PassesOverAMessageThatCannotBeOpened)
{
    Add(Mail(L"Minutes", L"b")).open = MAPI_E_OBJECT_DELETED;
    Add(Mail(L"Minutes", L"b"));

    EXPECT_EQ(Search(LikeThis(L"Minutes", L"b")), (Rows{1}));
}

TEST_F(FolderSnapshotTest, FindsAMessageAgainOnceItCanBeOpened)
{
    Add(Mail(L"Minutes", L"b")).open = MAPI_E_NO_ACCESS;
    Search(LikeThis(L"Minutes", L"b"));
    folder->messages[0]->open = S_OK;

    EXPECT_EQ(Search(LikeThis(L"Minutes", L"b")), (Rows{0}));
}

TEST_F(FolderSnapshotTest, FindsAMessageAgainAmongManyOfItsSubject)
{
    for (int number = 0; number < 30; ++number)
        Add(Mail(L"Re:", L"b"));
    folder->messages[7]->open = MAPI_E_NO_ACCESS;
    const std::size_t before = Search(LikeThis(L"Re:", L"b")).size();
    folder->messages[7]->open = S_OK;

    EXPECT_EQ(before, 29u);
    EXPECT_EQ(Search(LikeThis(L"Re:", L"b")).size(), 30u);
}

TEST_F(FolderSnapshotTest, FailsWhenTheStoreDoesAndWorksAgainAfterwards)
{
    Add(Mail(L"Minutes", L"b"));
    folder->table.queryRows = MAPI_E_NETWORK_ERROR;

    EXPECT_THROW(Search(LikeThis(L"Minutes", L"b")), MapiError);

    folder->table.queryRows = S_OK;
    EXPECT_EQ(Search(LikeThis(L"Minutes", L"b")), (Rows{0}));
}

TEST_F(FolderSnapshotTest, PassesAFailureOfTheStoreOnWhenAMessageIsOpened)
{
    Add(Mail(L"Minutes", L"b")).open = MAPI_E_NETWORK_ERROR;

    EXPECT_THROW(Search(LikeThis(L"Minutes", L"b")), MapiError);
}

TEST_F(FolderSnapshotTest, ReadsEachRowOnceHoweverManySearchesThereAre)
{
    constexpr int count = 2500;
    for (int number = 0; number < count; ++number)
        Add(Mail(L"Subject " + std::to_wstring(number), L"b"));

    for (int number = 0; number < count; ++number)
        EXPECT_EQ(Search(LikeThis((L"Subject " + std::to_wstring(number)).c_str(), L"b")).size(), 1u);

    EXPECT_EQ(folder->counters->tablesOpened, 1u);
    EXPECT_EQ(folder->counters->rowsRead, static_cast<std::size_t>(count));
    EXPECT_LE(folder->counters->messagesOpened, static_cast<std::size_t>(count));
}

TEST_F(FolderSnapshotTest, OpensEachMessageOnceWhenManyShareTheirSubject)
{
    constexpr int count = 2000;
    for (int number = 0; number < count; ++number)
        Add(Mail(L"Re:", L"Body " + std::to_wstring(number)));

    for (std::uint32_t number = 0; number < count; ++number)
        EXPECT_EQ(Search(LikeThis(L"Re:", (L"Body " + std::to_wstring(number)).c_str())), (Rows{number}));

    EXPECT_EQ(folder->counters->rowsRead, static_cast<std::size_t>(count));
    EXPECT_EQ(folder->counters->messagesOpened, static_cast<std::size_t>(count));
}

TEST_F(FolderSnapshotTest, OpensNothingForASearchThatNothingMatches)
{
    for (int number = 0; number < 100; ++number)
        Add(Mail(L"Re:", L"b"));
    Search(LikeThis(L"Re:", L"b"));
    const fake::Counters before = *folder->counters;

    EXPECT_EQ(Search(LikeThis(L"Fwd:", L"b")), (Rows{}));

    EXPECT_EQ(folder->counters->tablesOpened, before.tablesOpened);
    EXPECT_EQ(folder->counters->messagesOpened, before.messagesOpened);
    EXPECT_EQ(folder->counters->getPropsCalls, before.getPropsCalls);
}

TEST_F(FolderSnapshotTest, DoesNotReadAgainWhatWasNoted)
{
    for (int number = 0; number < 50; ++number)
        Add(Mail(L"Re:", L"Body " + std::to_wstring(number)));
    Snapshot().Count();

    for (int number = 0; number < 50; ++number)
        EXPECT_TRUE(Snapshot().NoteText(folder->messages[number]->entryId, PR_BODY_W,
                                        L"Body " + std::to_wstring(number)));

    EXPECT_EQ(Search(LikeThis(L"Re:", L"Body 7")), (Rows{7}));
    EXPECT_EQ(folder->counters->messagesOpened, 0u);
}

TEST_F(FolderSnapshotTest, KnowsNothingOfAMessageThatIsNotItsOwn)
{
    Add({});
    Snapshot().Count();

    EXPECT_FALSE(Snapshot().NoteText({9, 9, 9}, PR_BODY_W, L"text"));
}

TEST_F(FolderSnapshotTest, KeepsTheRowsApartWhenTheTableHasChangedAtALaterReading)
{
    Add({{PR_SUBJECT_W, std::wstring(L"one")}, {PR_CLIENT_SUBMIT_TIME, fake::FileTime{1}}});
    Add({{PR_SUBJECT_W, std::wstring(L"two")}, {PR_CLIENT_SUBMIT_TIME, fake::FileTime{2}}});
    Add({{PR_SUBJECT_W, std::wstring(L"three")}, {PR_CLIENT_SUBMIT_TIME, fake::FileTime{3}}});
    Search(Equal(PR_SUBJECT_W, L"two"));
    folder->messages.erase(folder->messages.begin());

    EXPECT_EQ(Search(Property(PR_CLIENT_SUBMIT_TIME, RELOP_GE, std::int64_t{2})), (Rows{1, 2}));
}
