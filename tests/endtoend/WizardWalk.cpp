// Walks the wizard as a person would, from the stand-in host's button to the saved report, by messages to the
// windows of another process, and tells whoever takes the pictures when a page is worth one (see
// scripts/screenshots). Its choices come in the environment:
//   TQODR_DIST         the folder of the programs and libraries
//   WIZARD_ACTION      delete (as without it), flag, expire, copy, move or delete-permanently
//   WIZARD_TO          for copy and move: the name of the destination folder
//   WIZARD_CRITERIA    sender-name, recipient-name, internet-header, attachments, send-time, separated by
//   commas WIZARD_REPORT      the file that the report is saved in
// Paths are the build machine's.
#include "res/resource.h"
#include "win/KernelHandle.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{
constexpr ULONGLONG deadline = 120000;    // milliseconds, for whatever is waited for
constexpr wchar_t hostTitle[] = L"Mail Explorer";
constexpr wchar_t buttonCaption[] = L"Talmore Duplicate Remover";
// Where the save dialog takes the name, in the newer style and in the older one.
constexpr int fileNameList = 0x047C;
constexpr int fileNameField = 0x0480;

class WalkError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

std::wstring Choice(const wchar_t* name, const wchar_t* otherwise = L"")
{
    wchar_t value[1024] = L"";
    return ::GetEnvironmentVariableW(name, value, ARRAYSIZE(value)) ? value : otherwise;
}

std::wstring WindowsPath(const std::wstring& path)
{
    std::wstring result = path.starts_with(L'/') ? L"Z:" + path : path;
    std::ranges::replace(result, L'/', L'\\');
    return result;
}

void WaitUntil(const std::function<bool()>& condition, const std::string& what)
{
    for (const ULONGLONG begun = ::GetTickCount64(); !condition(); ::Sleep(20))
    {
        if (::GetTickCount64() - begun > deadline)
            throw WalkError("waited in vain for " + what);
    }
}

struct WindowSearch
{
    std::function<bool(HWND)> accepts;
    HWND found = nullptr;
};

BOOL CALLBACK LookAtWindow(HWND window, LPARAM parameter)
{
    auto& search = *reinterpret_cast<WindowSearch*>(parameter);
    if (::IsWindowVisible(window) && search.accepts(window))
        search.found = window;
    return !search.found;
}

HWND WaitForWindow(const std::function<bool(HWND)>& accepts, const std::string& what)
{
    WindowSearch search{accepts};
    WaitUntil(
        [&]
        {
            ::EnumWindows(&LookAtWindow, reinterpret_cast<LPARAM>(&search));
            return search.found != nullptr;
        },
        what);
    return search.found;
}

bool IsDialog(HWND window)
{
    wchar_t className[8] = L"";
    ::GetClassNameW(window, className, ARRAYSIZE(className));
    return className == std::wstring_view(L"#32770");
}

HWND WaitForPage(int control, const std::string& what)
{
    return WaitForWindow(
        [control](HWND window)
        { return IsDialog(window) && ::GetDlgItem(window, control) && ::IsWindowEnabled(window); },
        what);
}

// A message box, ours or the system's: a dialog without any control of a page.
HWND WaitForMessage(const std::string& what)
{
    return WaitForWindow(
        [](HWND window)
        {
            constexpr int ofPages[] = {IDC_FOLDER_TREE, IDC_TIME_SPAN, IDC_DESTINATION_TREE,
                                       IDC_REPORT,      fileNameList,  fileNameField};
            const bool isPage = std::ranges::any_of(ofPages, [window](int control)
                                                    { return ::GetDlgItem(window, control) != nullptr; });
            return IsDialog(window) && !isPage;
        },
        what);
}

void WaitUntilEnabled(HWND page, int control, const std::string& what)
{
    WaitUntil([=] { return ::IsWindowEnabled(::GetDlgItem(page, control)) != FALSE; }, what);
}

void WaitUntilGone(HWND window, const std::string& what)
{
    WaitUntil([=] { return !::IsWindow(window) || !::IsWindowVisible(window); }, "the end of " + what);
}

void Press(HWND page, int button)
{
    ::PostMessageW(page, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                   reinterpret_cast<LPARAM>(::GetDlgItem(page, button)));
}

// Lets a picture be taken, and waits until it is.
void Show(HWND window, const char* name)
{
    RECT place{};
    ::GetWindowRect(window, &place);
    std::printf("ready %s %ld %ld %ld %ld\n", name, place.left, place.top, place.right - place.left,
                place.bottom - place.top);
    std::fflush(stdout);
    std::string answer;
    if (!std::getline(std::cin, answer))
        throw WalkError("nobody takes pictures any more");
}

KernelHandle Start(std::wstring commandLine)
{
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!::CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                          &process))
        throw WalkError("a program cannot be started");
    const KernelHandle thread(process.hThread);
    return KernelHandle(process.hProcess);
}

void WaitForExit(const KernelHandle& process, const std::string& what)
{
    DWORD exitCode = 1;
    if (::WaitForSingleObject(process.get(), static_cast<DWORD>(deadline)) != WAIT_OBJECT_0)
        throw WalkError(what + " does not end");
    ::GetExitCodeProcess(process.get(), &exitCode);
    if (exitCode != 0)
        throw WalkError(what + " ended with " + std::to_string(exitCode));
}

