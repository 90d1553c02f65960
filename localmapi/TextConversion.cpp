#include "localmapi/TextConversion.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace
{
int CheckedLength(std::size_t length)
{
    if (length > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        throw std::length_error("The text is too long.");
    return static_cast<int>(length);
}

// No encoding takes fewer bytes than UTF-16 takes code units, so the bytes' number is room enough.
std::size_t WideFrom(UINT codePage, std::string_view text, wchar_t* buffer)
{
    const int length = CheckedLength(text.size());
    return length ? MultiByteToWideChar(codePage, 0, text.data(), length, buffer, length) : 0;
}

// So many at once that a compiler takes them by its widest instructions.
constexpr std::size_t blockSize = 16;

bool IsAsciiBlock(const char* bytes)
{
    std::array<std::uint64_t, blockSize / sizeof(std::uint64_t)> words;
    std::memcpy(words.data(), bytes, blockSize);
    std::uint64_t any = 0;
    for (const std::uint64_t word : words)
        any |= word;
    return (any & 0x8080808080808080) == 0;
}

// By copies of its own: of the caller's two a compiler must think that they may overlap.
void WidenBlock(const char* bytes, wchar_t* buffer)
{
    std::array<unsigned char, blockSize> narrow;
    std::array<wchar_t, blockSize> wide;
    std::memcpy(narrow.data(), bytes, sizeof(narrow));
    for (std::size_t place = 0; place < blockSize; ++place)
        wide[place] = narrow[place];
    std::memcpy(buffer, wide.data(), sizeof(wide));
}

// Widens the text up to its first byte that is not ASCII, or to its end; gives how
// far. Most mail is ASCII, whose characters are their own code units.
std::size_t WidenAscii(std::string_view text, wchar_t* buffer)
{
    std::size_t place = 0;
    for (; place + blockSize <= text.size() && IsAsciiBlock(text.data() + place); place += blockSize)
        WidenBlock(text.data() + place, buffer + place);
    for (; place < text.size() && static_cast<unsigned char>(text[place]) < 0x80; ++place)
        buffer[place] = static_cast<unsigned char>(text[place]);
    return place;
}

std::wstring WideFrom(UINT codePage, std::string_view text)
{
    std::wstring wide(text.size(), L'\0');
    wide.resize(WideFrom(codePage, text, wide.data()));
    return wide;
}

std::string NarrowFrom(UINT codePage, std::wstring_view text)
{
    const int length = CheckedLength(text.size());
    std::string narrow(
        length ? WideCharToMultiByte(codePage, 0, text.data(), length, nullptr, 0, nullptr, nullptr) : 0,
        '\0');
    if (!narrow.empty())
        WideCharToMultiByte(codePage, 0, text.data(), length, narrow.data(), static_cast<int>(narrow.size()),
                            nullptr, nullptr);
    return narrow;
}
}    // namespace

std::wstring WideFromUtf8(std::string_view text)
{
    std::wstring wide(text.size(), L'\0');
    wide.resize(WideFromUtf8(text, wide.data()));
    return wide;
}

std::size_t WideFromUtf8(std::string_view text, wchar_t* buffer)
{
    const std::size_t ascii = WidenAscii(text, buffer);
    return ascii + WideFrom(CP_UTF8, text.substr(ascii), buffer + ascii);
}

std::string Utf8FromWide(std::wstring_view text)
{
    return NarrowFrom(CP_UTF8, text);
}

std::wstring WideFromAnsi(std::string_view text)
{
    return WideFrom(CP_ACP, text);
}

std::string AnsiFromWide(std::wstring_view text)
{
    return NarrowFrom(CP_ACP, text);
}
