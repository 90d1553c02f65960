#pragma once

#include "console/OutputStream.h"

#include <functional>

// One line at the foot of a terminal that is drawn again in place, at most ten times a second.
class ProgressBar
{
public:
    using Clock = std::function<unsigned long long()>;    // milliseconds

    explicit ProgressBar(OutputStream& terminal, Clock clock = GetTickCount64);

    void Show(int percent, long long duplicates);
    void Clear();    // takes the line away, so that something else may be written there

private:
    OutputStream& terminal;
    Clock clock;
    unsigned long long nextDrawing = 0;
    std::size_t drawnLength = 0;
};
