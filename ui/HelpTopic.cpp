#include "ui/HelpTopic.h"

#include "ui/InstallFolder.h"
#include "win/OleException.h"

#include <windows.h>

#include <htmlhelp.h>

namespace
{
using HtmlHelpFunction = HWND WINAPI(HWND owner, const wchar_t* file, UINT command, DWORD_PTR data);

// Once loaded it stays: its window lives on after the dialog that asked for it.
HtmlHelpFunction* LoadHtmlHelp()
{
    const HMODULE library = ::LoadLibraryExW(L"hhctrl.ocx", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    const auto function = library ? ::GetProcAddress(library, "HtmlHelpW") : nullptr;
    if (!function)
        throw COleException(HRESULT_FROM_WIN32(::GetLastError()));
    return reinterpret_cast<HtmlHelpFunction*>(reinterpret_cast<void*>(function));
}
}    // namespace

void ShowHelpTopic(HWND owner, const std::wstring& file)
{
    static HtmlHelpFunction* const htmlHelp = LoadHtmlHelp();
    htmlHelp(owner, file.c_str(), HH_DISPLAY_TOPIC, 0);
}

std::wstring HelpFile()
{
    return InstallFolderOfHelp() + L"\\tqodr_v1.0.chm";
}
