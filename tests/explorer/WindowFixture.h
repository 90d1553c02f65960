#pragma once

#include "explorer/MainWindow.h"
#include "explorer/office/ModelObject.h"
#include "explorer/resource.h"
#include "tests/console/MailFile.h"
#include "tests/explorer/TestAddIn.h"
#include "win/ComInitialization.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

// Handles this thread's messages until the condition holds; false when it does not within some seconds.
inline bool PumpUntil(const std::function<bool()>& condition)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    for (MSG message{};;)
    {
        while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        {
            ::TranslateMessage(&message);
            ::DispatchMessageW(&message);
        }
        if (condition())
            return true;
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
    }
}

// A control of the window's.
template <typename Control>
class AttachedControl : public Control
{
public:
    explicit AttachedControl(HWND window) { this->Attach(window); }
};

// The real window over a store file of the test's own.
class WindowFixture : public testing::Test
{
protected:
    WindowFixture() { ::SetEnvironmentVariableW(L"LOCALMAPI_STORE", file.GetPath().c_str()); }
    ~WindowFixture() override
    {
        window.reset();
        ::SetEnvironmentVariableW(L"LOCALMAPI_STORE", nullptr);
        EXPECT_EQ(CountedObject::GetCount(), 0);
    }

    void Open(bool withStore = true)
    {
        window = std::make_unique<CMainWindow>();
        window->LoadAddIns();
        if (withStore)
            window->OpenStore();
        window->Show(SW_SHOWNOACTIVATE);
        PumpUntil([] { return true; });
    }

    HWND Child(int id) const { return ::GetDlgItem(window->GetSafeHwnd(), id); }
    std::wstring TextOfChild(int id) const { return AttachedControl<CWnd>(Child(id)).GetWindowText(); }
    auto Messages() const { return AttachedControl<CListCtrl>(Child(IDC_MESSAGES)); }
    auto Folders() const { return AttachedControl<CTreeCtrl>(Child(IDC_FOLDERS)); }
    void SelectFolder(const std::wstring& name) const    // of those at the top
    {
        const auto folders = Folders();
        for (HTREEITEM item = folders.GetRootItem(); item; item = folders.GetNextSiblingItem(item))
            if (folders.GetItemText(item).starts_with(name))
                folders.SelectItem(item);
    }
    std::size_t PlaceOfTheAddIn() const
    {
        const auto& all = window->GetAddIns().GetAddIns();
        for (std::size_t place = 0; place < all.size(); ++place)
            if (all[place].GetEntry().progId == RegisteredAddIn::progId)
                return place;
        throw std::runtime_error("the add-in is not listed");
    }
    const AddIn& AddInOfTheTests() const { return window->GetAddIns().GetAddIns().at(PlaceOfTheAddIn()); }

    const ComInitialization com;
    MailFile file;
    AddInScript script;    // outlives the window, and with it the add-in
    std::unique_ptr<CMainWindow> window;
};
