#include "console/Program.h"

#include "console/CommandLine.h"
#include "console/HelpText.h"
#include "console/MailStore.h"
#include "console/ScanCommand.h"
#include "console/StopSwitch.h"
#include "res/resource.h"
#include "win/StringTable.h"
#include "win/SystemMessage.h"

#include <windows.h>

#include <comdef.h>

#include <exception>

namespace
{
void PrintVersion(Console& console)
{
    const StringTable strings(GetModuleHandleW(nullptr));
    const std::string_view version = TQODR_VERSION;
    console.out.WriteLine(L"tqodr " + std::wstring(version.begin(), version.end()) + L" - " +
                          strings.Load(IDS_PRODUCT_TITLE));
}

ExitCode PrintFolders(Console& console)
{
    const ComApartment apartment;
    ScanState state;
    ConsoleFolderTree tree;
    const StopSwitch stopSwitch(state.stopRequested, [](bool) {});
    LoadFolders(state, tree);
    tree.Print(console.out);
    return state.stopRequested ? ExitCode::stopped : ExitCode::done;
}

ExitCode Run(const Command& command, Console& console)
{
    switch (command.task)
    {
    case Task::folders:
        return PrintFolders(console);
    case Task::scan:
        return RunScan(command.scan, console);
    case Task::version:
        PrintVersion(console);
        return ExitCode::done;
    default:
        console.out.WriteLine(GetHelpText());
        return ExitCode::done;
    }
}

ExitCode RunAndComplain(const std::vector<std::wstring>& words, Console& console)
{
    try
    {
        return Run(ParseCommandLine(words), console);
    }
    catch (const UsageError& error)
    {
        console.Complain(error.GetText());
        return ExitCode::wrongUsage;
    }
    catch (const StoreError& error)
    {
        console.Complain(error.GetText());
        return ExitCode::storeNotOpened;
    }
}
}    // namespace

ExitCode RunProgram(const std::vector<std::wstring>& words, Console& console) noexcept
{
    try
    {
        const ExitCode code = RunAndComplain(words, console);
        if (!console.out.HasFailed())
            return code;
        console.Complain(L"the output could not be written: what it goes to is full or gone");
        return code == ExitCode::done ? ExitCode::failed : code;
    }
    catch (const std::exception& error)
    {
        const std::string_view reason = error.what();
        console.Complain(L"the run broke off: " + std::wstring(reason.begin(), reason.end()));
        return ExitCode::failed;
    }
    catch (const _com_error& error)    // what the platform's owners throw; no std::exception
    {
        console.Complain(L"the run broke off: " + SystemMessage(static_cast<DWORD>(error.Error())));
        return ExitCode::failed;
    }
}
