#include "localmapi/TextConversion.h"

#include <cstddef>
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
    return WideFrom(CP_UTF8, text);
}

std::size_t WideFromUtf8(std::string_view text, wchar_t* buffer)
{
    return WideFrom(CP_UTF8, text, buffer);
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
