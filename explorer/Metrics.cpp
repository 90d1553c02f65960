#include "explorer/Metrics.h"

#include <windows.h>

FontHandle MakeMessageFont(bool bold)
{
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    ::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
    if (bold)
        metrics.lfMessageFont.lfWeight = FW_BOLD;
    return FontHandle(::CreateFontIndirectW(&metrics.lfMessageFont));
}
