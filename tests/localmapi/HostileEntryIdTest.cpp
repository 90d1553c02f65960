// Entry ids that never came from this store, or not for what they are used for.
#include "tests/localmapi/StoreObjects.h"

#include <random>

namespace
{
class HostileEntryId : public StoreObjects
{
protected:
    // By the store, the folder and the message list, as a client may hand it in; none of them may say yes.
    void ExpectRefused(Bytes bytes, const std::string& what)
    {
        for (const bool byStore : {true, false})
        {
            ULONG type = 0;
            ComPtr<IUnknown> opened;
            const auto size = static_cast<ULONG>(bytes.size());
            auto* const entryId = reinterpret_cast<ENTRYID*>(bytes.data());
            const HRESULT result = byStore ? store->OpenEntry(size, entryId, nullptr, 0, &type, &opened)
                                           : inbox->OpenEntry(size, entryId, nullptr, 0, &type, &opened);
            EXPECT_TRUE(IsRefusal(result)) << what << std::hex << result;
            EXPECT_EQ(opened, nullptr) << what;
        }
        EntryList list({bytes});
        EXPECT_TRUE(IsRefusal(inbox->DeleteMessages(list, 0, nullptr, 0))) << what;
        EXPECT_TRUE(IsRefusal(inbox->CopyMessages(list, nullptr, inbox.Get(), 0, nullptr, MESSAGE_MOVE)))
            << what;
    }

    static bool IsRefusal(HRESULT result)
    {
        return result == MAPI_E_INVALID_ENTRYID || result == MAPI_E_UNKNOWN_ENTRYID ||
               result == MAPI_E_NOT_FOUND || result == MAPI_W_PARTIAL_COMPLETION;
    }

    std::int64_t CountMessages() const { return file.ReadInteger("SELECT count(*) FROM message"); }

    std::int64_t message = AddMessage(folder_id::inbox, "kept");
    ComPtr<IMAPIFolder> inbox = OpenFolder(folder_id::inbox);
};
}    // namespace

TEST_F(HostileEntryId, OfEveryOtherLengthIsRefused)
{
    const Bytes whole = MessageEntryId(message);
    for (std::size_t size = 1; size <= 64; ++size)
    {
        Bytes bytes = whole;
        bytes.resize(size);
        if (size != whole.size())
            ExpectRefused(bytes, std::to_string(size) + " bytes: ");
    }
    EXPECT_EQ(CountMessages(), 1);
}

TEST_F(HostileEntryId, OfRandomBytesIsRefused)
{
    std::mt19937 random(1);
    for (int count = 0; count < 200; ++count)
    {
        Bytes bytes(32);
        for (BYTE& byte : bytes)
            byte = static_cast<BYTE>(random());
        ExpectRefused(bytes, "random bytes " + std::to_string(count) + ": ");
    }
    EXPECT_EQ(CountMessages(), 1);
}

TEST_F(HostileEntryId, WithOneByteChangedNamesNoOtherMessage)
{
    const Bytes whole = MessageEntryId(message);
    for (std::size_t place = 0; place < whole.size(); ++place)
    {
        Bytes bytes = whole;
        bytes[place] ^= 0x40;
        ExpectRefused(bytes, "byte " + std::to_string(place) + ": ");
    }
    EXPECT_EQ(CountMessages(), 1);
}

TEST_F(HostileEntryId, OfAMessageThatIsGoneIsRefused)
{
    const Bytes gone = MessageEntryId(AddMessage(folder_id::inbox, "gone"));
    EntryList list({gone});
    ASSERT_EQ(inbox->DeleteMessages(list, 0, nullptr, 0), S_OK);

    ExpectRefused(gone, "deleted: ");
}

TEST_F(HostileEntryId, OfAnotherFoldersMessageDeletesNothingHere)
{
    EntryList list({MessageEntryId(AddMessage(folder_id::outbox, "there"))});

    EXPECT_EQ(inbox->DeleteMessages(list, 0, nullptr, 0), MAPI_W_PARTIAL_COMPLETION);

    EXPECT_EQ(CountMessages(), 2);
}

TEST_F(HostileEntryId, ListsWithoutTheirEntriesAreRefused)
{
    ENTRYLIST list = {3, nullptr};

    EXPECT_EQ(inbox->DeleteMessages(&list, 0, nullptr, 0), MAPI_E_INVALID_PARAMETER);
}

TEST_F(HostileEntryId, OfNoBytesAmongMessagesIsRefused)
{
    EntryList list({Bytes()});

    EXPECT_EQ(inbox->DeleteMessages(list, 0, nullptr, 0), MAPI_E_INVALID_ENTRYID);
}
