#include "console/Console.h"

#include "console/Text.h"

#include <array>

void Console::Complain(const std::wstring& text)
{
    errors.WriteLine(L"tqodr: " + text);
}

bool Console::CanAsk() const
{
    DWORD mode = 0;
    return errors.IsTerminal() && GetConsoleMode(input, &mode);
}

bool Console::Ask(const std::wstring& question, const std::atomic<LONG>& stopRequested)
{
    FlushConsoleInputBuffer(input);
    errors.Write(question);
    isAsking = true;
    // Looked at after the line above: from there on, a stop gives the question up.
    const std::wstring answer = stopRequested ? L"" : ReadLine();
    isAsking = false;
    if (stopRequested)
        FlushConsoleInputBuffer(input);
    return !stopRequested && (EqualIgnoringCase(answer, L"y") || EqualIgnoringCase(answer, L"yes"));
}

std::wstring Console::ReadLine() const
{
    std::array<wchar_t, 128> buffer{};
    DWORD read = 0;
    if (!ReadConsoleW(input, buffer.data(), static_cast<DWORD>(buffer.size()), &read, nullptr))
        return {};
    const std::wstring line(buffer.data(), read);
    return line.substr(0, line.find_first_of(L"\r\n"));
}

void Console::GiveUpQuestion()
{
    if (!isAsking)
        return;
    INPUT_RECORD enter{};
    enter.EventType = KEY_EVENT;
    enter.Event.KeyEvent.bKeyDown = TRUE;
    enter.Event.KeyEvent.wRepeatCount = 1;
    enter.Event.KeyEvent.wVirtualKeyCode = VK_RETURN;
    enter.Event.KeyEvent.uChar.UnicodeChar = L'\r';
    DWORD written = 0;
    WriteConsoleInputW(input, &enter, 1, &written);
}
