#include "explorer/Program.h"

#include "explorer/AddInsDlg.h"
#include "explorer/CommandLine.h"
#include "explorer/MainWindow.h"
#include "explorer/StandardStream.h"
#include "win/ComInitialization.h"
#include "win/OleException.h"
#include "win/WindowBoundary.h"

#include <windows.h>

#include <commctrl.h>

#include <algorithm>

namespace
{
constexpr int failed = 1;
constexpr int wrongWords = 2;

int ListAddIns()
{
    CMainWindow window;
    window.LoadAddIns();
    const auto& addIns = window.GetAddIns().GetAddIns();
    std::wstring text;
    for (const AddIn& addIn : addIns)
        text += addIn.GetEntry().progId + L'\t' + addIn.GetEntry().friendlyName + L'\t' +
                DescribeState(addIn) + L"\r\n";
    WriteTo(STD_OUTPUT_HANDLE, text);
    const bool anyFailed =
        std::ranges::any_of(addIns, [](const AddIn& one) { return one.GetState() == AddInState::failed; });
    return anyFailed ? failed : 0;
}

void HandleMessages(CMainWindow& window)
{
    MSG message{};
    while (window.IsOpen() && ::GetMessageW(&message, nullptr, 0, 0) > 0)
    {
        if (window.TranslateKey(message))
            continue;
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
    }
}

int ShowWindow(const CommandLine& line, int showCommand)
{
    CMainWindow window;
    window.LoadAddIns();
    window.OpenStore();
    window.Show(showCommand);
    window.TellStartupComplete();
    if (line.click && !window.Press(*line.click))
    {
        WriteTo(STD_ERROR_HANDLE,
                L"mailexplorer: no button or menu entry is called " + *line.click + L".\r\n");
        return failed;
    }
    if (!line.exitAfterClick)
        HandleMessages(window);
    return 0;
}

int Run(const CommandLine& line, int showCommand)
{
    if (line.help)
    {
        WriteTo(STD_OUTPUT_HANDLE, usageText);
        return 0;
    }
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_WIN95_CLASSES};
    ::InitCommonControlsEx(&classes);
    const ComInitialization com;
    return line.listAddIns ? ListAddIns() : ShowWindow(line, showCommand);
}
}    // namespace

int RunProgram(const std::vector<std::wstring>& words, int showCommand)
{
    try
    {
        return Run(ParseCommandLine(words), showCommand);
    }
    catch (const CommandLineError& wrong)
    {
        WriteTo(STD_ERROR_HANDLE, wrong.GetText() + L"\r\n");
        return wrongWords;
    }
    catch (const COleException& failure)
    {
        WriteTo(STD_ERROR_HANDLE, L"mailexplorer: " + DescribeFailure(failure) + L".\r\n");
        return failed;
    }
}
