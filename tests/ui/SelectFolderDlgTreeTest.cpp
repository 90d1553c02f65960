#include "tests/ui/SelectFolderDlgFixture.h"

#include <windows.h>

#include <commctrl.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <utility>
#include <vector>

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
class DestinationTree : public DestinationPicker
{
protected:
    static bool IsExpanded(const CTreeCtrl& tree, const Texts& path)
    {
        return tree.GetItemState(ItemAt(tree, path), TVIS_EXPANDED) != 0;
    }
    static int ImageOf(const CTreeCtrl& tree, HTREEITEM item, UINT mask)
    {
        TVITEMW wanted{};
        wanted.mask = mask;
        wanted.hItem = item;
        tree.SendMessage(TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&wanted));
        return mask == TVIF_IMAGE ? wanted.iImage : wanted.iSelectedImage;
    }
};

TEST_F(DestinationTree, ShowsEachFolderInItsOwnParentAlsoWhenTwoHaveTheSameName)
{
    FakeFolder& root = AddStore(L"Mailbox");
    FakeFolder& work = AddFolder(root, L"Work");
    FakeFolder& home = AddFolder(root, L"Home");
    AddFolder(home, L"Archive");
    AddFolder(work, L"Archive");
    AddFolder(home, L"Bills");

    Look(
        [&](HWND, const CTreeCtrl& tree)
        {
            EXPECT_THAT(ChildTextsOf(tree, ItemAt(tree, {L"Mailbox", L"Work"})), ElementsAre(L"Archive"));
            EXPECT_THAT(ChildTextsOf(tree, ItemAt(tree, {L"Mailbox", L"Home"})),
                        ElementsAre(L"Archive", L"Bills"));
        });
}

TEST_F(DestinationTree, SortsTheTopLevelFoldersAndLeavesTheOthersInTheListsOrder)
{
    FakeFolder& pine = AddStore(L"Pine");
    AddFolder(pine, L"Zebra");
    AddFolder(pine, L"Ant");
    AddStore(L"ash");
    AddStore(L"Oak");

    Look(
        [&](HWND, const CTreeCtrl& tree)
        {
            EXPECT_THAT(ChildTextsOf(tree, nullptr), ElementsAre(L"ash", L"Oak", L"Pine"));
            EXPECT_THAT(ChildTextsOf(tree, ItemAt(tree, {L"Pine"})), ElementsAre(L"Zebra", L"Ant"));
        });
}

TEST_F(DestinationTree, IsWholeExpandedForOneStore)
{
    FakeFolder& inbox = AddFolder(AddStore(L"Mailbox"), L"Inbox");
    AddFolder(AddFolder(inbox, L"Lists"), L"Old");

    Look(
        [&](HWND, const CTreeCtrl& tree)
        {
            EXPECT_TRUE(IsExpanded(tree, {L"Mailbox"}));
            EXPECT_TRUE(IsExpanded(tree, {L"Mailbox", L"Inbox"}));
            EXPECT_TRUE(IsExpanded(tree, {L"Mailbox", L"Inbox", L"Lists"}));
        });
}

TEST_F(DestinationTree, IsExpandedBelowTheLastTopLevelFolderOfTheListOnly)
{
    AddFolder(AddStore(L"Beech"), L"Inbox");
    AddFolder(AddStore(L"Ash"), L"Inbox");
    AddFolder(AddStore(L"Cedar"), L"Inbox");
    std::swap(state.folders[2], state.folders[4]);
    std::swap(state.folders[3], state.folders[5]);

    Look(
        [&](HWND, const CTreeCtrl& tree)
        {
            EXPECT_TRUE(IsExpanded(tree, {L"Ash"}));
            EXPECT_FALSE(IsExpanded(tree, {L"Beech"}));
            EXPECT_FALSE(IsExpanded(tree, {L"Cedar"}));
        });
}

TEST_F(DestinationTree, IsScrolledToTheLastTopLevelFolder)
{
    for (int i = 100; i < 160; ++i)
        AddStore(L"Store " + std::to_wstring(i));

    Look(
        [&](HWND, const CTreeCtrl& tree)
        {
            const RECT place = tree.GetItemRect(ItemAt(tree, {L"Store 159"}), true);
            RECT shown{};
            ::GetClientRect(tree.GetSafeHwnd(), &shown);
            EXPECT_GT(place.bottom, place.top);
            EXPECT_GE(place.top, 0);
            EXPECT_LE(place.bottom, shown.bottom);
        });
}

TEST_F(DestinationTree, GivesEachKindOfFolderItsImageSelectedOrNot)
{
    const std::vector<int> images{10, 5, 6, 9, 7, 8, 10, 6, 10};
    FakeFolder& root = AddStore(L"Mailbox");
    for (LONG type = 0; type < 9; ++type)
        AddFolder(root, std::to_wstring(type), type);

    Look(
        [&](HWND, const CTreeCtrl& tree)
        {
            for (std::size_t type = 0; type < images.size(); ++type)
            {
                const HTREEITEM item = ItemAt(tree, {L"Mailbox", std::to_wstring(type)});
                EXPECT_EQ(ImageOf(tree, item, TVIF_IMAGE), images[type]) << "item type " << type;
                EXPECT_EQ(ImageOf(tree, item, TVIF_SELECTEDIMAGE), images[type]) << "item type " << type;
            }
        });
}

