#pragma once

#include "contracts/DispatchIds.h"
#include "quorvex/DispatchObject.h"
#include "quorvex/Module.h"
#include "quorvex/RdoSession.h"
#include "tests/quorvex/Automation.h"
#include "tests/quorvex/FakeSession.h"

#include <windows.h>

#include <mapitags.h>

#include <gtest/gtest.h>

// A logged-on session over a fake store: the root, and below it the top of what a user sees with an Inbox, an
// archive and Deleted Items.
class SessionFixture : public testing::Test
{
protected:
    SessionFixture()
    {
        root = fake::AddFolder(*store, nullptr, L"Root");
        top = fake::AddFolder(*store, root.get(), L"Top");
        inbox = fake::AddFolder(*store, top.get(), L"Inbox", L"IPF.Note");
        archive = fake::AddFolder(*store, top.get(), L"Archive");
        deletedItems = fake::AddFolder(*store, top.get(), L"Deleted Items", L"IPF.Note");
        store->properties[PR_IPM_SUBTREE_ENTRYID] = top->entryId;
        store->properties[PR_IPM_WASTEBASKET_ENTRYID] = deletedItems->entryId;
    }
    ~SessionFixture() override
    {
        session.Reset();
        EXPECT_EQ(Module::count, objectsBefore);
        EXPECT_EQ(fake::LiveObjects::count, fakesBefore);
        EXPECT_EQ(FakeMapiMemory::Outstanding(), buffersBefore);
    }

    void LogOn()
    {
        automation::Call(session.Get(), dispid::session::logOn,
                         {L"", 0L, automation::Missing(), automation::Missing(), 0L, automation::Missing()});
    }

    ComPtr<IDispatch> DefaultStore()
    {
        const auto stores = automation::ObjectOf(automation::Get(session.Get(), dispid::session::stores));
        return automation::ObjectOf(automation::Get(stores.Get(), dispid::storeCollection::defaultStore));
    }

    // The folder of that place (from 1) below the top of the visible folders.
    ComPtr<IDispatch> FolderBelowTop(long place)
    {
        const auto rootFolder =
            automation::ObjectOf(automation::Get(DefaultStore().Get(), dispid::store::rootFolder));
        const auto folders = automation::ObjectOf(automation::Get(rootFolder.Get(), dispid::folder::folders));
        return automation::ObjectOf(automation::Call(folders.Get(), dispid::folderCollection::item, {place}));
    }
    ComPtr<IDispatch> Inbox() { return FolderBelowTop(1); }
    ComPtr<IDispatch> Archive() { return FolderBelowTop(2); }
    ComPtr<IDispatch> DeletedItems() { return FolderBelowTop(3); }

    ComPtr<IDispatch> Items(const ComPtr<IDispatch>& folder)
    {
        return automation::ObjectOf(automation::Get(folder.Get(), dispid::folder::items));
    }
    ComPtr<IDispatch> ItemOfInbox(long place)
    {
        return automation::ObjectOf(
            automation::Call(Items(Inbox()).Get(), dispid::itemCollection::item, {place}));
    }

    const long objectsBefore = Module::count;
    const long fakesBefore = fake::LiveObjects::count;
    const std::size_t buffersBefore = FakeMapiMemory::Outstanding();
    std::shared_ptr<fake::MailStore> store = std::make_shared<fake::MailStore>();
    std::shared_ptr<fake::Folder> root, top, inbox, archive, deletedItems;
    fake::FakeMapiSession mapi{store};
    ComPtr<IDispatch> session = MakeObject<CRdoSession>();
};
