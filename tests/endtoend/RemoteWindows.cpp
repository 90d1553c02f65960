#include "tests/endtoend/RemoteWindows.h"

#include <windows.h>

#include <algorithm>
#include <string_view>
#include <vector>

namespace
{
constexpr ULONGLONG deadline = 120'000;    // milliseconds, for whatever is waited for

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

KernelHandle OpenProcessOf(HWND window)
{
    DWORD id = 0;
    ::GetWindowThreadProcessId(window, &id);
    return KernelHandle(::OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, id));
}

void Check(BOOL succeeded)
{
    if (!succeeded)
        throw WalkError("the memory of another process cannot be used");
}
}    // namespace

void WaitUntil(const std::function<bool()>& condition, const std::string& what)
{
    for (const ULONGLONG begun = ::GetTickCount64(); !condition(); ::Sleep(20))
    {
        if (::GetTickCount64() - begun > deadline)
            throw WalkError("waited in vain for " + what);
    }
}

HWND FindShownWindow(const std::function<bool(HWND)>& accepts)
{
    WindowSearch search{accepts};
    ::EnumWindows(&LookAtWindow, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

HWND WaitForWindow(const std::function<bool(HWND)>& accepts, const std::string& what)
{
    HWND found = nullptr;
    WaitUntil([&] { return (found = FindShownWindow(accepts)) != nullptr; }, what);
    return found;
}

bool IsOfClass(HWND window, const wchar_t* name)
{
    wchar_t className[32] = L"";
    ::GetClassNameW(window, className, ARRAYSIZE(className));
    return className == std::wstring_view(name);
}

bool IsDialog(HWND window)
{
    return IsOfClass(window, L"#32770");
}

void WaitUntilGone(HWND window, const std::string& what)
{
    WaitUntil([=] { return !::IsWindow(window) || !::IsWindowVisible(window); }, "the end of " + what);
}

void Press(HWND dialog, int button)
{
    ::PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                   reinterpret_cast<LPARAM>(::GetDlgItem(dialog, button)));
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

std::wstring WindowsPath(const std::wstring& path)
{
    std::wstring result = path.starts_with(L'/') ? L"Z:" + path : path;
    std::ranges::replace(result, L'/', L'\\');
    return result;
}

RemoteMemory::RemoteMemory(HWND window, std::size_t size)
    : process(OpenProcessOf(window)),
      memory(process
                 ? ::VirtualAllocEx(process.get(), nullptr, size, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE)
                 : nullptr)
{
    Check(memory != nullptr);
}

RemoteMemory::~RemoteMemory()
{
    ::VirtualFreeEx(process.get(), memory, 0, MEM_RELEASE);
}

void RemoteMemory::Put(const void* from, std::size_t size) const
{
    Check(::WriteProcessMemory(process.get(), memory, from, size, nullptr));
}

void RemoteMemory::Get(std::size_t offset, void* to, std::size_t size) const
{
    Check(::ReadProcessMemory(process.get(), static_cast<const char*>(memory) + offset, to, size, nullptr));
}

std::wstring RemoteMemory::ReadText(std::size_t offset, std::size_t characters) const
{
    std::vector<wchar_t> text(characters + 1);
    Get(offset, text.data(), characters * sizeof(wchar_t));
    return text.data();
}
