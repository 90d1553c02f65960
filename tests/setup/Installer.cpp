#include "tests/setup/Installer.h"

#include "tests/console/Pipe.h"

#include <windows.h>

#include <shlobj.h>

#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <type_traits>

namespace installer
{
namespace
{
constexpr DWORD longestRun = 120'000;    // milliseconds
constexpr DWORD longestRemoval = 60'000;
constexpr DWORD timeBetweenLooks = 50;
constexpr wchar_t entryKey[] =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\TalmoreQuorvexOutlookDuplicateRemover";

struct HandleCloser
{
    void operator()(HANDLE handle) const noexcept { ::CloseHandle(handle); }
};
using Handle = std::unique_ptr<std::remove_pointer_t<HANDLE>, HandleCloser>;

Handle Start(std::wstring commandLine, HANDLE output)
{
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = output ? STARTF_USESTDHANDLES : 0;
    startup.hStdOutput = output;
    PROCESS_INFORMATION process{};
    if (!::CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, output != nullptr, 0, nullptr,
                          nullptr, &startup, &process))
        throw std::runtime_error("a program does not start");
    ::CloseHandle(process.hThread);
    return Handle(process.hProcess);
}

DWORD ExitCodeOf(const Handle& process)
{
    if (::WaitForSingleObject(process.get(), longestRun) != WAIT_OBJECT_0)
    {
        ::TerminateProcess(process.get(), 0);    // it would be in the way of every test after this one
        throw std::runtime_error("a program does not end");
    }
    DWORD code = 0;
    ::GetExitCodeProcess(process.get(), &code);
    return code;
}

std::filesystem::path KnownFolder(int id)
{
    wchar_t path[MAX_PATH] = L"";
    ::SHGetFolderPathW(nullptr, id, nullptr, SHGFP_TYPE_CURRENT, path);
    return path;
}

HKEY RootOf(For whom)
{
    return whom == For::user ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
}
}    // namespace

std::filesystem::path File()
{
    const wchar_t* file = ::_wgetenv(L"TQODR_SETUP");
    if (!file)
        throw std::runtime_error("TQODR_SETUP does not say where the installer is");
    return std::filesystem::path(std::wstring(L"Z:") + file).make_preferred();
}

std::filesystem::path UsualFolder(For whom)
{
    const std::filesystem::path product = L"Talmorex\\Duplicate Remover";
    return whom == For::user ? KnownFolder(CSIDL_LOCAL_APPDATA) / L"Programs" / product
                             : KnownFolder(CSIDL_PROGRAM_FILES) / product;
}

DWORD Run(const std::wstring& switches)
{
    return RunProgram(L"\"" + File().wstring() + L"\" /S " + switches);
}

DWORD RunProgram(const std::wstring& commandLine)
{
    return ExitCodeOf(Start(commandLine, nullptr));
}

std::string OutputOf(const std::wstring& commandLine)
{
    Pipe output;
    const Handle process = Start(commandLine, output.GetWriteEnd());
    output.CloseWriteEnd();
    std::string text = output.ReadAll();
    ExitCodeOf(process);
    return text;
}

bool Remove(const std::filesystem::path& folder, For whom)
{
    // It goes on in a copy of itself, and its last step is its entry.
    RunProgram(L"\"" + (folder / L"uninstall.exe").wstring() + L"\" /S");
    const ULONGLONG deadline = ::GetTickCount64() + longestRemoval;
    while (EntryText(whom, L"DisplayName"))
    {
        if (::GetTickCount64() > deadline)
            return false;
        ::Sleep(timeBetweenLooks);
    }
    return true;
}

DWORD RemovalCode(const std::filesystem::path& folder)
{
    const std::filesystem::path copy = std::filesystem::temp_directory_path() / L"tqodr-uninstall-copy.exe";
    std::filesystem::copy_file(folder / L"uninstall.exe", copy,
                               std::filesystem::copy_options::overwrite_existing);
    const DWORD code = RunProgram(L"\"" + copy.wstring() + L"\" /S _?=" + folder.wstring());
    std::filesystem::remove(copy);
    return code;
}

std::optional<std::wstring> EntryText(For whom, const wchar_t* name)
{
    wchar_t text[1024] = L"";
    DWORD size = sizeof text;
    if (::RegGetValueW(RootOf(whom), entryKey, name, RRF_RT_REG_SZ, nullptr, text, &size) != ERROR_SUCCESS)
        return std::nullopt;
    return text;
}

std::optional<DWORD> EntryNumber(For whom, const wchar_t* name)
{
    DWORD number = 0;
    DWORD size = sizeof number;
    if (::RegGetValueW(RootOf(whom), entryKey, name, RRF_RT_REG_DWORD, nullptr, &number, &size) !=
        ERROR_SUCCESS)
        return std::nullopt;
    return number;
}
}    // namespace installer
