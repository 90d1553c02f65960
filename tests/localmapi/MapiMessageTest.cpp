#include "tests/localmapi/StoreObjects.h"

#include <gmock/gmock.h>

#include <objidl.h>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

class MapiMessage : public StoreObjects
{
protected:
    std::vector<std::wstring> Recipients(IMessage& message)
    {
        ComPtr<IMAPITable> table;
        EXPECT_EQ(message.GetRecipientTable(0, &table), S_OK);
        return ReadTextColumn(*table.Get(), PR_DISPLAY_NAME_W);
    }
    std::vector<std::wstring> AttachmentNames(IMessage& message)
    {
        ComPtr<IMAPITable> table;
        EXPECT_EQ(message.GetAttachmentTable(0, &table), S_OK);
        return ReadTextColumn(*table.Get(), PR_DISPLAY_NAME_W);
    }
    HRESULT ModifyRecipient(IMessage& message, ULONG flags, std::vector<SPropValue> values)
    {
        ADRLIST list{};
        list.cEntries = 1;
        list.aEntries[0] = {0, static_cast<ULONG>(values.size()), values.data()};
        return message.ModifyRecipients(flags, &list);
    }
    HRESULT AddRecipient(IMessage& message, LONG type, const wchar_t* name)
    {
        return ModifyRecipient(message, MODRECIP_ADD,
                               {LongValue(PR_RECIPIENT_TYPE, type), TextValue(PR_DISPLAY_NAME_W, name),
                                TextValue(PR_ADDRTYPE_W, L"SMTP"),
                                TextValue(PR_EMAIL_ADDRESS_W, L"a@example.org")});
    }
    ULONG AddAttachment(IMessage& message, const wchar_t* name, Bytes content)
    {
        ULONG number = 0;
        ComPtr<IAttach> attach;
        EXPECT_EQ(message.CreateAttach(nullptr, 0, &number, &attach), S_OK);
        SPropValue data{};
        data.ulPropTag = PR_ATTACH_DATA_BIN;
        data.Value.bin = {static_cast<ULONG>(content.size()), content.data()};
        EXPECT_EQ(Set(*attach.Get(), LongValue(PR_ATTACH_METHOD, ATTACH_BY_VALUE)), S_OK);
        EXPECT_EQ(Set(*attach.Get(), TextValue(PR_ATTACH_LONG_FILENAME_W, name)), S_OK);
        EXPECT_EQ(Set(*attach.Get(), data), S_OK);
        EXPECT_EQ(attach->SaveChanges(0), S_OK);
        return number;
    }
    ComPtr<IStream> OpenStream(IMAPIProp& object, ULONG tag, ULONG flags, HRESULT expected = S_OK)
    {
        ComPtr<IUnknown> opened;
        EXPECT_EQ(object.OpenProperty(tag, &IID_IStream, 0, flags, &opened), expected);
        ComPtr<IStream> stream;
        if (opened)
            opened.As(&stream);
        return stream;
    }
    std::wstring ReadWide(IStream& stream)
    {
        std::wstring text(100, L'\0');
        ULONG read = 0;
        stream.Read(text.data(), static_cast<ULONG>(text.size() * sizeof(wchar_t)), &read);
        text.resize(read / sizeof(wchar_t));
        return text;
    }

    std::int64_t id = AddMessage(folder_id::inbox, "before");
};

TEST_F(MapiMessage, IsWrittenBySaveChangesOnly)
{
    const auto message = OpenMessage(id);
    ASSERT_EQ(Set(*message.Get(), TextValue(PR_SUBJECT_W, L"after")), S_OK);
    EXPECT_EQ(ReadText(*message.Get(), PR_SUBJECT_W), L"after");
    EXPECT_EQ(ReadText(*OpenMessage(id).Get(), PR_SUBJECT_W), L"before");

    ASSERT_EQ(message->SaveChanges(KEEP_OPEN_READWRITE), S_OK);

    EXPECT_EQ(ReadText(*OpenMessage(id).Get(), PR_SUBJECT_W), L"after");
}

