#pragma once

#include "res/resource.h"
#include "tests/engine/ScanFixture.h"
#include "tests/ui/ModalDriver.h"
#include "ui/ProcessProgressDlg.h"
#include "win/KernelHandle.h"
#include "win/ListCtrl.h"

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

// Holds the job's thread back at the next call that it makes on the store, until it is opened.
class JobGate
{
public:
    explicit JobGate(FakeStore& store)
    {
        store.log.onCall = [this, user = ::GetCurrentThreadId()](const std::string&)
        {
            if (::GetCurrentThreadId() == user)
                return;
            ::SetEvent(reached.get());
            ::WaitForSingleObject(opened.get(), deadline);
        };
    }

    void Open() const { ::SetEvent(opened.get()); }
    bool IsReached() const { return ::WaitForSingleObject(reached.get(), 0) == WAIT_OBJECT_0; }

private:
    static constexpr DWORD deadline = 20000;    // milliseconds

    KernelHandle reached{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    KernelHandle opened{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
};

// The page of a run's results over a fake store, whose folders are all ticked, and its user.
class ProgressPage : public ScanFixture
{
protected:
    using UserOfPage = std::function<void(ModalDriver& user, HWND page)>;
    using Row = std::vector<std::wstring>;

    const std::wstring title = L"Talmore Quorvex Outlook Duplicate Remover";

    ProgressPage()
    {
        state.folderTree = &tree;
        state.actionFlag = 1;
        state.actionName = L"Mark with the flag";
    }

    // A folder with a message and that many duplicates of it.
    FakeFolder& AddFolder(const std::wstring& name, const std::wstring& subject, int duplicates)
    {
        FakeFolder& folder = store.root.AddFolder(name);
        for (int i = 0; i <= duplicates; ++i)
            folder.AddMessage({.subject = subject});
        return folder;
    }

    // Shows the page, which starts a run, while `script` uses it; returns what it ended with.
    INT_PTR Use(const UserOfPage& script)
    {
        LoadTree();
        CProcessProgressDlg dialog(state);
        return Use(dialog, script);
    }
    INT_PTR Use(CProcessProgressDlg& dialog, const UserOfPage& script)
    {
        ModalDriver user([&](ModalDriver& self) { script(self, self.WaitForDialog(title, IDC_SAVE_LOG)); });
        const INT_PTR result = dialog.DoModal();
        user.Join();
        return result;
    }

    // The message at the end of the run.
    HWND WaitForEndMessage(ModalDriver& user) const { return user.WaitForDialog(title, IDC_MESSAGE_TEXT); }

    // Dismisses it and waits until the run has ended.
    static void Dismiss(ModalDriver& user, HWND message, HWND page)
    {
        user.Click(message, IDOK);
        user.WaitUntil([&] { return ::IsWindowEnabled(::GetDlgItem(page, IDC_SAVE_LOG)) != FALSE; },
                       "the end of the run");
        // Answered when the page has done all that belongs to the end.
        ::SendMessageW(page, WM_NULL, 0, 0);
    }
    // All of it; what the message said.
    std::wstring WaitForTheEnd(ModalDriver& user, HWND page) const
    {
        const HWND message = WaitForEndMessage(user);
        std::wstring text = TextOf(::GetDlgItem(message, IDC_MESSAGE_TEXT));
        Dismiss(user, message, page);
        return text;
    }
    HWND WaitForQuestion(ModalDriver& user) const { return user.WaitForDialog(title, IDYES); }

    static std::vector<Row> RowsOf(HWND page)
    {
        CListCtrl list;
        list.Attach(::GetDlgItem(page, IDC_REPORT));
        std::vector<Row> rows;
        for (int row = 0; row < list.GetItemCount(); ++row)
            rows.push_back({list.GetItemText(row, 0), list.GetItemText(row, 1), list.GetItemText(row, 2)});
        return rows;
    }
};
