#include "console/Console.h"

#include "console/Text.h"

#include <array>
#include <string_view>

void Console::Complain(const std::wstring& text)
{
    errors.WriteLine(L"tqodr: " + text);
}

bool Console::CanAsk() const
{
    DWORD mode = 0;
    return errors.IsTerminal() && GetConsoleMode(input, &mode);
}

bool Console::Ask(const std::wstring& question)
{
    FlushConsoleInputBuffer(input);
    errors.Write(question);
    std::array<wchar_t, 128> buffer{};
    DWORD read = 0;
    if (!ReadConsoleW(input, buffer.data(), static_cast<DWORD>(buffer.size()), &read, nullptr))
        return false;
    std::wstring_view answer(buffer.data(), read);
    answer = answer.substr(0, answer.find_first_of(L"\r\n"));
    return EqualIgnoringCase(answer, L"y") || EqualIgnoringCase(answer, L"yes");
}
