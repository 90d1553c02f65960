#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>

// Takes a fuzzer's input apart from its front; behind its end everything is 0 or empty.
class InputReader
{
public:
    InputReader(const std::uint8_t* data, std::size_t size) : rest(data, size) {}

    bool AtEnd() const { return rest.empty(); }

    std::uint8_t Byte()
    {
        if (rest.empty())
            return 0;
        const std::uint8_t byte = rest.front();
        rest = rest.subspan(1);
        return byte;
    }

    std::uint32_t Number(int bytes)
    {
        std::uint32_t number = 0;
        for (int count = 0; count < bytes; ++count)
            number = number << 8 | Byte();
        return number;
    }

    std::string Bytes(std::size_t count)
    {
        const auto taken = rest.first(std::min(count, rest.size()));
        rest = rest.subspan(taken.size());
        return {taken.begin(), taken.end()};
    }

private:
    std::span<const std::uint8_t> rest;
};
