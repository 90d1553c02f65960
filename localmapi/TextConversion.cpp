#include "localmapi/TextConversion.h"

#include <bit>
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

// Four bytes as four code units, in their order.
std::uint64_t Spread(std::uint32_t bytes)
{
    const std::uint64_t pairs = (bytes | std::uint64_t{bytes} << 16) & 0x0000FFFF0000FFFF;
    return (pairs | pairs << 8) & 0x00FF00FF00FF00FF;
}

// Widens the text up to its first few bytes that are not all ASCII, or to its last few; gives how far. Most
// mail is ASCII, whose characters are their own code units.
std::size_t WidenAscii(std::string_view text, wchar_t* buffer)
{
    constexpr std::uint64_t highBits = 0x8080808080808080;
    static_assert(std::endian::native == std::endian::little);
    std::size_t place = 0;
    for (std::uint64_t few = 0; place + sizeof(few) <= text.size(); place += sizeof(few))
    {
        std::memcpy(&few, text.data() + place, sizeof(few));
        if (few & highBits)
            break;
        const std::uint64_t wide[] = {Spread(static_cast<std::uint32_t>(few)),
                                      Spread(static_cast<std::uint32_t>(few >> 32))};
        std::memcpy(buffer + place, wide, sizeof(wide));
    }
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
