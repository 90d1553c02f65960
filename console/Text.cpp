#include "console/Text.h"

#include <windows.h>

#include <algorithm>

bool EqualIgnoringCase(std::wstring_view left, std::wstring_view right)
{
    return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

std::wstring Quoted(std::wstring_view text)
{
    return L'"' + OnOneLine(text) + L'"';
}

std::wstring JoinAlternatives(const std::vector<std::wstring>& texts)
{
    std::wstring joined;
    for (std::size_t i = 0; i < texts.size(); ++i)
    {
        if (i > 0)
            joined += i + 1 == texts.size() ? L" or " : L", ";
        joined += texts[i];
    }
    return joined;
}

static bool IsControl(wchar_t c)
{
    // C0, DEL, C1, the separators of lines and paragraphs, and the marks that turn a line's direction.
    return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x2028 || c == 0x2029 ||
           (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

std::wstring OnOneLine(std::wstring_view text)
{
    std::wstring line(text);
    std::replace_if(line.begin(), line.end(), IsControl, L' ');
    return line;
}

static bool IsHighSurrogate(wchar_t c)
{
    return c >= 0xD800 && c <= 0xDBFF;
}

int CountColumns(std::wstring_view text)
{
    return static_cast<int>(text.size() - std::count_if(text.begin(), text.end(), IsHighSurrogate));
}

std::wstring Shortened(std::wstring_view text, int columns)
{
    if (CountColumns(text) <= columns)
        return std::wstring(text);
    constexpr std::wstring_view ellipsis = L"...";
    std::wstring kept;
    int left = columns - static_cast<int>(ellipsis.size());
    for (const wchar_t c : text)
    {
        // A surrogate pair is counted at its second half, so that it is kept whole or not at all.
        if (!IsHighSurrogate(c) && --left < 0)
            break;
        kept += c;
    }
    while (!kept.empty() && IsHighSurrogate(kept.back()))
        kept.pop_back();
    return kept + std::wstring(ellipsis);
}

std::wstring Padded(std::wstring_view text, int columns)
{
    std::wstring padded(text);
    padded.append(static_cast<std::size_t>(std::max(0, columns - CountColumns(text))), L' ');
    return padded;
}
