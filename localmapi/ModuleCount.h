#pragma once

#include <atomic>

// Counts the objects that keep the library loaded: each holds one of these. Safe on any thread.
class ModuleCount
{
public:
    ModuleCount() noexcept { ++count; }
    ModuleCount(const ModuleCount&) noexcept { ++count; }
    ModuleCount& operator=(const ModuleCount&) noexcept = default;
    ~ModuleCount() { --count; }

    static long Get() noexcept { return count; }

private:
    inline static std::atomic<long> count = 0;
};
