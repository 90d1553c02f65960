#pragma once

#include "console/OutputStream.h"

#include <windows.h>

#include <string>

// What the process ends with.
enum class ExitCode : int
{
    done = 0,
    wrongUsage = 1,
    storeNotOpened = 2,
    stopped = 3,
    failed = 4
};

// The process's standard streams.
struct Console
{
    HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    OutputStream out{GetStdHandle(STD_OUTPUT_HANDLE)};
    OutputStream errors{GetStdHandle(STD_ERROR_HANDLE)};

    // One line on standard error, under the program's name.
    void Complain(const std::wstring& text);

    // True when there is somebody to ask.
    bool CanAsk() const;

    // Asks on the terminal; true for y or yes. Answers typed before the question do not count.
    bool Ask(const std::wstring& question);
};