TEST_F(DestinationTree, ShowsAFolderWhoseParentIsNotListedAtTheRootBehindTheOthers)
{
    FakeFolder lost{L"Another mailbox"};
    lost.id = L"77";
    AddStore(L"Mailbox");
    AddFolder(lost, L"A stray");

    Look([&](HWND, const CTreeCtrl& tree)
         { EXPECT_THAT(ChildTextsOf(tree, nullptr), ElementsAre(L"Mailbox", L"A stray")); });
}

TEST_F(DestinationTree, TellsIdsApartThatDifferInCaseOnly)
{
    AddFolder(AddStore(L"Mailbox"), L"Inbox");
    state.folders[0].entryId = L"0A";
    state.folders[1].parentEntryId = L"0a";

    Look([&](HWND, const CTreeCtrl& tree)
         { EXPECT_THAT(ChildTextsOf(tree, nullptr), ElementsAre(L"Mailbox", L"Inbox")); });
}

TEST_F(DestinationTree, TakesTheFirstFolderOfTheListThatHasTheParentsId)
{
    FakeFolder& first = AddStore(L"First");
    AddStore(L"Second");
    AddFolder(first, L"Inbox");
    state.folders[1].entryId = state.folders[0].entryId;

    Look([&](HWND, const CTreeCtrl& tree)
         { EXPECT_THAT(ChildTextsOf(tree, ItemAt(tree, {L"First"})), ElementsAre(L"Inbox")); });
}

TEST_F(DestinationTree, ShowsAFolderListedBeforeItsParentAtTheRootWhateverWasShownBefore)
{
    AddFolder(AddStore(L"Mailbox"), L"Inbox");
    Look([](HWND, const CTreeCtrl&) {});
    std::swap(state.folders[0], state.folders[1]);

    Look([&](HWND, const CTreeCtrl& tree)
         { EXPECT_THAT(ChildTextsOf(tree, nullptr), ElementsAre(L"Inbox", L"Mailbox")); });
}

TEST_F(DestinationTree, IsEmptyWithoutFolders)
{
    Look(
        [&](HWND picker, const CTreeCtrl& tree)
        {
            EXPECT_THAT(ChildTextsOf(tree, nullptr), IsEmpty());
            EXPECT_FALSE(IsOkEnabled(picker));
        });
}

TEST_F(DestinationTree, AsksTheStoreForTheItemTypeOfEachFolderAndNothingElse)
{
    FakeFolder& root = AddStore(L"Mailbox");
    for (int i = 0; i < 20; ++i)
        AddFolder(root, std::to_wstring(i));
    std::vector<std::string> calls;

    // Before the first item is selected, which asks again.
    store.log.onCall = [&](const std::string& line)
    {
        if (calls.size() < state.folders.size())
            calls.push_back(line);
    };
    Look([](HWND, const CTreeCtrl&) {});

    EXPECT_EQ(calls.size(), 21u);
    EXPECT_THAT(calls, Each("Folder 22 get()"));
    EXPECT_LE(store.log.lines.size(), 22u);
}

TEST_F(DestinationTree, LeavesItsItemsInTheRecords)
{
    AddFolder(AddStore(L"Mailbox"), L"Inbox");

    Look(
        [&](HWND, const CTreeCtrl& tree)
        {
            EXPECT_EQ(state.folders[0].treeItem, ToTreeItem(ItemAt(tree, {L"Mailbox"})));
            EXPECT_EQ(state.folders[1].treeItem, ToTreeItem(ItemAt(tree, {L"Mailbox", L"Inbox"})));
        });
}

TEST_F(DestinationTree, LeavesTheUsersTicksAlone)
{
    for (const wchar_t* name : {L"Inbox", L"Drafts", L"Sent"})
        store.root.AddFolder(name);
    LoadTree();
    tree.At(state.folders[2].checkItem).check = CheckState::unchecked;

    Look([](HWND, const CTreeCtrl&) {});
    MarkSelectedFolders(state, tree);

    EXPECT_EQ(state.folders[0].selected, 1);
    EXPECT_EQ(state.folders[1].selected, 1);
    EXPECT_EQ(state.folders[2].selected, 0);
    EXPECT_EQ(state.folders[3].selected, 1);
}

TEST_F(DestinationTree, HoldsFiveThousandFolders)
{
    FakeFolder& root = AddStore(L"Mailbox");
    for (int i = 0; i < 100; ++i)
    {
        FakeFolder& year = AddFolder(root, L"Year " + std::to_wstring(i));
        for (int j = 0; j < 49; ++j)
            AddFolder(year, L"Week " + std::to_wstring(j));
    }
    // As long as the ids of a real store, which differ at their ends only.
    for (FOLDER_INFO& record : state.folders)
        for (std::wstring* id : {&record.entryId, &record.parentEntryId})
            id->insert(0, 80, L'0');
    const auto start = std::chrono::steady_clock::now();

    Look(
        [&](HWND, const CTreeCtrl& tree)
        {
            const auto time = std::chrono::steady_clock::now() - start;
            RecordProperty("milliseconds", static_cast<int>(time / std::chrono::milliseconds(1)));
            EXPECT_EQ(tree.SendMessage(TVM_GETCOUNT), 5001);
            EXPECT_EQ(ChildTextsOf(tree, ItemAt(tree, {L"Mailbox", L"Year 99"})).size(), 49u);
        });
}
}    // namespace
