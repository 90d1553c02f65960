#include "tests/engine/ScanFixture.h"

#include <functional>

namespace
{
// A world of its own for each failing call: two folders, three messages that agree, every criterion.
class SmallRun
{
public:
    FakeStore store;

    SmallRun()
    {
        FakeFolder& inbox = store.root.AddFolder(L"Inbox");
        for (int i = 0; i < 2; ++i)
            inbox.AddMessage({.recipients = {{1, L"Bob"}}, .attachments = {L"a.pdf"}});
        inbox.AddMessage({.subject = L"Other"});
        archive = &store.root.AddFolder(L"Archive");
        archive->AddMessage({.recipients = {{1, L"Bob"}}, .attachments = {L"a.pdf"}});
    }

    // The number of calls made; the state, with all that it holds, is gone afterwards.
    std::size_t Run(const std::function<void(ScanState&, FakeStore&, FakeFolder& archive)>& choose)
    {
        RecordingTreeView tree;
        RecordingProgressView progress;
        ScanState state;
        state.storeSession = store.MakeSession();
        state.useSenderName = state.useRecipientName = state.useInternetHeader = 1;
        state.useSendTime = state.useAttachments = 1;
        state.progressDialog = &progress;
        choose(state, store, *archive);
        OpenDefaultStore(state);
        EnumerateFolder(state, tree, state.folderRoot, TreeItem::none);
        RunDuplicateScan(state, state.folderRoot);
        ApplyDuplicateAction(state);
        return store.log.lines.size();
    }

private:
    FakeFolder* archive;
};

using Choice = std::function<void(ScanState&, FakeStore&, FakeFolder&)>;

struct NamedChoice
{
    const char* name;
    Choice choose;
};

class ScanFailure : public testing::TestWithParam<NamedChoice>
{
};

TEST_P(ScanFailure, OfAnyOneCallNeitherEscapesNorLeaksAnObject)
{
    const std::size_t calls = SmallRun().Run(GetParam().choose);
    ASSERT_GT(calls, 100u);
    for (const auto failure :
         {CallLog::Failure::plain, CallLog::Failure::withInfo, CallLog::Failure::withoutObject})
    {
        for (std::size_t call = 1; call <= calls; ++call)
        {
            SmallRun run;
            run.store.log.failAt = call;
            run.store.log.failure = failure;

            EXPECT_NO_THROW(run.Run(GetParam().choose)) << "call " << call;

            EXPECT_EQ(run.store.log.liveObjects, 0) << "call " << call;
        }
    }
}

TEST_P(ScanFailure, NeverCostsTheMessageThatIsKept)
{
    const std::size_t calls = SmallRun().Run(GetParam().choose);
    for (std::size_t call = 1; call <= calls; ++call)
    {
        SmallRun run;
        const std::wstring kept = run.store.root.folders.front().messages.front()->id;
        run.store.log.failAt = call;

        run.Run(GetParam().choose);

        EXPECT_EQ(run.store.FolderOf(kept), &run.store.root.folders.front()) << "call " << call;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Actions, ScanFailure,
    testing::Values(
        NamedChoice{"Flag", [](ScanState& state, FakeStore&, FakeFolder&) { state.actionFlag = 1; }},
        NamedChoice{"Expire", [](ScanState& state, FakeStore&, FakeFolder&) { state.actionExpire = 1; }},
        NamedChoice{"Copy",
                    [](ScanState& state, FakeStore& store, FakeFolder& archive)
                    {
                        state.actionCopy = 1;
                        state.destFolder = store.MakeFolder(archive);
                    }},
        NamedChoice{"Move",
                    [](ScanState& state, FakeStore& store, FakeFolder& archive)
                    {
                        state.actionMove = 1;
                        state.destFolder = store.MakeFolder(archive);
                    }},
        NamedChoice{"Delete", [](ScanState& state, FakeStore&, FakeFolder&) { state.actionDelete = 1; }},
        NamedChoice{"DeletePermanently",
                    [](ScanState& state, FakeStore&, FakeFolder&) { state.actionDeletePermanently = 1; }}),
    [](const auto& choice) { return choice.param.name; });

class SearchFailure : public ScanFixture
{
protected:
    FakeFolder& inbox = store.root.AddFolder(L"Inbox");

    // Lets the first call fail that stands `behind` calls after the n-th occurrence of `line`.
    void FailAfter(std::string line, int occurrence)
    {
        store.log.onCall = [this, line, occurrence, seen = 0](const std::string& made) mutable
        {
            if (made == line && ++seen == occurrence)
                store.log.failAt = store.log.lines.size() + 1;
        };
    }
};

TEST_F(SearchFailure, InOneFolderGoesOnWithTheNextFolderOfTheSameItem)
{
    inbox.AddMessage();
    inbox.AddMessage();
    const std::wstring other = store.root.AddFolder(L"Archive").AddMessage();
    FailAfter("Items 13 get()", 1);

    RunSearch();

    // The first match is still to be passed over when the next folder is searched, so this one is not
    // recorded.
    EXPECT_EQ(std::ranges::count(FoundIds(), other), 1);
    EXPECT_GE(std::ranges::count(store.log.lines, "Items 13 get()"), 2);
}

TEST_F(SearchFailure, ReadingAFurtherFolderGivesUpTheOtherFoldersForThatItemOnly)
{
    inbox.AddMessage({.subject = L"One"});
    inbox.AddMessage({.subject = L"Two"});
    FakeFolder& archive = store.root.AddFolder(L"Archive");
    archive.AddMessage({.subject = L"One"});
    const std::wstring two = archive.AddMessage({.subject = L"Two"});
    // Behind the search of the Inbox for the first item comes the reading of the Archive.
    FailAfter("Filter 7 method(BOOL -1)", 1);

    RunSearch();

    EXPECT_EQ(FoundIds(), std::vector{two});
}

TEST_F(SearchFailure, ReadingAnItemEndsTheSearchButNotTheRun)
{
    inbox.AddMessage({.subject = L"One"});
    const std::wstring duplicate = inbox.AddMessage({.subject = L"One"});
    inbox.AddMessage({.subject = L"Two"});
    inbox.AddMessage({.subject = L"Two"});
    FailAfter("Items 9 method(I4 3)", 1);
    state.actionDelete = 1;

    Run();

    EXPECT_EQ(FoundIds(), std::vector{duplicate});
    EXPECT_EQ(store.FolderOf(duplicate), &store.deletedItems);
}
}    // namespace