HWND WaitForHost()
{
    return WaitForWindow(
        [](HWND window)
        {
            wchar_t text[260] = L"";
            ::GetWindowTextW(window, text, ARRAYSIZE(text));
            return std::wstring_view(text).ends_with(hostTitle);
        },
        "the host's window");
}

void ChooseAction(HWND settings)
{
    static const std::map<std::wstring, int> actions{
        {L"delete", 0}, {L"expire", 1}, {L"copy", 2}, {L"move", 3}, {L"flag", 4}, {L"delete-permanently", 5}};
    const auto action = actions.find(Choice(L"WIZARD_ACTION", L"delete"));
    if (action == actions.end())
        throw WalkError("there is no such action");
    const HWND list = ::GetDlgItem(settings, IDC_ACTION);
    ::SendMessageW(list, CB_SETCURSEL, static_cast<WPARAM>(action->second), 0);
    ::SendMessageW(settings, WM_COMMAND, MAKEWPARAM(IDC_ACTION, CBN_SELCHANGE),
                   reinterpret_cast<LPARAM>(list));
}

void TickCriteria(HWND settings)
{
    static const std::map<std::wstring, int> boxes{{L"sender-name", IDC_SENDER_NAME},
                                                   {L"recipient-name", IDC_RECIPIENT_NAME},
                                                   {L"internet-header", IDC_INTERNET_HEADER},
                                                   {L"attachments", IDC_ATTACHMENT_FILES},
                                                   {L"send-time", IDC_SEND_TIME}};
    std::wstring rest = Choice(L"WIZARD_CRITERIA");
    while (!rest.empty())
    {
        const std::size_t end = std::min(rest.find(L','), rest.size());
        const auto box = boxes.find(rest.substr(0, end));
        if (box == boxes.end())
            throw WalkError("there is no such criterion");
        ::SendMessageW(::GetDlgItem(settings, box->second), BM_CLICK, 0, 0);
        rest.erase(0, end + 1);
    }
}

// Types the folder's name, as far as the tree needs it to find the folder.
void PickDestination(HWND settings)
{
    if (!::IsWindowEnabled(::GetDlgItem(settings, IDC_SELECT_DESTINATION)))
        return;
    Press(settings, IDC_SELECT_DESTINATION);
    const HWND picker = WaitForPage(IDC_DESTINATION_TREE, "the picker");
    const HWND tree = ::GetDlgItem(picker, IDC_DESTINATION_TREE);
    for (const wchar_t letter : Choice(L"WIZARD_TO"))
        ::SendMessageW(tree, WM_CHAR, letter, 1);
    WaitUntilEnabled(picker, IDOK, "a destination that can be chosen");
    Show(picker, "3-destination");
    Press(picker, IDOK);
    WaitUntilGone(picker, "the picker");
}

HWND RunFromTheSettings(HWND settings)
{
    ChooseAction(settings);
    TickCriteria(settings);
    PickDestination(settings);
    Show(settings, "4-settings");
    Press(settings, IDOK);
    const HWND end = WaitForMessage("the end of the run");
    Show(end, "5-end");
    Press(end, IDOK);
    WaitUntilGone(end, "the message");
    const HWND report = WaitForPage(IDC_REPORT, "the report");
    WaitUntilEnabled(report, IDC_SAVE_LOG, "the run's last step");
    Show(report, "6-report");
    return report;
}

HWND FileNameOf(HWND saveDialog)
{
    const HWND list = ::GetDlgItem(saveDialog, fileNameList);
    return list ? list : ::GetDlgItem(saveDialog, fileNameField);
}

void SaveReport(HWND report)
{
    const std::wstring file = WindowsPath(Choice(L"WIZARD_REPORT"));
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

void ShowHost(const std::wstring& host, const char* name)
{
    const KernelHandle process = Start(L"\"" + host + L"\"");
    const HWND window = WaitForHost();
    Show(window, name);
    ::PostMessageW(window, WM_CLOSE, 0, 0);
    WaitForExit(process, "the host");
}

void Walk()
{
    const std::wstring dist = WindowsPath(Choice(L"TQODR_DIST"));
    const std::wstring host = dist + L"\\mailexplorer.exe";
    WaitForExit(Start(L"regsvr32.exe /s \"" + dist + L"\\TalmoreQuorvexOutlookDuplicateRemover.dll\""),
                "the add-in's registration");
    ShowHost(host, "1-host");

    const KernelHandle process =
        Start(L"\"" + host + L"\" --exit-after-click --click \"" + std::wstring(buttonCaption) + L"\"");
    const HWND folders = WaitForPage(IDC_FOLDER_TREE, "the wizard");
    WaitUntilEnabled(folders, IDOK, "the folders");
    Show(folders, "2-folders");
    Press(folders, IDOK);
    const HWND report = RunFromTheSettings(WaitForPage(IDC_TIME_SPAN, "the settings"));
    SaveReport(report);
    Press(report, IDCANCEL);
    WaitForExit(process, "the host");

    ShowHost(host, "7-host-afterwards");
}
}    // namespace

int main()
{
    try
    {
        Walk();
        return 0;
    }
    catch (const std::exception& failure)
    {
        std::fprintf(stderr, "wizardwalk: %s\n", failure.what());
        return 1;
    }
}
