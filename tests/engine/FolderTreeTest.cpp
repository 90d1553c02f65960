#include "tests/engine/ScanFixture.h"

namespace
{
class FolderTree : public ScanFixture
{
protected:
    std::vector<std::wstring> RecordNames() const
    {
        std::vector<std::wstring> names;
        for (const FOLDER_INFO& record : state.folders)
            names.push_back(record.name);
        return names;
    }

    const DrawnItem& ItemOf(std::size_t record) const { return tree.At(state.folders.at(record).treeItem); }
};

TEST_F(FolderTree, OpensTheDefaultStoreAndKeepsItsIdAndRootFolder)
{
    state.storeSession = store.MakeSession();

    const LONG opened = OpenDefaultStore(state);

    EXPECT_EQ(opened, 1);
    EXPECT_EQ(state.storeEntryId, L"5354");
    EXPECT_TRUE(state.folderRoot);
    EXPECT_EQ(store.log.lines, (std::vector<std::string>{"Session 6 get()", "Stores 4 get()", "Store 9 get()",
                                                         "Store 104 get()"}));
}

TEST_F(FolderTree, ReportsFailureWhenTheStoreHasNoRootFolder)
{
    store.hasRootFolder = false;
    state.storeSession = store.MakeSession();

    EXPECT_EQ(OpenDefaultStore(state), 0);
}

TEST_F(FolderTree, ReportsFailureWhicheverCallTheStoreRefuses)
{
    state.storeSession = store.MakeSession();
    for (std::size_t call = 1; call <= 4; ++call)
    {
        store.log.lines.clear();
        store.log.failAt = call;

        EXPECT_EQ(OpenDefaultStore(state), 0) << "call " << call;
    }
}

TEST_F(FolderTree, ReportsFailureWithoutASession)
{
    EXPECT_EQ(OpenDefaultStore(state), 0);
}

TEST_F(FolderTree, ReadsEachFolderByTheSameCallsInTheSameOrder)
{
    store.root.AddFolder(L"Inbox").AddMessage();
    state.storeSession = store.MakeSession();
    OpenDefaultStore(state);
    store.log.lines.clear();

    EnumerateFolder(state, tree, state.folderRoot, TreeItem::none);

    EXPECT_EQ(store.log.lines,
              (std::vector<std::string>{
                  "Folder 18 get()", "Folder 0 get()", "Folder 17 get()", "Folder 22 get()", "Items 1 get()",
                  "Folder 9 get()", "Folder 11 get()", "Folders 1 get()", "Folders 9 method(I4 1)",
                  "Folder 18 get()", "Folder 0 get()", "Folder 17 get()", "Folder 22 get()", "Items 1 get()",
                  "Folder 9 get()", "Folder 11 get()", "Folder 9 get()", "Folders 1 get()"}));
}

TEST_F(FolderTree, ShowsAFolderWithoutItemsByItsBareNameNotBold)
{
    store.root.AddFolder(L"Drafts");

    LoadTree();

    EXPECT_EQ(ItemOf(1).text, L"Drafts");
    EXPECT_FALSE(ItemOf(1).bold);
}

TEST_F(FolderTree, ShowsAFolderWithTwelveItemsWithTheCountBehindItsNameInBold)
{
    FakeFolder& inbox = store.root.AddFolder(L"Inbox");
    for (int i = 0; i < 12; ++i)
        inbox.AddMessage();

    LoadTree();

    EXPECT_EQ(ItemOf(1).text, L"Inbox(12)");
    EXPECT_TRUE(ItemOf(1).bold);
    EXPECT_EQ(state.folders[1].name, L"Inbox");
}

TEST_F(FolderTree, ShowsACalendarGreyedWithItsOwnImageAndYetChecked)
{
    store.root.AddFolder(L"Calendar", 1);

    LoadTree();

    EXPECT_TRUE(ItemOf(1).greyed);
    EXPECT_EQ(ItemOf(1).image, 5);
    EXPECT_EQ(ItemOf(1).selectedImage, 5);
    EXPECT_EQ(ItemOf(1).check, CheckState::checked);
    EXPECT_EQ(state.folders[1].selected, 1);
}

TEST_F(FolderTree, ShowsAMailFolderNotGreyed)
{
    store.root.AddFolder(L"Inbox");

    LoadTree();

    EXPECT_FALSE(ItemOf(1).greyed);
    EXPECT_EQ(ItemOf(1).image, 10);
}

TEST_F(FolderTree, GivesEachKindOfFolderItsImage)
{
    const std::vector<int> images{10, 5, 6, 9, 7, 8, 10, 6, 10};

    for (LONG type = 0; type < 9; ++type)
        EXPECT_EQ(FolderImage(type), images[static_cast<std::size_t>(type)]) << "item type " << type;
    EXPECT_EQ(FolderImage(-1), 10);
}

TEST_F(FolderTree, YieldsOneTopLevelRecordForARootWithoutSubFolders)
{
    LoadTree();

    ASSERT_EQ(state.folders.size(), 1u);
    EXPECT_EQ(state.folders[0].topLevel, 1);
    EXPECT_EQ(state.treeRootItem, state.folders[0].treeItem);
}

TEST_F(FolderTree, ListsTheFoldersInPreOrderThoughTheRootIsInsertedSorted)
{
    FakeFolder& zebra = store.root.AddFolder(L"Zebra");
    zebra.AddFolder(L"Foal").AddFolder(L"Stripe");
    store.root.AddFolder(L"Ant");

    LoadTree();

    EXPECT_EQ(RecordNames(), (std::vector<std::wstring>{L"Mailbox", L"Zebra", L"Foal", L"Stripe", L"Ant"}));
    EXPECT_EQ(ItemOf(0).place, FolderTreeView::Place::sorted);
    EXPECT_EQ(ItemOf(0).parent, TreeItem::none);
    for (std::size_t i = 1; i < state.folders.size(); ++i)
    {
        EXPECT_EQ(ItemOf(i).place, FolderTreeView::Place::last);
        EXPECT_EQ(state.folders[i].topLevel, 0);
    }
    EXPECT_EQ(ItemOf(3).parent, state.folders[2].treeItem);
    EXPECT_EQ(ItemOf(4).parent, state.folders[0].treeItem);
}

TEST_F(FolderTree, RecordsTheIdsOfAFolderAndItsParent)
{
    FakeFolder& inbox = store.root.AddFolder(L"Inbox");

    LoadTree();

    EXPECT_EQ(state.folders[1].entryId, inbox.id);
    EXPECT_EQ(state.folders[1].parentEntryId, store.root.id);
    EXPECT_EQ(state.folders[0].parentEntryId, L"");
}

TEST_F(FolderTree, LeavesAPartialTreeAndAListThatAgreesWithItWhenStopped)
{
    for (const wchar_t* name : {L"A", L"B", L"C"})
        store.root.AddFolder(name).AddFolder(L"below");
    store.log.onCall = [this](const std::string&)
    {
        if (tree.items.size() == 3)
            state.stopRequested = 1;
    };

    LoadTree();

    EXPECT_EQ(RecordNames(), (std::vector<std::wstring>{L"Mailbox", L"A", L"below"}));
    ASSERT_EQ(tree.items.size(), state.folders.size());
    for (std::size_t i = 0; i < state.folders.size(); ++i)
        EXPECT_EQ(ItemOf(i).text, state.folders[i].name);
}

TEST_F(FolderTree, TakesAFolderWithoutAnItemCollectionForAnEmptyOne)
{
    FakeFolder& odd = store.root.AddFolder(L"Odd");
    odd.AddMessage();
    store.withoutItems.push_back(&odd);

    LoadTree();

    EXPECT_EQ(ItemOf(1).text, L"Odd");
    EXPECT_FALSE(ItemOf(1).bold);
}

TEST_F(FolderTree, WalksOnPastAFolderThatCannotBeRead)
{
    store.root.AddFolder(L"Broken").AddFolder(L"below");
    store.root.AddFolder(L"Sound");
    bool broken = false;
    store.log.onCall = [&](const std::string& line)
    {
        // The first call on the sub-folder that the walk has just fetched.
        if (!broken && line == "Folders 9 method(I4 1)")
        {
            broken = true;
            store.log.failAt = store.log.lines.size() + 1;
        }
    };

    LoadTree();

    EXPECT_EQ(RecordNames(), (std::vector<std::wstring>{L"Mailbox", L"Sound"}));
    EXPECT_EQ(tree.items.size(), 2u);
}

TEST_F(FolderTree, KeepsTreeAndListInAgreementWhicheverCallFails)
{
    FakeFolder& inbox = store.root.AddFolder(L"Inbox");
    inbox.AddMessage();
    inbox.AddFolder(L"Lists");
    for (const auto failure :
         {CallLog::Failure::plain, CallLog::Failure::withInfo, CallLog::Failure::withoutObject})
    {
        for (std::size_t call = 1; call <= 30; ++call)
        {
            store.log.failAt = 0;
            state.folders.clear();
            tree.items.clear();
            state.folderRoot = store.MakeFolder(store.root);
            store.log.lines.clear();
            store.log.failAt = call;
            store.log.failure = failure;

            EnumerateFolder(state, tree, state.folderRoot, TreeItem::none);

            EXPECT_EQ(tree.items.size(), state.folders.size()) << "call " << call;
        }
    }
}

TEST_F(FolderTree, DrawsNothingForNoFolder)
{
    EnumerateFolder(state, tree, CFolder(), TreeItem::none);

    EXPECT_TRUE(tree.items.empty());
    EXPECT_TRUE(state.folders.empty());
}

TEST_F(FolderTree, MarksCheckedAndPartlyCheckedFoldersAsSelected)
{
    for (const wchar_t* name : {L"A", L"B", L"C"})
        store.root.AddFolder(name);
    LoadTree();
    tree.At(state.folders[0].treeItem).check = CheckState::partlyChecked;
    tree.At(state.folders[1].treeItem).check = CheckState::unchecked;
    tree.At(state.folders[2].treeItem).check = CheckState::none;

    MarkSelectedFolders(state, tree);

    EXPECT_EQ(state.folders[0].selected, 1);
    EXPECT_EQ(state.folders[1].selected, 0);
    EXPECT_EQ(state.folders[2].selected, 0);
    EXPECT_EQ(state.folders[3].selected, 1);
}

TEST_F(FolderTree, StillReadsItsOwnTreeAfterAnotherHasDrawnTheFolders)
{
    store.root.AddFolder(L"A");
    store.root.AddFolder(L"B");
    LoadTree();
    tree.At(state.folders[1].checkItem).check = CheckState::unchecked;
    std::swap(state.folders[1].treeItem, state.folders[2].treeItem);

    MarkSelectedFolders(state, tree);

    EXPECT_EQ(state.folders[0].selected, 1);
    EXPECT_EQ(state.folders[1].selected, 0);
    EXPECT_EQ(state.folders[2].selected, 1);
}

TEST_F(FolderTree, LeavesTheSelectionAloneWhenStopped)
{
    store.root.AddFolder(L"A");
    LoadTree();
    tree.At(state.folders[1].treeItem).check = CheckState::unchecked;
    state.stopRequested = 1;

    MarkSelectedFolders(state, tree);

    EXPECT_EQ(state.folders[1].selected, 1);
}
}    // namespace
