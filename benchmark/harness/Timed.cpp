// Measures whole processes: `timed RUNS OUTPUT BESIDE COMMAND [ARG...]` runs the command so many times, one
// after the other, with its standard output in the file OUTPUT (the last run's stays), and prints of the run
// that took the median time: seconds on the clock, seconds of processor time, and the most memory it had at
// once in KiB. The processor time of process BESIDE meanwhile is added (a server that works for the command);
// 0 for none. Ends with the command's exit status as soon as one run fails.
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
using Clock = std::chrono::steady_clock;

struct Measured
{
    double clock = 0;        // seconds
    double processor = 0;    // seconds
    long memory = 0;         // KiB
    int status = 0;          // as a shell has it
};

// User and system time of a process so far; none for one that is not there.
double ProcessorTime(const std::string& process)
{
    std::ifstream file("/proc/" + process + "/stat");
    std::string line;
    std::getline(file, line);
    // The name in parentheses may hold anything; times are the 12th and 13th field behind it.
    std::istringstream fields(line.substr(std::min(line.rfind(')') + 1, line.size())));
    std::string field;
    for (int number = 0; number < 11; ++number)
        fields >> field;
    double user = 0;
    double system = 0;
    fields >> user >> system;
    return (user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

double Seconds(const timeval& time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

[[noreturn]] void Become(char** command, const char* output)
{
    const int file = open(output, O_WRONLY | O_CREAT | O_TRUNC, 0666);
    const int nothing = open("/dev/null", O_RDONLY);
    if (file >= 0 && dup2(file, STDOUT_FILENO) >= 0 && dup2(nothing, STDIN_FILENO) >= 0)
        execvp(command[0], command);
    std::fprintf(stderr, "timed: %s: %s\n", command[0], std::strerror(errno));
    _exit(127);
}

Measured RunOnce(char** command, const char* output, const std::string& beside)
{
    const double besideBefore = ProcessorTime(beside);
    const Clock::time_point begin = Clock::now();
    const pid_t child = fork();
    if (child < 0)
        throw std::runtime_error(std::strerror(errno));
    if (child == 0)
        Become(command, output);
    int status = 0;
    rusage usage = {};
    while (wait4(child, &status, 0, &usage) < 0)
        if (errno != EINTR)
            throw std::runtime_error(std::strerror(errno));
    Measured measured;
    measured.clock = std::chrono::duration<double>(Clock::now() - begin).count();
    measured.processor =
        Seconds(usage.ru_utime) + Seconds(usage.ru_stime) + ProcessorTime(beside) - besideBefore;
    measured.memory = usage.ru_maxrss;
    measured.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return measured;
}

int Run(int runs, const char* output, const std::string& beside, char** command)
{
    std::vector<Measured> all;
    for (int run = 0; run < runs; ++run)
    {
        all.push_back(RunOnce(command, output, beside));
        if (all.back().status != 0)
            return all.back().status;
    }
    std::ranges::sort(all, {}, &Measured::clock);
    const Measured& median = all[(all.size() - 1) / 2];
    std::printf("%.3f %.3f %ld\n", median.clock, median.processor, median.memory);
    return 0;
}
}    // namespace

int main(int argc, char** argv)
{
    const int runs = argc > 4 ? std::atoi(argv[1]) : 0;
    if (runs < 1)
        return std::fputs("Usage: timed RUNS OUTPUT BESIDE COMMAND [ARG...]\n", stderr), 1;
    try
    {
        return Run(runs, argv[2], argv[3], argv + 4);
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "timed: %s\n", error.what());
        return 2;
    }
}
