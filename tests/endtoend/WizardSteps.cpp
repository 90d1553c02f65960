#include "tests/endtoend/WizardSteps.h"

#include "res/resource.h"
#include "tests/endtoend/RemoteWindows.h"

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <map>
#include <utility>

namespace
{
// Where the save dialog takes the name, in the newer style and in the older one.
constexpr int fileNameList = 0x047C;
constexpr int fileNameField = 0x0480;

HWND WaitForPage(int control, const std::string& what)
{
    return WaitForWindow(
        [control](HWND window)
        { return IsDialog(window) && ::GetDlgItem(window, control) && ::IsWindowEnabled(window); },
        what);
}

// A message box, ours or the system's: a dialog without any control of a page.
bool IsMessage(HWND window)
{
    constexpr int ofPages[] = {IDC_FOLDER_TREE, IDC_TIME_SPAN, IDC_DESTINATION_TREE,
                               IDC_REPORT,      fileNameList,  fileNameField};
    const bool isPage = std::ranges::any_of(ofPages, [window](int control)
                                            { return ::GetDlgItem(window, control) != nullptr; });
    return IsDialog(window) && !isPage;
}

HWND WaitForMessage(const std::string& what)
{
    return WaitForWindow(&IsMessage, what);
}

// However long it takes, while the page shows that the run gets on.
void WaitForTheRun(HWND page)
{
    const HWND rows = ::GetDlgItem(page, IDC_REPORT);
    const HWND bar = ::GetDlgItem(page, IDC_PROGRESS);
    const auto progress = [=] {
        return std::pair(::SendMessageW(bar, PBM_GETPOS, 0, 0), ::SendMessageW(rows, LVM_GETITEMCOUNT, 0, 0));
    };
    for (auto before = progress(); !FindShownWindow(&IsMessage); before = progress())
        WaitUntil([&] { return FindShownWindow(&IsMessage) || progress() != before; }, "the run to get on");
}

void WaitUntilEnabled(HWND page, int control, const std::string& what)
{
    WaitUntil([=] { return ::IsWindowEnabled(::GetDlgItem(page, control)) != FALSE; }, what);
}

void ChooseAction(HWND settings, const std::wstring& name)
{
    static const std::map<std::wstring, int> actions{
        {L"delete", 0}, {L"expire", 1}, {L"copy", 2}, {L"move", 3}, {L"flag", 4}, {L"delete-permanently", 5}};
    const auto action = actions.find(name);
    if (action == actions.end())
        throw WalkError("there is no such action");
    const HWND list = ::GetDlgItem(settings, IDC_ACTION);
    ::SendMessageW(list, CB_SETCURSEL, static_cast<WPARAM>(action->second), 0);
    ::SendMessageW(settings, WM_COMMAND, MAKEWPARAM(IDC_ACTION, CBN_SELCHANGE),
                   reinterpret_cast<LPARAM>(list));
}

void TickCriteria(HWND settings, std::wstring names)
{
    static const std::map<std::wstring, int> boxes{{L"sender-name", IDC_SENDER_NAME},
                                                   {L"recipient-name", IDC_RECIPIENT_NAME},
                                                   {L"internet-header", IDC_INTERNET_HEADER},
                                                   {L"attachments", IDC_ATTACHMENT_FILES},
                                                   {L"send-time", IDC_SEND_TIME}};
    while (!names.empty())
    {
        const std::size_t end = std::min(names.find(L','), names.size());
        const auto box = boxes.find(names.substr(0, end));
        if (box == boxes.end())
            throw WalkError("there is no such criterion");
        ::SendMessageW(::GetDlgItem(settings, box->second), BM_CLICK, 0, 0);
        names.erase(0, end + 1);
    }
}

// Types the folder's name, as far as the tree needs it to find the folder.
void PickDestination(HWND settings, const std::wstring& name, const PageWatcher& watcher)
{
    if (!::IsWindowEnabled(::GetDlgItem(settings, IDC_SELECT_DESTINATION)))
        return;
    Press(settings, IDC_SELECT_DESTINATION);
    const HWND picker = WaitForPage(IDC_DESTINATION_TREE, "the picker");
    const HWND tree = ::GetDlgItem(picker, IDC_DESTINATION_TREE);
    for (const wchar_t letter : name)
        ::SendMessageW(tree, WM_CHAR, letter, 1);
    WaitUntilEnabled(picker, IDOK, "a destination that can be chosen");
    watcher(picker, "destination");
    Press(picker, IDOK);
    WaitUntilGone(picker, "the picker");
}

HWND RunFromTheSettings(const WizardChoices& choices, const PageWatcher& watcher)
{
    const HWND settings = WaitForPage(IDC_TIME_SPAN, "the settings");
    ChooseAction(settings, choices.action);
    TickCriteria(settings, choices.criteria);
    PickDestination(settings, choices.destination, watcher);
    watcher(settings, "settings");
    Press(settings, IDOK);
    WaitForTheRun(WaitForPage(IDC_REPORT, "the run"));
    const HWND end = WaitForMessage("the end of the run");
    watcher(end, "end");
    Press(end, IDOK);
    WaitUntilGone(end, "the message");
    const HWND report = WaitForPage(IDC_REPORT, "the report");
    WaitUntilEnabled(report, IDC_SAVE_LOG, "the run's last step");
    watcher(report, "report");
    return report;
}

HWND FileNameOf(HWND saveDialog)
{
    const HWND list = ::GetDlgItem(saveDialog, fileNameList);
    return list ? list : ::GetDlgItem(saveDialog, fileNameField);
}

void SaveReport(HWND report, const std::wstring& file)
{
    const bool hasRows = ::GetWindowTextLengthW(::GetDlgItem(report, IDC_TOTAL)) > 0;
    if (file.empty() || !hasRows)
        return;
    ::DeleteFileW(file.c_str());
    Press(report, IDC_SAVE_LOG);
    const HWND save =
        WaitForWindow([](HWND window) { return IsDialog(window) && FileNameOf(window); }, "the save dialog");
    ::SendMessageW(FileNameOf(save), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(file.c_str()));
    Press(save, IDOK);
    WaitUntilGone(save, "the save dialog");
    const HWND saved = WaitForMessage("the word that it is saved");
    Press(saved, IDOK);
    WaitUntilGone(saved, "the word that it is saved");
}
}    // namespace

void WalkWizard(const WizardChoices& choices, const PageWatcher& watcher)
{
    const HWND folders = WaitForPage(IDC_FOLDER_TREE, "the wizard");
    WaitUntilEnabled(folders, IDOK, "the folders");
    watcher(folders, "folders");
    Press(folders, IDOK);
    const HWND report = RunFromTheSettings(choices, watcher);
    SaveReport(report, choices.report);
    Press(report, IDCANCEL);
    WaitUntil([folders] { return !::IsWindow(folders); }, "the end of the wizard");
}
