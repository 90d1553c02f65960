#include "tests/console/ChildProcess.h"

#include <cstdlib>
#include <future>
#include <stdexcept>

namespace
{
std::wstring ProgramPath()
{
    const wchar_t* dist = _wgetenv(L"TQODR_DIST");
    if (!dist)
        throw std::runtime_error("TQODR_DIST does not say where tqodr.exe is");
    return std::wstring(dist) + L"/tqodr.exe";
}

std::wstring MakeCommandLine(const std::vector<std::wstring>& words)
{
    std::wstring line = L"\"" + ProgramPath() + L"\"";
    for (const std::wstring& word : words)
        line += L" \"" + word + L"\"";
    return line;
}

HANDLE OpenDevice(const wchar_t* name)
{
    SECURITY_ATTRIBUTES inheritable{
        .nLength = sizeof(SECURITY_ATTRIBUTES), .lpSecurityDescriptor = nullptr, .bInheritHandle = TRUE};
    return CreateFileW(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inheritable,
                       OPEN_EXISTING, 0, nullptr);
}

BOOL WINAPI IgnoreEvent(DWORD)
{
    return TRUE;
}

// This process on the child's console, for as long as it lives.
class AttachedConsole
{
public:
    explicit AttachedConsole(const PROCESS_INFORMATION& process)
    {
        FreeConsole();
        // A process that has just been created opens its console a little later.
        while (!AttachConsole(process.dwProcessId) &&
               WaitForSingleObject(process.hProcess, 10) == WAIT_TIMEOUT)
        {
        }
        // What is pressed there goes to both processes. To be deaf by SetConsoleCtrlHandler(nullptr, TRUE)
        // would be handed on to later children.
        SetConsoleCtrlHandler(IgnoreEvent, TRUE);
    }

    AttachedConsole(const AttachedConsole&) = delete;
    AttachedConsole& operator=(const AttachedConsole&) = delete;

    ~AttachedConsole()
    {
        FreeConsole();
        AttachConsole(ATTACH_PARENT_PROCESS);
    }
};

// Lines follow each other without a break, so that a text that the console has wrapped is found all the same.
std::wstring ReadScreen()
{
    const HANDLE screen = OpenDevice(L"CONOUT$");
    CONSOLE_SCREEN_BUFFER_INFO info{};
    GetConsoleScreenBufferInfo(screen, &info);
    std::wstring text(static_cast<std::size_t>(info.dwSize.X) * (info.dwCursorPosition.Y + 1), L' ');
    DWORD read = 0;
    ReadConsoleOutputCharacterW(screen, text.data(), static_cast<DWORD>(text.size()), {0, 0}, &read);
    CloseHandle(screen);
    return text;
}
}    // namespace

ChildProcess::ChildProcess(const std::vector<std::wstring>& words, Streams streams, DWORD pipeSize)
    : out(pipeSize),
      errors(pipeSize)
{
    const HANDLE input = OpenDevice(L"NUL");
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    if (streams == Streams::pipes)
    {
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdInput = input;
        startup.hStdOutput = out.GetWriteEnd();
        startup.hStdError = errors.GetWriteEnd();
    }
    std::wstring line = MakeCommandLine(words);
    const BOOL started = CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW,
                                        nullptr, nullptr, &startup, &process);
    CloseHandle(input);
    out.CloseWriteEnd();
    errors.CloseWriteEnd();
    if (!started)
        throw std::runtime_error("tqodr.exe does not start");
}

ChildProcess::~ChildProcess()
{
    if (WaitForSingleObject(process.hProcess, 0) == WAIT_TIMEOUT)
        TerminateProcess(process.hProcess, 99);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
}

void ChildProcess::PressCtrlC() const
{
    const AttachedConsole console(process);
    GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
}

void ChildProcess::Type(const std::wstring& text) const
{
    const AttachedConsole console(process);
    const HANDLE input = OpenDevice(L"CONIN$");
    for (const wchar_t c : text)
    {
        INPUT_RECORD record{};
        record.EventType = KEY_EVENT;
        record.Event.KeyEvent.bKeyDown = TRUE;
        record.Event.KeyEvent.wRepeatCount = 1;
        record.Event.KeyEvent.uChar.UnicodeChar = c;
        record.Event.KeyEvent.wVirtualKeyCode = c == L'\r' ? VK_RETURN : 0;
        DWORD written = 0;
        WriteConsoleInputW(input, &record, 1, &written);
    }
    CloseHandle(input);
}

bool ChildProcess::WaitForScreen(const std::wstring& text) const
{
    const AttachedConsole console(process);
    const ULONGLONG deadline = GetTickCount64() + 30'000;
    do
    {
        if (ReadScreen().find(text) != std::wstring::npos)
            return true;
    } while (WaitForSingleObject(process.hProcess, 20) == WAIT_TIMEOUT && GetTickCount64() < deadline);
    return ReadScreen().find(text) != std::wstring::npos;
}

DWORD ChildProcess::WaitForExitCode() const
{
    WaitForSingleObject(process.hProcess, 60'000);
    DWORD code = 0;
    GetExitCodeProcess(process.hProcess, &code);
    return code;
}

RunResult RunToEnd(const std::vector<std::wstring>& words)
{
    ChildProcess child(words);
    std::future<std::string> errors =
        std::async(std::launch::async, [&child] { return child.errors.ReadAll(); });
    std::string out = child.out.ReadAll();
    return {.exitCode = child.WaitForExitCode(), .out = std::move(out), .errors = errors.get()};
}