TEST_F(MapiMessage, AppearsInItsFolderWhenFirstSaved)
{
    const auto message = CreateMessage(folder_id::outbox);
    Set(*message.Get(), TextValue(PR_SUBJECT_W, L"new"));
    EXPECT_EQ(ReadError(*message.Get(), PR_ENTRYID), MAPI_E_NOT_FOUND);
    EXPECT_THAT(Subjects(*OpenFolder(folder_id::outbox).Get()), IsEmpty());

    ASSERT_EQ(message->SaveChanges(KEEP_OPEN_READWRITE), S_OK);

    EXPECT_THAT(Subjects(*OpenFolder(folder_id::outbox).Get()), ElementsAre(L"new"));
    EXPECT_FALSE(ReadBinary(*message.Get(), PR_ENTRYID).empty());
    EXPECT_EQ(ReadBinary(*message.Get(), PR_PARENT_ENTRYID), FolderEntryId(folder_id::outbox));
}

TEST_F(MapiMessage, RefusesChangesWhenOpenedForReading)
{
    const auto message = OpenMessage(id, 0);

    EXPECT_EQ(Set(*message.Get(), TextValue(PR_SUBJECT_W, L"after")), MAPI_E_NO_ACCESS);
    EXPECT_EQ(message->SaveChanges(0), MAPI_E_NO_ACCESS);
    EXPECT_EQ(ReadLong(*message.Get(), PR_ACCESS_LEVEL), 0);
}

TEST_F(MapiMessage, TellsWhichOfSeveralPropertiesItCannotSet)
{
    const auto message = OpenMessage(id);
    SPropValue values[] = {LongValue(PR_MESSAGE_SIZE, 1), TextValue(PR_SUBJECT_W, L"after")};
    SPropProblemArray* problems = nullptr;

    ASSERT_EQ(message->SetProps(2, values, &problems), S_OK);

    const MapiBuffer<SPropProblemArray> owned(problems);
    ASSERT_NE(problems, nullptr);
    ASSERT_EQ(problems->cProblem, 1u);
    EXPECT_EQ(problems->aProblem[0].ulIndex, 0u);
    EXPECT_EQ(problems->aProblem[0].scode, MAPI_E_COMPUTED);
    EXPECT_EQ(ReadText(*message.Get(), PR_SUBJECT_W), L"after");
}

TEST_F(MapiMessage, KeepsPropertiesOfEveryTypeTheStoreHas)
{
    const auto message = OpenMessage(id);
    GUID guid = IID_IMessage;
    BYTE bytes[] = {0, 255, 7};
    SPropValue values[5]{};
    values[0] = LongValue(PROP_TAG(PT_LONG, 0x6001), -5);
    values[1].ulPropTag = PROP_TAG(PT_DOUBLE, 0x6002);
    values[1].Value.dbl = 2.0;
    values[2].ulPropTag = PROP_TAG(PT_BINARY, 0x6003);
    values[2].Value.bin = {sizeof(bytes), bytes};
    values[3].ulPropTag = PROP_TAG(PT_CLSID, 0x6004);
    values[3].Value.lpguid = &guid;
    values[4].ulPropTag = PROP_TAG(PT_BOOLEAN, 0x6005);
    values[4].Value.b = TRUE;
    ASSERT_EQ(message->SetProps(5, values, nullptr), S_OK);
    ASSERT_EQ(message->SaveChanges(0), S_OK);

    const auto reopened = OpenMessage(id);

    EXPECT_EQ(ReadLong(*reopened.Get(), values[0].ulPropTag), -5);
    EXPECT_EQ(ReadProperty(*reopened.Get(), values[1].ulPropTag)->Value.dbl, 2.0);
    EXPECT_EQ(ReadBinary(*reopened.Get(), values[2].ulPropTag), Bytes(bytes, bytes + sizeof(bytes)));
    EXPECT_EQ(*ReadProperty(*reopened.Get(), values[3].ulPropTag)->Value.lpguid, guid);
    EXPECT_EQ(ReadLong(*reopened.Get(), values[4].ulPropTag), 1);
}

TEST_F(MapiMessage, LosesADeletedProperty)
{
    const auto message = OpenMessage(id);
    Set(*message.Get(), TextValue(PR_BODY_W, L"text"));
    message->SaveChanges(KEEP_OPEN_READWRITE);
    SizedSPropTagArray(1, tags) = {1, {PR_BODY_A}};

    ASSERT_EQ(message->DeleteProps(reinterpret_cast<SPropTagArray*>(&tags), nullptr), S_OK);
    ASSERT_EQ(message->SaveChanges(0), S_OK);

    EXPECT_EQ(ReadError(*OpenMessage(id).Get(), PR_BODY_W), MAPI_E_NOT_FOUND);
}

