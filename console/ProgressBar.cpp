#include "console/ProgressBar.h"

#include <string>
#include <utility>

ProgressBar::ProgressBar(OutputStream& terminal, Clock clock) : terminal(terminal), clock(std::move(clock)) {}

void ProgressBar::Show(int percent, long long duplicates)
{
    constexpr unsigned long long interval = 100;
    const unsigned long long now = clock();
    if (now < nextDrawing)
        return;
    nextDrawing = now + interval;

    constexpr int width = 40;
    std::wstring line = L"[";
    line.append(static_cast<std::size_t>(percent * width / 100), L'#');
    line.append(static_cast<std::size_t>(width - percent * width / 100), L'.');
    line += L"] " + std::to_wstring(percent) + L"%, duplicates: " + std::to_wstring(duplicates);
    terminal.Write(L"\r" + line);
    drawnLength = line.size();
}

void ProgressBar::Clear()
{
    if (drawnLength == 0)
        return;
    terminal.Write(L"\r" + std::wstring(drawnLength, L' ') + L"\r");
    drawnLength = 0;
}
