#pragma once

#include "res/resource.h"
#include "tests/engine/FakeStore.h"
#include "tests/ui/ModalDriver.h"
#include "tests/ui/ServedSession.h"
#include "ui/DuplicateRemoverDlg.h"
#include "win/TreeCtrl.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

// The wizard's first page over a session of the test's own.
class MainPage : public testing::Test
{
protected:
    static constexpr wchar_t productTitle[] = L"Talmore Quorvex Outlook Duplicate Remover";

    FakeStore store;
    bool serves = true;
    ServedSession served{[this] { return serves ? store.MakeSession() : CRDOSession(); }};
    std::vector<std::pair<HWND, std::wstring>> helpShown;

    MainPage()
    {
        FakeFolder& inbox = store.root.AddFolder(L"Inbox");
        inbox.AddMessage();
        inbox.AddMessage();
        inbox.AddFolder(L"Lists").AddMessage({.subject = L"Other"});
        store.root.AddFolder(L"Calendar", 1);
    }

    // Opens the page and lets `user` use it; what the page ended with.
    INT_PTR Use(const ModalDriver::Script& script, bool exchangeProfile = false)
    {
        ModalDriver user(script);
        CDuplicateRemoverDlg page(exchangeProfile, [this](HWND owner, const std::wstring& file)
                                  { helpShown.emplace_back(owner, file); });
        const INT_PTR result = page.DoModal();
        user.Join();
        return result;
    }
    // The same with a page whose tree is loaded.
    INT_PTR UseLoaded(const std::function<void(ModalDriver& user, HWND page)>& script,
                      bool exchangeProfile = false)
    {
        return Use(
            [&](ModalDriver& user)
            {
                const HWND page = WaitForPage(user);
                WaitUntilLoaded(user, page);
                script(user, page);
            },
            exchangeProfile);
    }

    static HWND WaitForPage(ModalDriver& user) { return user.WaitForDialog(productTitle, IDC_FOLDER_TREE); }
    static void WaitUntilLoaded(ModalDriver& user, HWND page)
    {
        user.WaitUntil([&] { return IsEnabled(page, IDOK) && !IsShown(page, IDC_PLEASE_WAIT); }, "the tree");
    }
    static bool IsEnabled(HWND page, int control) { return ::IsWindowEnabled(::GetDlgItem(page, control)); }
    static bool IsShown(HWND page, int control) { return ::IsWindowVisible(::GetDlgItem(page, control)); }

    struct Tree : CTreeCtrl
    {
        explicit Tree(HWND page) { Attach(::GetDlgItem(page, IDC_FOLDER_TREE)); }
    };
    // "text:check" of every item, in the order of the tree.
    static std::vector<std::wstring> ItemsOf(HWND page)
    {
        const Tree tree(page);
        std::vector<std::wstring> items;
        const std::function<void(HTREEITEM)> add = [&](HTREEITEM item)
        {
            for (; item; item = tree.GetNextSiblingItem(item))
            {
                items.push_back(tree.GetItemText(item) + L":" + std::to_wstring(tree.GetCheckIndex(item)));
                add(tree.GetChildItem(item));
            }
        };
        add(tree.GetRootItem());
        return items;
    }
    static void SetCheckOfAll(HWND page, int index)
    {
        const Tree tree(page);
        const std::function<void(HTREEITEM)> set = [&](HTREEITEM item)
        {
            for (; item; item = tree.GetNextSiblingItem(item))
            {
                tree.SetCheckIndex(item, index);
                set(tree.GetChildItem(item));
            }
        };
        set(tree.GetRootItem());
    }
};
