#include "win/StringTable.h"

#include <windows.h>

namespace
{
std::wstring TextOfArgument(const TextArgument& argument)
{
    if (const std::wstring* text = std::get_if<std::wstring>(&argument))
        return *text;
    return std::to_wstring(std::get<long>(argument));
}
}    // namespace

std::wstring FormatText(const std::wstring& pattern, std::initializer_list<TextArgument> arguments)
{
    std::wstring text;
    auto next = arguments.begin();
    for (std::size_t i = 0; i < pattern.size(); ++i)
    {
        const wchar_t kind = pattern[i] == L'%' && i + 1 < pattern.size() ? pattern[i + 1] : L'\0';
        if (kind != L's' && kind != L'd')
        {
            text += pattern[i];
            continue;
        }
        if (next != arguments.end())
            text += TextOfArgument(*next++);
        ++i;
    }
    return text;
}

std::wstring StringTable::Load(UINT id) const
{
    // A length of 0 asks for the resource itself, which has no terminating zero.
    const wchar_t* text = nullptr;
    const int length = ::LoadStringW(module, id, reinterpret_cast<wchar_t*>(&text), 0);
    return length > 0 ? std::wstring(text, static_cast<std::size_t>(length)) : std::wstring();
}

std::wstring StringTable::Format(UINT id, std::initializer_list<TextArgument> arguments) const
{
    return FormatText(Load(id), arguments);
}
