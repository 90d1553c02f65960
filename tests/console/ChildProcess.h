#pragma once

#include "tests/console/Pipe.h"

#include <windows.h>

#include <string>
#include <vector>

// tqodr.exe as a process of its own on a console of its own that nobody sees. Ended with this object when it
// still runs then. One at a time may be spoken to through its console.
class ChildProcess
{
public:
    enum class Streams
    {
        pipes,      // standard input empty, the outputs in `out` and `errors`
        terminal    // all three are the console
    };

    // `pipeSize`: how much the child can write to an output before it must wait for a reader.
    explicit ChildProcess(const std::vector<std::wstring>& words, Streams streams = Streams::pipes,
                          DWORD pipeSize = 1 << 16);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    void PressCtrlC() const;
    void Type(const std::wstring& text) const;

    // Waits until the text stands on the child's console; false when it does not come within half a minute.
    bool WaitForScreen(const std::wstring& text) const;

    DWORD WaitForExitCode() const;    // STILL_ACTIVE when it does not end within a minute

    Pipe out;
    Pipe errors;

private:
    PROCESS_INFORMATION process{};
};

// What a finished run left.
struct RunResult
{
    DWORD exitCode;
    std::string out;
    std::string errors;
};

RunResult RunToEnd(const std::vector<std::wstring>& words);
