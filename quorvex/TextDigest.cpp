#include "quorvex/TextDigest.h"

#include "quorvex/MapiError.h"

#include <windows.h>

#include <bcrypt.h>

#include <bit>
#include <cstring>

namespace
{
std::uint64_t ReadWord(const std::uint8_t* bytes) noexcept
{
    std::uint64_t word;
    std::memcpy(&word, bytes, sizeof(word));    // Windows is little-endian everywhere
    return word;
}

TextDigester::Key RandomKey()
{
    TextDigester::Key key;
    const NTSTATUS status =
        BCryptGenRandom(nullptr, key.data(), static_cast<ULONG>(key.size()), BCRYPT_USE_SYSTEM_PREFERRED_RNG);
    CheckMapi(status >= 0 ? S_OK : HRESULT_FROM_NT(status), L"get a random number");
    return key;
}

// The four words of the algorithm's state.
struct SipState
{
    std::uint64_t v0, v1, v2, v3;

    void Round() noexcept
    {
        v0 += v1;
        v1 = std::rotl(v1, 13) ^ v0;
        v0 = std::rotl(v0, 32);
        v2 += v3;
        v3 = std::rotl(v3, 16) ^ v2;
        v0 += v3;
        v3 = std::rotl(v3, 21) ^ v0;
        v2 += v1;
        v1 = std::rotl(v1, 17) ^ v2;
        v2 = std::rotl(v2, 32);
    }

    void Absorb(std::uint64_t word) noexcept
    {
        v3 ^= word;
        Round();
        Round();
        v0 ^= word;
    }

    // Half the work, for what another state absorbs once more.
    void AbsorbLightly(std::uint64_t word) noexcept
    {
        v3 ^= word;
        Round();
        v0 ^= word;
    }

    std::uint64_t Finish() noexcept
    {
        for (int round = 0; round < 4; ++round)
            Round();
        return v0 ^ v1 ^ v2 ^ v3;
    }

    // The 128-bit form's result. 0xEE and 0xDD are its own constants.
    Digest FinishTwice() noexcept
    {
        Digest digest;
        v2 ^= 0xEE;
        digest.low = Finish();
        v1 ^= 0xDD;
        digest.high = Finish();
        return digest;
    }
};

// The 128-bit form's state before it has absorbed anything. States of different `purpose` have nothing in
// common.
SipState StartOf(std::uint64_t first, std::uint64_t second, std::uint64_t purpose) noexcept
{
    return {first ^ 0x736F6D6570736575 ^ purpose, second ^ 0x646F72616E646F6D ^ 0xEE,
            first ^ 0x6C7967656E657261, second ^ 0x7465646279746573};
}

namespace purpose
{
constexpr std::uint64_t wholeValue = 0;    // the published algorithm
constexpr std::uint64_t evenWords = 1;
constexpr std::uint64_t oddWords = 2;
constexpr std::uint64_t longValue = 3;
}    // namespace purpose

// From so many bytes on a value is taken apart.
constexpr std::size_t longValueSize = 512;

// The length's low byte above the bytes that fill no whole word.
std::uint64_t LastWord(std::span<const std::uint8_t> bytes) noexcept
{
    std::uint64_t word = static_cast<std::uint64_t>(bytes.size()) << 56;
    const std::size_t whole = bytes.size() & ~std::size_t{7};
    for (std::size_t place = whole; place < bytes.size(); ++place)
        word |= static_cast<std::uint64_t>(bytes[place]) << (8 * (place - whole));
    return word;
}
}    // namespace

TextDigester::TextDigester() : TextDigester(RandomKey()) {}

TextDigester::TextDigester(const Key& key) noexcept
    : first(ReadWord(key.data())),
      second(ReadWord(key.data() + 8))
{
}

Digest TextDigester::OfBytes(std::span<const std::uint8_t> bytes) const noexcept
{
    Digest digest = bytes.size() < longValueSize ? OfShortValue(bytes) : OfLongValue(bytes);
    if (digest == unknownDigest || digest == missingDigest)
        digest.low += 2;
    return digest;
}

Digest TextDigester::OfShortValue(std::span<const std::uint8_t> bytes) const noexcept
{
    SipState state = StartOf(first, second, purpose::wholeValue);
    for (std::size_t place = 0; place + 8 <= bytes.size(); place += 8)
        state.Absorb(ReadWord(bytes.data() + place));
    state.Absorb(LastWord(bytes));
    return state.FinishTwice();
}

// One state has to wait for itself at every word; two that take turns keep the processor busy.
Digest TextDigester::OfLongValue(std::span<const std::uint8_t> bytes) const noexcept
{
    SipState even = StartOf(first, second, purpose::evenWords);
    SipState odd = StartOf(first, second, purpose::oddWords);
    std::size_t place = 0;
    for (; place + 16 <= bytes.size(); place += 16)
    {
        even.AbsorbLightly(ReadWord(bytes.data() + place));
        odd.AbsorbLightly(ReadWord(bytes.data() + place + 8));
    }

    SipState state = StartOf(first, second, purpose::longValue);
    for (const Digest& half : {even.FinishTwice(), odd.FinishTwice()})
    {
        state.Absorb(half.low);
        state.Absorb(half.high);
    }
    state.Absorb(bytes.size());
    const auto rest = bytes.subspan(place);
    if (rest.size() >= 8)
        state.Absorb(ReadWord(rest.data()));
    state.Absorb(LastWord(rest));
    return state.FinishTwice();
}

Digest TextDigester::OfText(std::wstring_view text) const noexcept
{
    return OfBytes({reinterpret_cast<const std::uint8_t*>(text.data()), text.size() * sizeof(wchar_t)});
}
