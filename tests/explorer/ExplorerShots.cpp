// Shows the host's window with mail and an add-in, and its list of add-ins, so that pictures can be taken.
// For each it writes "ready NAME X Y WIDTH HEIGHT" (the window's rectangle in screen pixels), and keeps it
// until a line is read.

#include "explorer/MainWindow.h"
#include "explorer/resource.h"
#include "tests/console/MailFile.h"
#include "tests/explorer/TestAddIn.h"
#include "tests/ui/ModalDriver.h"
#include "win/ComInitialization.h"
#include "win/ListCtrl.h"

#include <windows.h>

#include <iostream>
#include <string>

namespace
{
void Shoot(const std::string& name, HWND window)
{
    ::RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    RECT place{};
    ::GetWindowRect(window, &place);
    std::cout << "ready " << name << ' ' << place.left << ' ' << place.top << ' ' << place.right - place.left
              << ' ' << place.bottom - place.top << std::endl;
    std::string line;
    std::getline(std::cin, line);
}

void Fill(MailFile& file)
{
    file.Add(
        {{.subject = "Minutes of the meeting",
          .body = "Dear all,\n\nhere are the minutes of Monday's meeting.\n\nAnn",
          .deliveryTime = 133'000'000'000'000'000},
         {.subject = "Minutes of the meeting", .deliveryTime = 133'000'100'000'000'000},
         {.subject = "Invoice 4711", .senderName = "Bookkeeping", .deliveryTime = 133'020'000'000'000'000},
         {.subject = "Lunch?", .senderName = "Zoe", .deliveryTime = 133'030'000'000'000'000}});
    file.Query("UPDATE message SET message_flags = 0 WHERE id = 4");
    file.Query("UPDATE message SET flag_status = 2, message_size = 48123 WHERE id = 2");
    file.Query("INSERT INTO message_property VALUES (3, 0x00150040, 133000000000000000)");
}

void HandleMessages()
{
    for (MSG message{}; ::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);)
        ::DispatchMessageW(&message);
}
}    // namespace

int main()
{
    const ComInitialization com;
    MailFile file;
    Fill(file);
    ::SetEnvironmentVariableW(L"LOCALMAPI_STORE", file.GetPath().c_str());
    AddInScript script;
    const RegisteredAddIn addIn(script);

    CMainWindow window;
    window.LoadAddIns();
    window.OpenStore();
    window.Show(SW_SHOW);
    HandleMessages();
    CListCtrl messages;
    messages.Attach(::GetDlgItem(window.GetSafeHwnd(), IDC_MESSAGES));
    messages.SetItemState(3, LVIS_SELECTED, LVIS_SELECTED);
    HandleMessages();
    Shoot("explorer", window.GetSafeHwnd());

    ModalDriver user(
        [](ModalDriver& self)
        {
            const HWND dialog = self.WaitForDialog(L"Add-ins");
            ModalDriver::RunOnThreadOf(dialog, [&] { Shoot("add-ins", dialog); });
            self.Click(dialog, IDCANCEL);
        });
    window.Press(L"Add-ins...");
    user.Join();
    return 0;
}
