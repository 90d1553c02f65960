#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

struct ChildOptions
{
    std::optional<size_t> fileSizeLimit;    // bytes a file may have at most
    bool withoutPrivileges = false;         // as nobody, when the test runs as root
};

struct ChildResult
{
    int exitCode = -1;    // 128 + N when signal N ended the program
    std::string output;
    std::string errors;
};

// A delivered program running as a process of its own. Its output is collected by Wait.
class ChildProcess
{
public:
    ChildProcess(const std::string& program, const std::vector<std::string>& arguments,
                 const ChildOptions& options = {});
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    void Signal(int number) const;
    bool IsRunning();
    ChildResult Wait();

private:
    std::filesystem::path outputPath;
    std::filesystem::path errorPath;
    int process = -1;
    std::optional<int> status;
};

ChildResult RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                       const ChildOptions& options = {});