TEST_F(MapiMessage, WarnsOfPropertiesThatItDoesNotHave)
{
    const auto message = OpenMessage(id);
    SizedSPropTagArray(2, tags) = {2, {PR_SUBJECT_W, PR_BODY_W}};
    ULONG count = 0;
    SPropValue* values = nullptr;

    EXPECT_EQ(message->GetProps(reinterpret_cast<SPropTagArray*>(&tags), 0, &count, &values),
              MAPI_W_ERRORS_RETURNED);

    const MapiBuffer<SPropValue> owned(values);
    EXPECT_STREQ(values[0].Value.lpszW, L"before");
    EXPECT_EQ(values[1].ulPropTag, PROP_TAG(PT_ERROR, PROP_ID(PR_BODY)));
}

TEST_F(MapiMessage, KeepsItsRecipientsAndShowsTheirNames)
{
    const auto message = OpenMessage(id);
    AddRecipient(*message.Get(), MAPI_TO, L"Ann");
    AddRecipient(*message.Get(), MAPI_CC, L"Bob");
    AddRecipient(*message.Get(), MAPI_TO, L"Carl");
    ASSERT_EQ(message->SaveChanges(0), S_OK);

    const auto reopened = OpenMessage(id);

    EXPECT_THAT(Recipients(*reopened.Get()), ElementsAre(L"Ann", L"Bob", L"Carl"));
    EXPECT_EQ(ReadText(*reopened.Get(), PR_DISPLAY_TO_W), L"Ann; Carl");
    EXPECT_EQ(ReadText(*reopened.Get(), PR_DISPLAY_CC_W), L"Bob");
}

TEST_F(MapiMessage, ChangesAndRemovesRecipientsByTheirRow)
{
    const auto message = OpenMessage(id);
    for (const wchar_t* name : {L"Ann", L"Bob", L"Carl"})
        AddRecipient(*message.Get(), MAPI_TO, name);

    ASSERT_EQ(ModifyRecipient(*message.Get(), MODRECIP_MODIFY,
                              {LongValue(PR_ROWID, 1), TextValue(PR_DISPLAY_NAME_W, L"Bert")}),
              S_OK);
    ASSERT_EQ(ModifyRecipient(*message.Get(), MODRECIP_REMOVE, {LongValue(PR_ROWID, 0)}), S_OK);

    EXPECT_THAT(Recipients(*message.Get()), ElementsAre(L"Bert", L"Carl"));
}

TEST_F(MapiMessage, KeepsItsAttachments)
{
    const auto message = OpenMessage(id);
    const ULONG number = AddAttachment(*message.Get(), L"r\u00E9sum\u00E9.txt", {1, 2, 3});
    ASSERT_EQ(message->SaveChanges(0), S_OK);

    const auto reopened = OpenMessage(id);
    ComPtr<IAttach> attach;
    ASSERT_EQ(reopened->OpenAttach(number, nullptr, 0, &attach), S_OK);

    EXPECT_EQ(ReadText(*attach.Get(), PR_ATTACH_LONG_FILENAME_W), L"r\u00E9sum\u00E9.txt");
    EXPECT_EQ(ReadText(*attach.Get(), PR_DISPLAY_NAME_W), L"r\u00E9sum\u00E9.txt");
    EXPECT_EQ(ReadLong(*attach.Get(), PR_ATTACH_SIZE), 3);
    EXPECT_EQ(ReadBinary(*attach.Get(), PR_ATTACH_DATA_BIN), (Bytes{1, 2, 3}));
    EXPECT_EQ(ReadLong(*reopened.Get(), PR_HASATTACH), 1);
}

TEST_F(MapiMessage, LosesADeletedAttachmentWithItsNextSave)
{
    const auto message = OpenMessage(id);
    const ULONG first = AddAttachment(*message.Get(), L"a.txt", {1});
    AddAttachment(*message.Get(), L"b.txt", {2});
    message->SaveChanges(KEEP_OPEN_READWRITE);

    ASSERT_EQ(message->DeleteAttach(first, 0, nullptr, 0), S_OK);
    EXPECT_THAT(AttachmentNames(*OpenMessage(id).Get()), ElementsAre(L"a.txt", L"b.txt"));
    ASSERT_EQ(message->SaveChanges(0), S_OK);

    EXPECT_THAT(AttachmentNames(*OpenMessage(id).Get()), ElementsAre(L"b.txt"));
}

