#include "explorer/CommandLine.h"

const wchar_t usageText[] =
    L"mailexplorer [--click CAPTION [--exit-after-click]]\r\n"
    L"mailexplorer --list-addins\r\n"
    L"mailexplorer --help\r\n"
    L"\r\n"
    L"Shows the folders and messages of the default mail store and hosts the add-ins registered under\r\n"
    L"Software\\Microsoft\\Office\\Outlook\\Addins.\r\n"
    L"\r\n"
    L"  --click CAPTION     press the button or menu entry of that caption once the window is up\r\n"
    L"  --exit-after-click  end when that is done\r\n"
    L"  --list-addins       load the add-ins, print their states and end; 0 when none failed\r\n";

CommandLine ParseCommandLine(const std::vector<std::wstring>& words)
{
    CommandLine line;
    for (std::size_t i = 0; i < words.size(); ++i)
    {
        if (words[i] == L"--help")
            line.help = true;
        else if (words[i] == L"--list-addins")
            line.listAddIns = true;
        else if (words[i] == L"--exit-after-click")
            line.exitAfterClick = true;
        else if (words[i] != L"--click")
            throw CommandLineError(L"mailexplorer: there is no option " + words[i] + L" (see --help).");
        else if (++i == words.size())
            throw CommandLineError(L"mailexplorer: --click needs the caption of a button or menu entry.");
        else
            line.click = words[i];
    }
    if (line.exitAfterClick && !line.click)
        throw CommandLineError(L"mailexplorer: --exit-after-click needs --click.");
    if (line.listAddIns && line.click)
        throw CommandLineError(L"mailexplorer: --list-addins shows no window to click in.");
    return line;
}
