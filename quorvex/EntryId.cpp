#include "quorvex/EntryId.h"

#include "quorvex/MapiError.h"

namespace
{
int DigitValue(wchar_t digit)
{
    if (digit >= L'0' && digit <= L'9')
        return digit - L'0';
    if (digit >= L'A' && digit <= L'F')
        return digit - L'A' + 10;
    if (digit >= L'a' && digit <= L'f')
        return digit - L'a' + 10;
    throw MapiError(E_INVALIDARG, L"An entry id is text of hexadecimal digits, two for each byte.");
}
}    // namespace

std::wstring ToHex(std::span<const std::uint8_t> bytes)
{
    static constexpr wchar_t digits[] = L"0123456789ABCDEF";
    std::wstring text;
    text.reserve(bytes.size() * 2);
    for (const std::uint8_t byte : bytes)
    {
        text.push_back(digits[byte >> 4]);
        text.push_back(digits[byte & 15]);
    }
    return text;
}

EntryIdBytes FromHex(std::wstring_view text)
{
    if (text.size() % 2 != 0)
        throw MapiError(E_INVALIDARG, L"An entry id has two hexadecimal digits for each byte.");
    EntryIdBytes bytes;
    bytes.reserve(text.size() / 2);
    for (std::size_t i = 0; i < text.size(); i += 2)
        bytes.push_back(static_cast<std::uint8_t>(DigitValue(text[i]) * 16 + DigitValue(text[i + 1])));
    return bytes;
}