TEST_F(MapiMessage, IsCopiedToAnotherWithRecipientsAndAttachments)
{
    const auto message = OpenMessage(id);
    Set(*message.Get(), TextValue(PR_BODY_W, L"text"));
    Set(*message.Get(), LongValue(PR_MESSAGE_FLAGS, MSGFLAG_READ));
    AddRecipient(*message.Get(), MAPI_TO, L"Ann");
    AddAttachment(*message.Get(), L"a.txt", {9});
    message->SaveChanges(KEEP_OPEN_READWRITE);
    const auto copy = CreateMessage(folder_id::outbox);

    ASSERT_EQ(message->CopyTo(0, nullptr, nullptr, 0, nullptr, &IID_IMessage, copy.Get(), 0, nullptr), S_OK);
    ASSERT_EQ(copy->SaveChanges(KEEP_OPEN_READWRITE), S_OK);

    EXPECT_EQ(ReadText(*copy.Get(), PR_SUBJECT_W), L"before");
    EXPECT_EQ(ReadText(*copy.Get(), PR_BODY_W), L"text");
    EXPECT_EQ(ReadLong(*copy.Get(), PR_MESSAGE_FLAGS), MSGFLAG_READ | MSGFLAG_HASATTACH);
    EXPECT_EQ(ReadText(*copy.Get(), PR_DISPLAY_TO_W), L"Ann");
    EXPECT_THAT(Recipients(*copy.Get()), ElementsAre(L"Ann"));
    EXPECT_THAT(AttachmentNames(*copy.Get()), ElementsAre(L"a.txt"));
    EXPECT_NE(ReadBinary(*copy.Get(), PR_ENTRYID), MessageEntryId(id));
}

TEST_F(MapiMessage, IsCopiedWithoutWhatIsExcluded)
{
    const auto message = OpenMessage(id);
    AddRecipient(*message.Get(), MAPI_TO, L"Ann");
    const auto copy = CreateMessage(folder_id::outbox);
    SizedSPropTagArray(2, excluded) = {2, {PR_MESSAGE_RECIPIENTS, PR_SUBJECT_W}};

    ASSERT_EQ(message->CopyTo(0, nullptr, reinterpret_cast<SPropTagArray*>(&excluded), 0, nullptr,
                              &IID_IMessage, copy.Get(), 0, nullptr),
              S_OK);
    copy->SaveChanges(KEEP_OPEN_READWRITE);

    EXPECT_THAT(Recipients(*copy.Get()), IsEmpty());
    EXPECT_EQ(ReadText(*copy.Get(), PR_SUBJECT_W), L"");
}

TEST_F(MapiMessage, StreamsItsBody)
{
    const auto message = OpenMessage(id);
    OpenStream(*message.Get(), PR_BODY_W, 0, MAPI_E_NOT_FOUND);
    const auto writer = OpenStream(*message.Get(), PR_BODY_W, MAPI_CREATE | MAPI_MODIFY);
    ASSERT_EQ(writer->Write(L"streamed", 8 * sizeof(wchar_t), nullptr), S_OK);
    ASSERT_EQ(writer->Commit(STGC_DEFAULT), S_OK);
    message->SaveChanges(0);

    const auto reader = OpenStream(*OpenMessage(id).Get(), PR_BODY_W, 0);

    EXPECT_EQ(ReadWide(*reader.Get()), L"streamed");
    EXPECT_EQ(reader->Write(L"x", sizeof(wchar_t), nullptr), STG_E_ACCESSDENIED);
}

TEST_F(MapiMessage, IsMarkedReadAtOnce)
{
    const auto message = OpenMessage(id);

    ASSERT_EQ(message->SetReadFlag(CLEAR_READ_FLAG), S_OK);

    EXPECT_EQ(ReadLong(*OpenMessage(id).Get(), PR_MESSAGE_FLAGS) & MSGFLAG_READ, 0);
    EXPECT_EQ(ReadLong(*message.Get(), PR_MESSAGE_FLAGS) & MSGFLAG_READ, 0);
}

TEST_F(MapiMessage, OpensItsTablesAsProperties)
{
    const auto message = OpenMessage(id);
    AddRecipient(*message.Get(), MAPI_TO, L"Ann");
    ComPtr<IUnknown> opened;

    ASSERT_EQ(message->OpenProperty(PR_MESSAGE_RECIPIENTS, &IID_IMAPITable, 0, 0, &opened), S_OK);

    EXPECT_THAT(ReadTextColumn(*static_cast<IMAPITable*>(opened.Get()), PR_DISPLAY_NAME_W),
                ElementsAre(L"Ann"));
}

TEST_F(MapiMessage, CannotBeSubmitted)
{
    EXPECT_EQ(OpenMessage(id)->SubmitMessage(0), MAPI_E_NO_SUPPORT);
}
}    // namespace
