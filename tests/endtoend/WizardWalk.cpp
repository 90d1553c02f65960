// Walks the wizard as a person would, from the stand-in host's button to what the host shows afterwards, and
// tells whoever takes the pictures when a window is worth one (see scripts/screenshots). Its choices come in
// the environment:
//   TQODR_DIST       the folder of the programs and libraries
//   WIZARD_ACTION    delete (as without it), flag, expire, copy, move or delete-permanently
//   WIZARD_TO        for copy and move: the name of the destination folder
//   WIZARD_CRITERIA  sender-name, recipient-name, internet-header, attachments, send-time, with commas
//   between WIZARD_REPORT    the file that the report is saved in
// Paths are the build machine's.
#include "tests/endtoend/HostProgram.h"
#include "tests/endtoend/RemoteWindows.h"
#include "tests/endtoend/WizardSteps.h"

#include <windows.h>

#include <cstdio>
#include <iostream>
#include <string>

namespace
{
constexpr wchar_t buttonCaption[] = L"Talmore Duplicate Remover";

std::wstring Choice(const wchar_t* name, const wchar_t* otherwise = L"")
{
    wchar_t value[1024] = L"";
    return ::GetEnvironmentVariableW(name, value, ARRAYSIZE(value)) ? value : otherwise;
}

WizardChoices ReadChoices()
{
    return {Choice(L"WIZARD_ACTION", L"delete"), Choice(L"WIZARD_TO"), Choice(L"WIZARD_CRITERIA"),
            WindowsPath(Choice(L"WIZARD_REPORT"))};
}

// Lets a picture be taken, and waits until it is.
void Show(HWND window, const char* name)
{
    static int number = 0;
    RECT place{};
    ::GetWindowRect(window, &place);
    std::printf("ready %d-%s %ld %ld %ld %ld\n", ++number, name, place.left, place.top,
                place.right - place.left, place.bottom - place.top);
    std::fflush(stdout);
    std::string answer;
    if (!std::getline(std::cin, answer))
        throw WalkError("nobody takes pictures any more");
}

// Where the duplicates of a run with that choice are found afterwards, when that is another folder.
std::wstring FolderToLookInto(const WizardChoices& choices)
{
    if (choices.action == L"delete")
        return L"Deleted Items";
    return choices.action == L"copy" || choices.action == L"move" ? choices.destination : L"";
}

void Walk()
{
    const WizardChoices choices = ReadChoices();
    const std::wstring dist = WindowsPath(Choice(L"TQODR_DIST"));
    RegisterAddIn(dist);
    HostProgram host(dist);
    Show(host.GetWindow(), "host");
    host.PressToolBarButton(buttonCaption);
    WalkWizard(choices, &Show);
    host.WaitUntilIdle();
    Show(host.GetWindow(), "host-afterwards");
    if (const std::wstring folder = FolderToLookInto(choices); !folder.empty())
    {
        host.SelectFolder(folder);
        Show(host.GetWindow(), "host-where-they-went");
    }
    host.Close();
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
