// Shows the product's dialogs with what they typically hold, one after another, so that pictures can be
// taken. For each it writes "ready NAME X Y WIDTH HEIGHT" (the window's rectangle in screen pixels) when it
// is painted, keeps it until a line is read, and closes it.

#include "engine/ScanState.h"
#include "res/resource.h"
#include "tests/engine/FakeStore.h"
#include "tests/ui/InstalledFolder.h"
#include "tests/ui/ModalDriver.h"
#include "ui/AboutDlg.h"
#include "ui/DuplicateSettingsDlg.h"
#include "ui/MsgDlg.h"
#include "ui/MyEULADlg.h"
#include "ui/ProcessProgressDlg.h"
#include "ui/SelectFolderDlg.h"
#include "win/StringTable.h"
#include "win/ThisModule.h"

#include <windows.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>

namespace
{
const wchar_t productTitle[] = L"Talmore Quorvex Outlook Duplicate Remover";

// The licence as it is delivered: in the folder, by its path on the build machine, that TQODR_DIST names.
std::string DeliveredLicence()
{
    wchar_t dist[1024] = L"";
    ::GetEnvironmentVariableW(L"TQODR_DIST", dist, ARRAYSIZE(dist));
    std::ifstream file(std::filesystem::path(L"Z:" + std::wstring(dist)) / L"eula.dat", std::ios::binary);
    if (!file)
        throw std::runtime_error("TQODR_DIST names no folder with an eula.dat");
    return {std::istreambuf_iterator<char>(file), {}};
}

// Runs the dialog, in which `fill` does what there is to be seen, until its picture has been taken; then it
// is closed by that button.
void Shoot(
    const std::string& name, const std::wstring& caption, CDialog& dialog, int closeButton = IDOK,
    const std::function<void(HWND)>& fill = [](HWND) {})
{
    ModalDriver user(
        [&](ModalDriver& self)
        {
            const HWND window = self.WaitForDialog(caption);
            fill(window);
            ModalDriver::RunOnThreadOf(
                window, [&] { ::RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN); });
            RECT place{};
            ::GetWindowRect(window, &place);
            std::cout << "ready " << name << ' ' << place.left << ' ' << place.top << ' '
                      << place.right - place.left << ' ' << place.bottom - place.top << std::endl;
            std::string line;
            std::getline(std::cin, line);
            self.Click(window, closeButton);
        });
    dialog.DoModal();
}

void ShootMessage(const std::string& name, const std::wstring& message)
{
    CMsgDlg dialog;
    dialog.message = message;
    Shoot(name, productTitle, dialog);
}

void FillReport(CProcessProgressDlg& page)
{
    LONG total = 0;
    for (const auto& [folder, subject, count] :
         {std::tuple{L"Inbox", L"Minutes of the meeting on Monday", 3},
          std::tuple{L"Inbox", L"Re: Offer for the new server room", 1},
          std::tuple{L"Archive 2014", L"Re: Offer for the new server room", 2},
          std::tuple{L"Inbox", L"Invoice 2014-117", 1}, std::tuple{L"Sent Items", L"Holiday plan", 12}})
    {
        total += count;
        page.AddResultRow(folder, subject, count, total);
    }
}

// The page of a run: while it is on, and after its end.
void ShootProgress()
{
    ScanState state;
    CProcessProgressDlg page(state, nullptr, [](ScanState&, ScanProgressView&) { return true; });
    Shoot("progress", productTitle, page, IDCANCEL,
          [&](HWND)
          {
              FillReport(page);
              for (int step = 0; step < 4; ++step)
                  page.StepProgress();
          });
    Shoot("progress-finished", productTitle, page, IDCANCEL,
          [&](HWND window)
          {
              FillReport(page);
              ::ShowWindow(::GetDlgItem(window, IDC_PROGRESS), SW_HIDE);
              page.FinishRun([] {});
          });
}

// The page of a run's settings: as it opens, and with a destination while it collects its choices.
void ShootSettings()
{
    ScanState state;
    LONG closeOwner = 0;
    CDuplicateSettingsDlg page(state, closeOwner);
    Shoot("settings", productTitle, page, IDCANCEL);
    Shoot("settings-copy", productTitle, page, IDCANCEL,
          [](HWND window)
          {
              constexpr WPARAM copyToFolder = 2;
              ::CheckDlgButton(window, IDC_SENDER_NAME, BST_CHECKED);
              ::CheckDlgButton(window, IDC_SEND_TIME, BST_CHECKED);
              ::SendMessageW(::GetDlgItem(window, IDC_ACTION), CB_SETCURSEL, copyToFolder, 0);
              ::SendMessageW(window, WM_COMMAND, MAKEWPARAM(IDC_ACTION, CBN_SELCHANGE), 0);
              ::SetDlgItemTextW(window, IDC_DESTINATION, L"Duplicates of 2014");
              ::SetDlgItemTextW(window, IDC_STATUS, L"Please wait... Collecting information...");
          });
}

void AddRecord(ScanState& state, FakeStore& store, FakeFolder& folder)
{
    FOLDER_INFO& record = state.folders.emplace_back();
    record.folder = store.MakeFolder(folder);
    record.name = folder.name;
    record.entryId = folder.id;
    record.parentEntryId = folder.parent ? folder.parent->id : L"";
    record.topLevel = folder.parent ? 0 : 1;
    for (FakeFolder& child : folder.folders)
        AddRecord(state, store, child);
}

void ShootPicker()
{
    FakeStore store;
    for (const auto& [name, type] :
         {std::pair{L"Calendar", 1}, std::pair{L"Contacts", 2}, std::pair{L"Deleted Items", 0},
          std::pair{L"Inbox", 0}, std::pair{L"Journal", 4}, std::pair{L"Notes", 5}, std::pair{L"Tasks", 3}})
        store.root.AddFolder(name, type);
    FakeFolder& archive = store.root.AddFolder(L"Archive");
    archive.AddFolder(L"2013");
    archive.AddFolder(L"2014").AddFolder(L"Projects");
    ScanState state;
    AddRecord(state, store, store.root);
    CSelectFolderDlg picker(state);
    Shoot("picker", productTitle, picker, IDCANCEL);
}

SystemFacts TypicalFacts()
{
    SystemFacts facts;
    facts.query = VersionQuery::extended;
    facts.platform = VER_PLATFORM_WIN32_NT;
    facts.major = 10;
    facts.build = 19045;
    facts.productType = VER_NT_WORKSTATION;
    facts.nativeArchitecture = PROCESSOR_ARCHITECTURE_AMD64;
    return facts;
}

void ShootAll()
{
    const StringTable strings(ThisModule());
    const TemporaryFolder folder;
    const InstallEntry entry;
    folder.Write(L"eula.dat", DeliveredLicence());
    entry.Set(folder.Path());

    ShootMessage("message-completed",
                 strings.Format(IDS_RUN_COMPLETED, {1234L, strings.Load(IDS_ACTION_DELETE)}));
    ShootMessage("message-aborted", strings.Format(IDS_RUN_ABORTED, {17L}));
    CAboutDlg about(nullptr, &TypicalFacts);
    Shoot("about", L"About", about);
    CMyEULADlg licence;
    Shoot("licence", L"End User License Agreement", licence);
    ShootSettings();
    ShootPicker();
    ShootProgress();
}
}    // namespace

int main()
{
    // Else the system would draw for 96 DPI and stretch the picture.
    ::SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);
    try
    {
        ShootAll();
        return 0;
    }
    catch (const std::exception& failure)
    {
        std::fprintf(stderr, "dialogshots: %s\n", failure.what());
        return 1;
    }
}
