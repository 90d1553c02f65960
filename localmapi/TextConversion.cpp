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

std::wstring WideFrom(UINT codePage, std::string_view text)
{
    const int length = CheckedLength(text.size());
    std::wstring wide(length ? MultiByteToWideChar(codePage, 0, text.data(), length, nullptr, 0) : 0, L'\0');
    if (!wide.empty())
        MultiByteToWideChar(codePage, 0, text.data(), length, wide.data(), static_cast<int>(wide.size()));
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
