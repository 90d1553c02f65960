#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// What every fuzzer defines: takes one input in. The name is libFuzzer's; ReplayMain.cpp calls it as well.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

inline std::string_view TextOf(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}
