#pragma once

#include "console/OutputStream.h"

#include <windows.h>

#include <atomic>
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
class Console
{
public:
    HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    OutputStream out{GetStdHandle(STD_OUTPUT_HANDLE)};
    OutputStream errors{GetStdHandle(STD_ERROR_HANDLE)};

    // One line on standard error, under the program's name.
    void Complain(const std::wstring& text);

    // True when there is somebody to ask.
    bool CanAsk() const;

    // Asks on the terminal; true for y or yes, false for any other answer and when a stop is requested.
    // Answers typed before the question do not count.
    bool Ask(const std::wstring& question, const std::atomic<LONG>& stopRequested);

    // Gives the empty answer to a question that is waiting for one. Any thread.
    void GiveUpQuestion();

private:
    std::wstring ReadLine() const;

    std::atomic<bool> isAsking{false};
};
