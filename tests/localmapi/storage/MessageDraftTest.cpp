#include "localmapi/storage/MessageDraft.h"

#include "localmapi/storage/Folders.h"
#include "localmapi/storage/MessageMoves.h"
#include "localmapi/storage/StoreError.h"
#include "tests/localmapi/TemporaryStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using testing::Contains;
using testing::ElementsAre;
using testing::Key;
using testing::Not;

StoredValue Text(const char* text)
{
    return std::string(text);
}

class Draft : public testing::Test
{
protected:
    static StoredValue Read(MessageDraft& draft, std::uint32_t tag)
    {
        return ReadValues(draft, {tag}).front();
    }

    TemporaryStore store;
    std::shared_ptr<StoreFile> file = store.Open();
    std::int64_t message = store.AddMessage(folder_id::inbox, "before");
};

TEST_F(Draft, ShowsItsOwnChangesAndKeepsThemFromOthersUntilItIsSaved)
{
    const auto mine = MessageDraft::Open(file, message);
    mine->Set(tag::subject, Text("after"));

    EXPECT_EQ(Read(*mine, tag::subject), Text("after"));
    EXPECT_EQ(Read(*MessageDraft::Open(file, message), tag::subject), Text("before"));

    mine->Save();

    EXPECT_EQ(Read(*MessageDraft::Open(file, message), tag::subject), Text("after"));
}

TEST_F(Draft, OfANewMessageIsNowhereUntilItIsSaved)
{
    const auto draft = MessageDraft::Make(file, folder_id::outbox);
    draft->Set(tag::subject, Text("new"));
    EXPECT_EQ(CountMessages(*file, folder_id::outbox), 0u);

    draft->Save();

    EXPECT_THAT(ReadMessageIds(*file, folder_id::outbox), ElementsAre(draft->Id()));
    EXPECT_EQ(Read(*draft, tag::messageClass), Text("IPM.Note"));
}

TEST_F(Draft, ListsWhatItHasWithItsChanges)
{
    const auto draft = MessageDraft::Open(file, message);
    draft->Set(tag::body, Text("text"));
    draft->Set(0x80020003, std::int64_t{5});
    draft->Save();
    draft->Set(0x80020003, {});
    draft->Set(0x80030003, std::int64_t{6});

    const std::vector<std::uint32_t> tags = draft->ListTags();

    EXPECT_THAT(tags, Contains(tag::body));
    EXPECT_THAT(tags, Contains(0x80030003));
    EXPECT_THAT(tags, Not(Contains(0x80020003)));
    EXPECT_THAT(tags, Not(Contains(tag::transportMessageHeaders)));
}

TEST_F(Draft, TakesAPropertyAway)
{
    const auto draft = MessageDraft::Open(file, message);
    draft->Set(tag::flagStatus, std::int64_t{2});
    draft->Save();
    draft->Set(tag::flagStatus, {});
    draft->Save();

    EXPECT_EQ(Read(*MessageDraft::Open(file, message), tag::flagStatus), StoredValue());
}

TEST_F(Draft, NumbersAttachmentsAnewAndKeepsTheirContent)
{
    const auto draft = MessageDraft::Open(file, message);
    const std::int64_t first = draft->ReserveAttachmentNumber();
    const std::int64_t second = draft->ReserveAttachmentNumber();
    draft->PutAttachment(first, {{1, Text("a.txt"), {}, {}, {}, 0}, Blob{1}});
    draft->PutAttachment(second, {{1, Text("b.txt"), {}, {}, {}, 0}, Blob{2, 2}});
    draft->Save();
    draft->DeleteAttachment(first);
    draft->PutAttachment(second, {{1, Text("renamed.txt"), {}, {}, {}, 2}, std::nullopt});
    draft->Save();

    const auto attachments = MessageDraft::Open(file, message)->Attachments();

    EXPECT_THAT(attachments, ElementsAre(Key(second)));
    EXPECT_EQ(attachments.at(second).fileName, Text("renamed.txt"));
    EXPECT_EQ(ReadAttachmentData(*file, message, second), StoredValue(Blob{2, 2}));
    EXPECT_EQ(ReadAttachmentData(*file, message, first), StoredValue());
}

TEST_F(Draft, MarksAMessageReadAtOnceAndKeepsItsChanges)
{
    const auto draft = MessageDraft::Open(file, message);
    draft->Set(tag::subject, Text("after"));

    draft->SetRead(false);

    EXPECT_EQ(store.ReadInteger("SELECT message_flags & 1 FROM message"), 0);
    EXPECT_EQ(Read(*draft, tag::subject), Text("after"));
    EXPECT_EQ(ReadLines(store, "SELECT subject FROM message"), std::vector<std::string>{"before"});
}

TEST_F(Draft, CannotBeSavedOnceItsMessageIsGone)
{
    const auto draft = MessageDraft::Open(file, message);
    draft->Set(tag::subject, Text("after"));
    DeleteMessages(*file, folder_id::inbox, {&message, 1});

    EXPECT_THROW(draft->Save(), StoreError);
}

TEST_F(Draft, FollowsItsMessageIntoAnotherFolder)
{
    const auto draft = MessageDraft::Open(file, message);
    MoveMessages(*file, folder_id::inbox, {&message, 1}, folder_id::outbox);
    draft->Set(tag::subject, Text("after"));

    draft->Save();

    EXPECT_EQ(draft->FolderId(), folder_id::outbox);
    EXPECT_THAT(ReadMessageIds(*file, folder_id::outbox), ElementsAre(message));
}
}    // namespace
