// The registered server over a store file, the way a client in another module meets it.
#include "tests/quorvex/ServerFixture.h"

#include <algorithm>
#include <thread>

namespace
{
TEST_F(Server, ShowsTheFoldersOfANewStoreWithWhatTheyHold)
{
    LogOn();
    const auto folders = TopFolders();

    std::vector<std::pair<std::wstring, long>> listed;
    const long count = automation::LongOf(automation::Get(folders.Get(), dispid::folderCollection::count));
    for (long i = 1; i <= count; ++i)
    {
        const auto folder =
            automation::ObjectOf(automation::Call(folders.Get(), dispid::folderCollection::item, {i}));
        listed.emplace_back(
            automation::TextOf(automation::Get(folder.Get(), dispid::folder::name)),
            automation::LongOf(automation::Get(folder.Get(), dispid::folder::defaultItemType)));
    }

    std::ranges::sort(listed);
    EXPECT_EQ(listed, (std::vector<std::pair<std::wstring, long>>{{L"Calendar", 1},
                                                                  {L"Contacts", 2},
                                                                  {L"Deleted Items", 0},
                                                                  {L"Inbox", 0},
                                                                  {L"Journal", 4},
                                                                  {L"Notes", 5},
                                                                  {L"Outbox", 0},
                                                                  {L"Sent Items", 0},
                                                                  {L"Tasks", 3}}));
}

TEST_F(Server, ReadsAMessageWhole)
{
    const std::string body(100'000, 'x');
    store.AddMessage(1, inboxId, "Gr\xC3\xBC\xC3\x9F Gott", body);
    LogOn();
    const auto item = Item(L"Inbox", 1);

    EXPECT_EQ(automation::TextOf(automation::Get(item.Get(), dispid::mailItem::subject)),
              L"Gr\x00FC\x00DF Gott");
    EXPECT_EQ(automation::TextOf(automation::Get(item.Get(), dispid::mailItem::bodyText)),
              std::wstring(body.begin(), body.end()));
    EXPECT_EQ(automation::TextOf(automation::Get(item.Get(), dispid::mailItem::senderEmail)),
              L"ann@example.org");
    EXPECT_EQ(automation::TextOf(automation::Get(item.Get(), dispid::mailItem::senderName)), L"Ann");
    EXPECT_EQ(automation::Get(item.Get(), dispid::mailItem::field, {0x007D001EL}).vt, VT_BSTR);
    const auto recipients = automation::ObjectOf(automation::Get(item.Get(), dispid::mailItem::recipients));
    const auto bob =
        automation::ObjectOf(automation::Get(recipients.Get(), dispid::recipientCollection::item, {1L}));
    EXPECT_EQ(automation::TextOf(automation::Get(bob.Get(), dispid::recipient::name)), L"Bob");
    const auto attachments = automation::ObjectOf(automation::Get(item.Get(), dispid::mailItem::attachments));
    const auto map =
        automation::ObjectOf(automation::Get(attachments.Get(), dispid::attachmentCollection::item, {1L}));
    EXPECT_EQ(automation::TextOf(automation::Get(map.Get(), dispid::attachment::fileName)), L"map.png");
}

TEST_F(Server, FindsEqualMessagesThroughTheItemTable)
{
    store.AddMessage(1, inboxId, "Minutes", "We met.");
    store.AddMessage(2, inboxId, "Minutes", "We did not meet.");
    store.AddMessage(3, inboxId, "Minutes", "We met.");
    LogOn();
    const auto items = Items(L"Inbox");
    const auto table = automation::ObjectOf(automation::Get(items.Get(), dispid::itemCollection::table));
    const auto filter = automation::ObjectOf(automation::Get(table.Get(), dispid::itemTable::filter));
    const auto all =
        automation::ObjectOf(automation::Call(filter.Get(), dispid::tableFilter::setRestriction, {0L}));
    const auto add = [&](ULONG tag, const wchar_t* value)
    {
        const auto condition =
            automation::ObjectOf(automation::Call(all.Get(), dispid::andRestriction::add, {4L}));
        automation::Put(condition.Get(), dispid::propertyRestriction::relop, 4L);
        automation::Put(condition.Get(), dispid::propertyRestriction::propTag, static_cast<long>(tag));
        automation::Put(condition.Get(), dispid::propertyRestriction::value, value);
    };
    add(PR_SUBJECT_W, L"Minutes");
    add(PR_BODY_W, L"We met.");

    int found = 0;
    for (_variant_t more = automation::Call(filter.Get(), dispid::tableFilter::findFirst, {true});
         more.boolVal == VARIANT_TRUE;
         more = automation::Call(filter.Get(), dispid::tableFilter::findNext, {true}))
        ++found;

    EXPECT_EQ(found, 2);
}

TEST_F(Server, KeepsAFlagInTheStore)
{
    store.AddMessage(1, inboxId, "Minutes", "We met.");
    LogOn();
    const auto item = Item(L"Inbox", 1);

    automation::Put(item.Get(), dispid::mailItem::flagStatus, 2L);
    automation::Put(item.Get(), dispid::mailItem::flagText, L"Duplicate Mail");
    automation::Call(item.Get(), dispid::mailItem::save);

    EXPECT_EQ(store.Ask("SELECT flag_status FROM message WHERE id = 1"), "2");
    EXPECT_EQ(
        store.Ask("SELECT value FROM message_property JOIN named_property ON tag >> 16 = named_property.id "
                  "WHERE message_id = 1 AND lid = 0x8530"),
        "Duplicate Mail");
}

TEST_F(Server, MovesCopiesAndDeletesInTheStore)
{
    for (int id = 1; id <= 4; ++id)
        store.AddMessage(id, inboxId, "Number " + std::to_string(id), "Text");
    LogOn();
    const auto items = Items(L"Inbox");
    const auto target = Folder(L"Outbox");
    const auto at = [&](long place)
    { return automation::ObjectOf(automation::Call(items.Get(), dispid::itemCollection::item, {place})); };

    const auto moved = automation::ObjectOf(
        automation::Call(at(1).Get(), dispid::mailItem::moveTo, {_variant_t(target.Get())}));
    automation::Call(at(2).Get(), dispid::mailItem::copyTo, {_variant_t(target.Get())});
    automation::Call(at(3).Get(), dispid::mailItem::deleteItem, {1L});
    automation::Call(at(4).Get(), dispid::mailItem::deleteItem, {0L});

    EXPECT_EQ(automation::TextOf(automation::Get(moved.Get(), dispid::mailItem::subject)), L"Number 1");
    EXPECT_EQ(store.Ask("SELECT group_concat(subject) FROM message WHERE folder_id = 3"), "Number 2");
    EXPECT_EQ(store.Ask("SELECT group_concat(subject) FROM (SELECT subject FROM message WHERE folder_id = 4 "
                        "ORDER BY subject)"),
              "Number 1,Number 2");
    EXPECT_EQ(store.Ask("SELECT group_concat(subject) FROM message WHERE folder_id = " +
                        std::to_string(deletedItemsId)),
              "Number 3");
}

TEST_F(Server, ServesAThreadThatKnowsNothingOfCom)
{
    store.AddMessage(1, inboxId, "Minutes", "We met.");
    LogOn();
    std::wstring subject;

    std::thread(
        [&] {
            subject = automation::TextOf(automation::Get(Item(L"Inbox", 1).Get(), dispid::mailItem::subject));
        })
        .join();

    EXPECT_EQ(subject, L"Minutes");
}

TEST_F(Server, HoldsNothingWhenItsClientHasLetGo)
{
    store.AddMessage(1, inboxId, "Minutes", "We met.");
    LogOn();
    Item(L"Inbox", 1);
    session.Reset();

    const HMODULE module = GetModuleHandleW(L"QuorvexDll.dll");
    ASSERT_TRUE(module);
    using CanUnloadNow = HRESULT(WINAPI*)();
    const auto canUnload = reinterpret_cast<CanUnloadNow>(
        reinterpret_cast<void (*)()>(GetProcAddress(module, "DllCanUnloadNow")));

    EXPECT_EQ(canUnload(), S_OK);
}

TEST_F(Server, SaysWhichStoreCannotBeOpened)
{
    SetEnvironmentVariableW(L"LOCALMAPI_STORE", L"Z:\\no\\such\\folder\\mail.db");
    LogOn();
    const auto stores = automation::ObjectOf(automation::Get(session.Get(), dispid::session::stores));

    const auto outcome =
        automation::Invoke(stores.Get(), dispid::storeCollection::defaultStore, DISPATCH_PROPERTYGET);

    EXPECT_EQ(outcome.result, DISP_E_EXCEPTION);
    EXPECT_NE(outcome.description.find(L"mail.db"), std::wstring::npos)
        << std::string(outcome.description.begin(), outcome.description.end());
}
}    // namespace
