#include "tests/localmapi/StoreObjects.h"

#include <gmock/gmock.h>

namespace
{
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr ULONG localCommitTimeMax = 0x670A0040;
constexpr ULONG flagStatus = 0x10900003;

class MapiFolder : public StoreObjects
{
protected:
    ComPtr<IMAPIFolder> Create(IMAPIFolder& parent, const wchar_t* name, ULONG flags = 0,
                               HRESULT expected = S_OK)
    {
        ComPtr<IMAPIFolder> folder;
        EXPECT_EQ(parent.CreateFolder(FOLDER_GENERIC, const_cast<wchar_t*>(name), nullptr, nullptr,
                                      flags | MAPI_UNICODE, &folder),
                  expected);
        return folder;
    }
    std::vector<std::wstring> Names(IMAPIFolder& folder, ULONG flags = 0)
    {
        ComPtr<IMAPITable> table;
        EXPECT_EQ(folder.GetHierarchyTable(flags, &table), S_OK);
        return ReadTextColumn(*table.Get(), PR_DISPLAY_NAME_W);
    }
    std::int64_t CommitTime(IMAPIFolder& folder)
    {
        return ReadProperty(folder, localCommitTimeMax)->Value.li.QuadPart;
    }

    ComPtr<IMAPIFolder> inbox = OpenFolder(folder_id::inbox);
    ComPtr<IMAPIFolder> deleted = OpenFolder(folder_id::deletedItems);
};

TEST_F(MapiFolder, TellsWhatAndWhereItIs)
{
    AddMessage(folder_id::inbox, "one");

    EXPECT_EQ(ReadText(*inbox.Get(), PR_DISPLAY_NAME_W), L"Inbox");
    EXPECT_EQ(ReadText(*inbox.Get(), PR_CONTAINER_CLASS_W), L"IPF.Note");
    EXPECT_EQ(ReadBinary(*inbox.Get(), PR_ENTRYID), FolderEntryId(folder_id::inbox));
    EXPECT_EQ(ReadBinary(*inbox.Get(), PR_PARENT_ENTRYID), FolderEntryId(folder_id::ipmSubtree));
    EXPECT_EQ(ReadLong(*inbox.Get(), PR_CONTENT_COUNT), 1);
    EXPECT_EQ(ReadLong(*inbox.Get(), PR_SUBFOLDERS), 0);
    EXPECT_EQ(ReadLong(*inbox.Get(), PR_OBJECT_TYPE), MAPI_FOLDER);
}

TEST_F(MapiFolder, GivesTextInTheStringTypeAskedFor)
{
    const auto narrow = ReadProperty(*inbox.Get(), PR_DISPLAY_NAME_A);
    const auto open = ReadProperty(*inbox.Get(), PROP_TAG(PT_UNSPECIFIED, PROP_ID(PR_DISPLAY_NAME)));

    EXPECT_STREQ(narrow->Value.lpszA, "Inbox");
    EXPECT_EQ(open->ulPropTag, static_cast<ULONG>(PR_DISPLAY_NAME_A));
}

TEST_F(MapiFolder, ListsOnlyPropertiesThatItHas)
{
    SPropTagArray* tags = nullptr;
    ASSERT_EQ(inbox->GetPropList(MAPI_UNICODE, &tags), S_OK);
    const MapiBuffer<SPropTagArray> owned(tags);

    ULONG count = 0;
    SPropValue* values = nullptr;
    EXPECT_EQ(inbox->GetProps(tags, 0, &count, &values), S_OK);
    const MapiBuffer<SPropValue> ownedValues(values);
    EXPECT_EQ(count, tags->cValues);
    EXPECT_THAT(std::vector<ULONG>(tags->aulPropTag, tags->aulPropTag + tags->cValues),
                Contains(static_cast<ULONG>(PR_DISPLAY_NAME_W)));
}

TEST_F(MapiFolder, ListsItsFoldersWithTheirEntryIds)
{
    const auto top = OpenFolder(folder_id::ipmSubtree);
    ComPtr<IMAPITable> table;
    ASSERT_EQ(top->GetHierarchyTable(0, &table), S_OK);

    const RowSet rows = ReadTable(*table.Get(), {PR_ENTRYID, PR_DISPLAY_NAME_W, PR_DEPTH});

    ASSERT_EQ(rows->cRows, 9u);
    const SBinary& first = rows->aRow[0].lpProps[0].Value.bin;
    EXPECT_EQ(Bytes(first.lpb, first.lpb + first.cb), FolderEntryId(folder_id::inbox));
    EXPECT_STREQ(rows->aRow[3].lpProps[1].Value.lpszW, L"Deleted Items");
    EXPECT_EQ(rows->aRow[0].lpProps[2].Value.l, 0);
}

TEST_F(MapiFolder, ListsTheWholeTreeBelowItWithDepths)
{
    const auto first = Create(*inbox.Get(), L"First");
    Create(*inbox.Get(), L"Second");
    Create(*first.Get(), L"Below");
    ComPtr<IMAPITable> table;

    ASSERT_EQ(inbox->GetHierarchyTable(CONVENIENT_DEPTH, &table), S_OK);

    EXPECT_THAT(ReadTextColumn(*table.Get(), PR_DISPLAY_NAME_W), ElementsAre(L"First", L"Below", L"Second"));
    EXPECT_THAT(ReadLongColumn(*table.Get(), PR_DEPTH), ElementsAre(0, 1, 0));
}

TEST_F(MapiFolder, ShowsItsMessagesWithKeysAndTexts)
{
    const std::int64_t id = AddMessage(folder_id::inbox, "Gr\xC3\xBC\xC3\x9F"
                                                         "e");
    file.Run("INSERT INTO message_text (message_id, headers, body) VALUES (1, 'From: a', 'hello')");
    ComPtr<IMAPITable> table;
    ASSERT_EQ(inbox->GetContentsTable(0, &table), S_OK);

    const RowSet rows =
        ReadTable(*table.Get(), {PR_ENTRYID, PR_SUBJECT_W, PR_BODY_W, PR_TRANSPORT_MESSAGE_HEADERS_W,
                                 PR_PARENT_ENTRYID, flagStatus});

    ASSERT_EQ(rows->cRows, 1u);
    const SPropValue* values = rows->aRow[0].lpProps;
    EXPECT_EQ(Bytes(values[0].Value.bin.lpb, values[0].Value.bin.lpb + values[0].Value.bin.cb),
              MessageEntryId(id));
    EXPECT_STREQ(values[1].Value.lpszW, L"Gr\u00FC\u00DFe");
    EXPECT_STREQ(values[2].Value.lpszW, L"hello");
    EXPECT_STREQ(values[3].Value.lpszW, L"From: a");
    EXPECT_EQ(Bytes(values[4].Value.bin.lpb, values[4].Value.bin.lpb + values[4].Value.bin.cb),
              FolderEntryId(folder_id::inbox));
    EXPECT_EQ(PROP_TYPE(values[5].ulPropTag), static_cast<ULONG>(PT_ERROR));
}

TEST_F(MapiFolder, RestrictsByAnAttachmentsName)
{
    AddMessage(folder_id::inbox, "without");
    AddMessage(folder_id::inbox, "with");
    file.Run("INSERT INTO attachment (message_id, number, method, display_name, size) VALUES (2, 0, 1, "
             "'a.txt', 0)");
    wchar_t name[] = L"A.TXT";
    SPropValue value = TextValue(PR_DISPLAY_NAME_W, name);
    SRestriction content{};
    content.rt = RES_CONTENT;
    content.res.resContent = {FL_FULLSTRING | FL_IGNORECASE, PR_DISPLAY_NAME_W, &value};
    SRestriction some{};
    some.rt = RES_SUBRESTRICTION;
    some.res.resSub = {PR_MESSAGE_ATTACHMENTS, &content};
    ComPtr<IMAPITable> table;
    ASSERT_EQ(inbox->GetContentsTable(0, &table), S_OK);

    ASSERT_EQ(table->Restrict(&some, 0), S_OK);

    EXPECT_THAT(ReadTextColumn(*table.Get(), PR_SUBJECT_W), ElementsAre(L"with"));
}

TEST_F(MapiFolder, MovesMessagesThatKeepTheirEntryIds)
{
    const std::int64_t id = AddMessage(folder_id::inbox, "moved");
    AddMessage(folder_id::inbox, "kept");
    EntryList list({MessageEntryId(id)});

    ASSERT_EQ(inbox->CopyMessages(list, nullptr, deleted.Get(), 0, nullptr, MESSAGE_MOVE), S_OK);

    EXPECT_THAT(Subjects(*inbox.Get()), ElementsAre(L"kept"));
    EXPECT_THAT(Subjects(*deleted.Get()), ElementsAre(L"moved"));
    EXPECT_EQ(ReadText(*OpenMessage(id).Get(), PR_SUBJECT_W), L"moved");
}

TEST_F(MapiFolder, CopiesMessages)
{
    const std::int64_t id = AddMessage(folder_id::inbox, "copied");
    EntryList list({MessageEntryId(id)});

    ASSERT_EQ(inbox->CopyMessages(list, nullptr, deleted.Get(), 0, nullptr, 0), S_OK);

    EXPECT_THAT(Subjects(*inbox.Get()), ElementsAre(L"copied"));
    EXPECT_THAT(Subjects(*deleted.Get()), ElementsAre(L"copied"));
}

TEST_F(MapiFolder, DeletesMessagesAndSaysWhenSomeWereNotThere)
{
    const std::int64_t here = AddMessage(folder_id::inbox, "here");
    const std::int64_t there = AddMessage(folder_id::outbox, "there");
    EntryList list({MessageEntryId(here), MessageEntryId(there)});

    EXPECT_EQ(inbox->DeleteMessages(list, 0, nullptr, 0), MAPI_W_PARTIAL_COMPLETION);

    EXPECT_THAT(Subjects(*inbox.Get()), IsEmpty());
    EXPECT_THAT(Subjects(*OpenFolder(folder_id::outbox).Get()), ElementsAre(L"there"));
}

TEST_F(MapiFolder, RefusesEntryIdsOfFoldersAmongMessages)
{
    EntryList list({FolderEntryId(folder_id::outbox)});

    EXPECT_EQ(inbox->DeleteMessages(list, 0, nullptr, 0), MAPI_E_INVALID_ENTRYID);
}

TEST_F(MapiFolder, MakesAFolderOnce)
{
    const auto made = Create(*inbox.Get(), L"Lists");
    Create(*inbox.Get(), L"Lists", 0, MAPI_E_COLLISION);
    const auto again = Create(*inbox.Get(), L"LISTS", OPEN_IF_EXISTS);

    EXPECT_EQ(ReadBinary(*again.Get(), PR_ENTRYID), ReadBinary(*made.Get(), PR_ENTRYID));
    EXPECT_THAT(Names(*inbox.Get()), ElementsAre(L"Lists"));
}

TEST_F(MapiFolder, DeletesAFolderOnlyWithLeaveForWhatIsInIt)
{
    const auto folder = Create(*inbox.Get(), L"Lists");
    Create(*folder.Get(), L"Below");
    Bytes entryId = ReadBinary(*folder.Get(), PR_ENTRYID);
    const auto remove = [&](ULONG flags)
    {
        return inbox->DeleteFolder(static_cast<ULONG>(entryId.size()),
                                   reinterpret_cast<ENTRYID*>(entryId.data()), 0, nullptr, flags);
    };

    EXPECT_EQ(remove(DEL_MESSAGES), MAPI_E_HAS_FOLDERS);
    EXPECT_EQ(remove(DEL_MESSAGES | DEL_FOLDERS), S_OK);

    EXPECT_THAT(Names(*inbox.Get()), IsEmpty());
    EXPECT_EQ(ReadLong(*inbox.Get(), PR_SUBFOLDERS), 0);
}

TEST_F(MapiFolder, MarksAllItsMessagesUnread)
{
    AddMessage(folder_id::inbox, "a");
    AddMessage(folder_id::inbox, "b");

    ASSERT_EQ(inbox->SetReadFlags(nullptr, 0, nullptr, CLEAR_READ_FLAG), S_OK);

    EXPECT_EQ(ReadLong(*inbox.Get(), PR_CONTENT_UNREAD), 2);
}

TEST_F(MapiFolder, ShowsAnotherCommitTimeAfterEveryChangeOfItsContents)
{
    std::vector<std::int64_t> times{CommitTime(*inbox.Get())};
    const auto message = CreateMessage(folder_id::inbox);
    message->SaveChanges(KEEP_OPEN_READWRITE);
    times.push_back(CommitTime(*inbox.Get()));
    Set(*message.Get(), TextValue(PR_SUBJECT_W, L"changed"));
    message->SaveChanges(KEEP_OPEN_READWRITE);
    times.push_back(CommitTime(*inbox.Get()));
    EntryList list({ReadBinary(*message.Get(), PR_ENTRYID)});
    inbox->DeleteMessages(list, 0, nullptr, 0);
    times.push_back(CommitTime(*inbox.Get()));

    EXPECT_TRUE(std::is_sorted(times.begin(), times.end(), std::less_equal<>()));
}

TEST_F(MapiFolder, RefusesToBeRenamedWhenOpenedForReading)
{
    const auto readOnly = OpenFolder(folder_id::inbox, 0);

    EXPECT_EQ(Set(*readOnly.Get(), TextValue(PR_DISPLAY_NAME_W, L"Mine")), MAPI_E_NO_ACCESS);
    EXPECT_EQ(ReadText(*inbox.Get(), PR_DISPLAY_NAME_W), L"Inbox");
}

TEST_F(MapiFolder, HasNoSearchCriteria)
{
    EXPECT_EQ(inbox->SetSearchCriteria(nullptr, nullptr, 0), MAPI_E_NO_SUPPORT);
}
}    // namespace
