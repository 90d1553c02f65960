#include "explorer/MainWindow.h"

#include "explorer/Metrics.h"
#include "explorer/ReadingText.h"
#include "explorer/resource.h"
#include "win/OleException.h"
#include "win/WindowBoundary.h"

#include <windows.h>

#include <commctrl.h>

#include <utility>

// What the window does with the mail store.

namespace
{
constexpr wchar_t howToMakeAStore[] =
    L"There is no mail store to show.\n\n"
    L"Make one from mail of your own (an mbox file, a Maildir or a folder of .eml files):\n\n"
    L"        mailimport mail.db MAIL...\n\n"
    L"and name its file in the environment variable LOCALMAPI_STORE when you start this program. "
    L"LocalMapi.dll has "
    L"to be registered (regsvr32 LocalMapi.dll).\n\n"
    L"View, Refresh tries again.";
}    // namespace

void CMainWindow::OpenStore()
{
    try
    {
        store = std::make_unique<MailStore>();
        Refresh();
        SetWindowText(store->GetName() + L" - Mail Explorer");
    }
    catch (const COleException& failure)
    {
        store.reset();
        ShowNotice(std::wstring(howToMakeAStore) + L"\n\nThe mail system says: " + DescribeFailure(failure) +
                   L'.');
    }
}

void CMainWindow::ShowNotice(const std::wstring& text)
{
    notice.SetWindowText(text);
    status.SetWindowText(L"No mail store");
    LayOut();
}

void CMainWindow::Refresh()
{
    // Reading may run a message loop of the store's own; a second click has to wait its turn.
    if (std::exchange(refreshing, true))
        return;
    struct Done
    {
        bool& flag;
        ~Done() { flag = false; }
    } done{refreshing};
    folders.Show(store->ReadFolders());
    const MailFolder* selected = folders.GetSelected();
    ShowFolder(selected && selected->id == shownFolder);
    LayOut();
}

LRESULT CMainWindow::OnFolderChanged(NMHDR&)
{
    if (!refreshing)
        ShowFolder(false);
    return 0;
}

void CMainWindow::ShowFolder(bool again)
{
    const MailFolder* selected = folders.GetSelected();
    shownFolder = selected && store ? selected->id : EntryId();
    MessageTable table = shownFolder.empty() ? MessageTable() : store->OpenMessages(shownFolder);
    if (again)
        messages.ShowAgain(std::move(table));
    else
        messages.Show(std::move(table));
    ShowMessage();
    ShowStatus();
}

void CMainWindow::ShowStatus()
{
    const MailFolder* selected = folders.GetSelected();
    if (!selected)
        return status.SetWindowText(L"");
    const int count = messages.GetItemCount();
    std::wstring text =
        selected->name + L": " + std::to_wstring(count) + (count == 1 ? L" message" : L" messages");
    if (selected->unread > 0)
        text += L", " + std::to_wstring(selected->unread) + L" unread";
    status.SetWindowText(text);
}

LRESULT CMainWindow::OnMessageChanged(NMHDR& notification)
{
    const auto& change = reinterpret_cast<const NMLISTVIEW&>(notification);
    const bool selection = ((change.uOldState ^ change.uNewState) & LVIS_SELECTED) != 0;
    if (selection && !refreshing)
        ShowMessage();
    return 0;
}

void CMainWindow::ShowMessage()
{
    const auto selected = messages.GetSelected();
    if (!selected || selected->id.empty() || !store)
        return reading.SetWindowText(L"");
    try
    {
        reading.SetWindowText(ReadingText(*selected, store->ReadText(selected->id)));
    }
    catch (const COleException& failure)
    {
        // Another program may have deleted it since the list was read.
        reading.SetWindowText(DescribeFailure(failure));
    }
}

LRESULT CMainWindow::OnGetMessage(NMHDR& notification)
{
    messages.FillItem(reinterpret_cast<NMLVDISPINFOW&>(notification).item);
    return 0;
}

LRESULT CMainWindow::OnDrawMessage(NMHDR& notification)
{
    return messages.Draw(reinterpret_cast<NMLVCUSTOMDRAW&>(notification));
}

LRESULT CMainWindow::OnHeadingClick(NMHDR& notification)
{
    messages.SortBy(reinterpret_cast<const NMLISTVIEW&>(notification).iSubItem);
    return 0;
}
