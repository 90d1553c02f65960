#include "explorer/ReadingText.h"

#include "explorer/MessagePane.h"

std::wstring ReadingText(const MessageRow& row, const std::wstring& text)
{
    std::wstring shown = L"From: " + row.sender + L"\r\nSubject: " + row.subject + L"\r\nReceived: " +
                         FormatTime(row.received) + L"\r\n\r\n";
    // Mail comes with any line ends; the control knows one.
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        const bool bareEnd = text[i] == L'\n' && (i == 0 || text[i - 1] != L'\r');
        const bool bareReturn = text[i] == L'\r' && (i + 1 == text.size() || text[i + 1] != L'\n');
        if (bareEnd)
            shown += L"\r\n";
        else if (bareReturn)
            shown += L"\r\n";
        else
            shown += text[i];
    }
    return shown;
}
