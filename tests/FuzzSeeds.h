#pragma once

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <string>

// The seeds of a test that goes on with new ones for TQODR_FUZZ_SECONDS seconds (2 when that is not set), or
// TQODR_FUZZ_SEED alone when that is. There is always a first one.
class FuzzSeeds
{
public:
    FuzzSeeds()
    {
        if (const char* only = std::getenv("TQODR_FUZZ_SEED"))
            seed = static_cast<std::uint32_t>(std::strtoul(only, nullptr, 10));
        else if (const char* seconds = std::getenv("TQODR_FUZZ_SECONDS"))
            end += std::chrono::seconds(std::atoi(seconds));
        else
            end += std::chrono::seconds(2);
    }

    std::uint32_t Current() const { return seed; }

    // What repeats the seed, for the message of a failure.
    std::string Name() const { return "TQODR_FUZZ_SEED=" + std::to_string(seed); }

    // Goes on to the next one; false when the time is over.
    bool Next()
    {
        ++seed;
        return std::chrono::steady_clock::now() < end;
    }

private:
    std::chrono::steady_clock::time_point end = std::chrono::steady_clock::now();
    std::uint32_t seed = 1;
};
