#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>

// Also ends the process, whatever became of the test.
struct ProcessEnder
{
    using pointer = HANDLE;
    void operator()(HANDLE process) const
    {
        TerminateProcess(process, 1);
        CloseHandle(process);
    }
};
using OwnedProcess = std::unique_ptr<HANDLE, ProcessEnder>;

// Runs one disabled test of this program ("Suite.DISABLED_Name") in a process of its own, which inherits the
// environment.
inline OwnedProcess StartInThisProgram(const std::wstring& test)
{
    wchar_t program[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    std::wstring command = L"\"" + std::wstring(program) +
                           L"\" --gtest_also_run_disabled_tests --gtest_brief=1 --gtest_filter=" + test;
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    const BOOL started = CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                                        &startup, &process);
    EXPECT_TRUE(started) << "error " << GetLastError();
    if (started)
        CloseHandle(process.hThread);
    return OwnedProcess(process.hProcess);
}
