#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

// What stands for a value in memory instead of the value: two values are equal when their digests are.
struct Digest
{
    std::uint64_t low = 0;
    std::uint64_t high = 0;

    bool operator==(const Digest&) const = default;
};

// Two digests that no value has: nothing is known of it yet; the property is missing.
inline constexpr Digest unknownDigest{0, 0};
inline constexpr Digest missingDigest{1, 0};

// Makes digests: SipHash-2-4 with 128 bits of result, of long values over two results of the lighter
// SipHash-1-4, one of every other word. Without the key nobody can make two texts that share a digest, so the
// key is random and never leaves the process. Any thread.
class TextDigester
{
public:
    using Key = std::array<std::uint8_t, 16>;

    TextDigester();    // with a random key; throws MapiError when the system gives no random numbers
    explicit TextDigester(const Key& key) noexcept;

    Digest OfBytes(std::span<const std::uint8_t> bytes) const noexcept;
    Digest OfText(std::wstring_view text) const noexcept;

private:
    Digest OfShortValue(std::span<const std::uint8_t> bytes) const noexcept;
    Digest OfLongValue(std::span<const std::uint8_t> bytes) const noexcept;

    std::uint64_t first;
    std::uint64_t second;
};
