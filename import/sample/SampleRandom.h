#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

// The same numbers on every machine for the same seed (splitmix64).
class SampleRandom
{
public:
    explicit SampleRandom(uint64_t seed) : state(seed) {}

    // From 0 to `end` - 1.
    size_t Below(size_t end)
    {
        state += 0x9E3779B97F4A7C15;
        uint64_t mixed = state;
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EB;
        return static_cast<size_t>((mixed ^ (mixed >> 31)) % end);
    }

    bool OneIn(size_t count) { return Below(count) == 0; }

    template <typename List>
    const auto& PickFrom(const List& list)
    {
        return *(std::begin(list) + static_cast<std::ptrdiff_t>(Below(std::size(list))));
    }

private:
    uint64_t state;
};
