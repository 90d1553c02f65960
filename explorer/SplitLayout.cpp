#include "explorer/SplitLayout.h"

#include <windows.h>

#include <algorithm>

namespace
{
// Pixels at 96 DPI.
constexpr int gapWidthAt96 = 5;
constexpr int smallestAt96 = 60;
constexpr int folderWidthAt96 = 210;

int Between(int value, int low, int high) noexcept
{
    return high < low ? low : std::clamp(value, low, high);
}
}    // namespace

SplitLayout::SplitLayout(int dpi) noexcept
    : gapWidth(::MulDiv(gapWidthAt96, dpi, USER_DEFAULT_SCREEN_DPI)),
      smallest(::MulDiv(smallestAt96, dpi, USER_DEFAULT_SCREEN_DPI)),
      folderWidth(::MulDiv(folderWidthAt96, dpi, USER_DEFAULT_SCREEN_DPI)),
      messageShare(0.5)
{
}

void SplitLayout::SetArea(const RECT& newArea) noexcept
{
    area = newArea;
    area.right = std::max(area.right, area.left);
    area.bottom = std::max(area.bottom, area.top);
}

int SplitLayout::Left() const noexcept
{
    const int width = area.right - area.left;
    return area.left + Between(folderWidth, smallest, width - gapWidth - smallest);
}

int SplitLayout::Top() const noexcept
{
    const int height = area.bottom - area.top;
    return area.top +
           Between(static_cast<int>(height * messageShare), smallest, height - gapWidth - smallest);
}

RECT SplitLayout::GetFolders() const noexcept
{
    return {area.left, area.top, Left(), area.bottom};
}

RECT SplitLayout::GetMessages() const noexcept
{
    return {Left() + gapWidth, area.top, area.right, Top()};
}

RECT SplitLayout::GetReading() const noexcept
{
    return {Left() + gapWidth, Top() + gapWidth, area.right, area.bottom};
}

SplitLayout::Gap SplitLayout::HitTest(POINT point) const noexcept
{
    const RECT upright{Left(), area.top, Left() + gapWidth, area.bottom};
    const RECT level{Left() + gapWidth, Top(), area.right, Top() + gapWidth};
    if (::PtInRect(&upright, point))
        return Gap::upright;
    return ::PtInRect(&level, point) ? Gap::level : Gap::none;
}

void SplitLayout::Drag(Gap gap, POINT to) noexcept
{
    const int height = area.bottom - area.top;
    if (gap == Gap::upright)
        folderWidth = Between(to.x - area.left, smallest, area.right - area.left - gapWidth - smallest);
    else if (gap == Gap::level && height > 0)
        messageShare = static_cast<double>(to.y - area.top) / height;
}
