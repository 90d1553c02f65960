#include "quorvex/Folder.h"

#include "tests/quorvex/SessionFixture.h"

#include <mapicode.h>

namespace
{
class Folder : public SessionFixture
{
protected:
    Folder() { LogOn(); }

    long CountOf(const ComPtr<IDispatch>& items)
    {
        return automation::LongOf(automation::Get(items.Get(), dispid::itemCollection::count));
    }
};

TEST_F(Folder, TellsItsNameAndEntryId)
{
    EXPECT_EQ(automation::TextOf(automation::Get(Inbox().Get(), dispid::folder::name)), L"Inbox");
    EXPECT_EQ(automation::TextOf(automation::Get(Inbox().Get(), dispid::folder::entryId)),
              ToHex(inbox->entryId));
}

TEST_F(Folder, LeadsToTheFolderItLiesIn)
{
    const auto parent = automation::ObjectOf(automation::Get(Inbox().Get(), dispid::folder::parent));

    EXPECT_EQ(automation::TextOf(automation::Get(parent.Get(), dispid::folder::entryId)),
              ToHex(top->entryId));
}

TEST_F(Folder, ListsItsSubFoldersInTheHierarchysOrder)
{
    const auto parent = automation::ObjectOf(automation::Get(Inbox().Get(), dispid::folder::parent));
    const auto folders = automation::ObjectOf(automation::Get(parent.Get(), dispid::folder::folders));

    std::vector<std::wstring> names;
    for (long i = 1; i <= automation::LongOf(automation::Get(folders.Get(), dispid::folderCollection::count));
         ++i)
    {
        const auto folder =
            automation::ObjectOf(automation::Call(folders.Get(), dispid::folderCollection::item, {i}));
        names.push_back(automation::TextOf(automation::Get(folder.Get(), dispid::folder::name)));
    }

    EXPECT_EQ(names, (std::vector<std::wstring>{L"Inbox", L"Archive", L"Deleted Items"}));
}

TEST_F(Folder, HasNoSubFolderOutsideItsCount)
{
    const auto folders = automation::ObjectOf(automation::Get(Inbox().Get(), dispid::folder::folders));

    for (const long index : {-1L, 0L, 1L})
        EXPECT_EQ(automation::Invoke(folders.Get(), dispid::folderCollection::item, DISPATCH_METHOD, {index})
                      .result,
                  DISP_E_BADINDEX);
    EXPECT_EQ(
        automation::Invoke(folders.Get(), dispid::folderCollection::item, DISPATCH_METHOD, {L"Inbox"}).result,
        DISP_E_TYPEMISMATCH);
}

TEST_F(Folder, CountsItsMessagesWithoutReadingTheirRows)
{
    fake::AddStoredMessage(*inbox, {});
    fake::AddStoredMessage(*inbox, {});
    const auto items = Items(Inbox());
    const std::size_t rowsBefore = store->counters->rowsRead;

    EXPECT_EQ(CountOf(items), 2);

    EXPECT_EQ(store->counters->rowsRead, rowsBefore);
}

TEST_F(Folder, KeepsTheMessagesItOnceListed)
{
    const auto first = fake::AddStoredMessage(*inbox, {});
    const auto items = Items(Inbox());
    automation::Call(items.Get(), dispid::itemCollection::item, {1L});

    fake::AddStoredMessage(*inbox, {});

    EXPECT_EQ(CountOf(items), 1);
    const auto item = automation::ObjectOf(automation::Call(items.Get(), dispid::itemCollection::item, {1L}));
    EXPECT_EQ(automation::TextOf(automation::Get(item.Get(), dispid::mailItem::entryId)),
              ToHex(first->entryId));
}

TEST_F(Folder, HasNoMessageOutsideItsCount)
{
    fake::AddStoredMessage(*inbox, {});
    const auto items = Items(Inbox());

    for (const long index : {0L, 2L})
        EXPECT_EQ(
            automation::Invoke(items.Get(), dispid::itemCollection::item, DISPATCH_METHOD, {index}).result,
            DISP_E_BADINDEX);
}

TEST_F(Folder, TakesAnIndexOfAnyNumericType)
{
    fake::AddStoredMessage(*inbox, {});
    const auto items = Items(Inbox());

    for (const _variant_t& index : {_variant_t(1.0), _variant_t(L"1"), _variant_t(short{1})})
        EXPECT_EQ(
            automation::Invoke(items.Get(), dispid::itemCollection::item, DISPATCH_METHOD, {index}).result,
            S_OK);
}

TEST_F(Folder, HandsOutItsItemTable)
{
    const auto table = automation::Get(Items(Inbox()).Get(), dispid::itemCollection::table);

    EXPECT_TRUE(automation::ObjectOf(table));
}

TEST_F(Folder, PassesTheStoresOwnErrorTextOn)
{
    inbox->habits.getProps = MAPI_E_CORRUPT_DATA;
    inbox->habits.lastError = L"The store is damaged at page 7.";
    const auto parent =
        automation::ObjectOf(automation::Get(DefaultStore().Get(), dispid::store::rootFolder));
    const auto folders = automation::ObjectOf(automation::Get(parent.Get(), dispid::folder::folders));

    const auto outcome =
        automation::Invoke(folders.Get(), dispid::folderCollection::item, DISPATCH_METHOD, {1L});

    EXPECT_EQ(outcome.code, MAPI_E_CORRUPT_DATA);
    EXPECT_NE(outcome.description.find(L"damaged at page 7"), std::wstring::npos);
}

struct ClassAndType
{
    const wchar_t* containerClass;
    long type;
};

class ItemType : public testing::TestWithParam<ClassAndType>
{
};

TEST_P(ItemType, FollowsTheContainerClass)
{
    EXPECT_EQ(ItemTypeOf(GetParam().containerClass), GetParam().type);
}

INSTANTIATE_TEST_SUITE_P(ContainerClasses, ItemType,
                         testing::Values(ClassAndType{L"", 0}, ClassAndType{L"IPF.Note", 0},
                                         ClassAndType{L"IPF.Appointment", 1}, ClassAndType{L"IPF.Contact", 2},
                                         ClassAndType{L"IPF.Contact.MOC.QuickContacts", 2},
                                         ClassAndType{L"IPF.Contacts", 0}, ClassAndType{L"ipf.task", 3},
                                         ClassAndType{L"IPF.Journal", 4}, ClassAndType{L"IPF.StickyNote", 5},
                                         ClassAndType{L"IPF.DistList", 7}, ClassAndType{L"IPF.Imap", 0}));
}    // namespace
