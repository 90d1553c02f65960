#include "tests/import/ChildProcess.h"

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
constexpr int nobody = 65534;

std::filesystem::path NewTemporaryFile()
{
    std::string name = (std::filesystem::temp_directory_path() / "import-child-XXXXXX").string();
    const int descriptor = mkstemp(name.data());
    if (descriptor < 0)
        throw std::runtime_error("no temporary file");
    close(descriptor);
    return name;
}

std::string Contents(const std::filesystem::path& path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

void Redirect(const std::filesystem::path& path, int descriptor)
{
    dup2(open(path.c_str(), O_WRONLY | O_TRUNC), descriptor);
}

void Restrict(const ChildOptions& options)
{
    if (options.fileSizeLimit)
    {
        const rlimit limit = {*options.fileSizeLimit, *options.fileSizeLimit};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    if (options.withoutPrivileges && geteuid() == 0 && (setgid(nobody) != 0 || setuid(nobody) != 0))
        _exit(126);
}

int ExitCode(int status)
{
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}
}    // namespace

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& arguments,
                           const ChildOptions& options)
    : outputPath(NewTemporaryFile()),
      errorPath(NewTemporaryFile())
{
    const std::string path = std::string(std::getenv("TQODR_DIST")) + "/" + program;
    std::vector<char*> argv = {const_cast<char*>(path.c_str())};
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    process = fork();
    if (process != 0)
        return;
    Redirect(outputPath, STDOUT_FILENO);
    Redirect(errorPath, STDERR_FILENO);
    Restrict(options);
    execv(path.c_str(), argv.data());
    _exit(127);
}

ChildProcess::~ChildProcess()
{
    if (IsRunning())
    {
        kill(process, SIGKILL);
        Wait();
    }
    std::filesystem::remove(outputPath);
    std::filesystem::remove(errorPath);
}

void ChildProcess::Signal(int number) const
{
    kill(process, number);
}

bool ChildProcess::IsRunning()
{
    int value = 0;
    if (!status && waitpid(process, &value, WNOHANG) == process)
        status = value;
    return !status;
}

ChildResult ChildProcess::Wait()
{
    int value = 0;
    if (!status && waitpid(process, &value, 0) == process)
        status = value;
    return {ExitCode(status.value_or(0)), Contents(outputPath), Contents(errorPath)};
}

ChildResult RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                       const ChildOptions& options)
{
    return ChildProcess(program, arguments, options).Wait();
}
