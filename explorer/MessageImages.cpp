#include "explorer/MessageImages.h"

#include "explorer/DeviceContext.h"
#include "explorer/Face.h"
#include "explorer/mail/MessageTable.h"
#include "win/GdiObject.h"

#include <windows.h>

namespace
{
// A picture's index is the sum of these.
constexpr int unreadBit = 1;
constexpr int flaggedBit = 2;
constexpr int expiredBit = 4;
constexpr int imageCount = 8;

constexpr COLORREF ground = RGB(255, 0, 255);    // becomes transparent
constexpr COLORREF outline = RGB(96, 96, 96);
constexpr COLORREF closedPaper = RGB(255, 220, 110);
constexpr COLORREF openPaper = RGB(255, 255, 255);
constexpr COLORREF flagColour = RGB(210, 20, 20);

// Draws on a grid of 16 by 16 fields, whatever the size of the picture.
class Grid
{
public:
    Grid(HDC context, int left, int size) noexcept : context(context), left(left), size(size) {}

    POINT At(int x, int y) const noexcept { return {left + x * size / 16, y * size / 16}; }
    template <std::size_t count>
    void Polygon(const POINT (&points)[count], COLORREF line, COLORREF fill) const
    {
        const GdiObject<HPEN> pen(::CreatePen(PS_SOLID, 1, line));
        const BrushHandle brush(::CreateSolidBrush(fill));
        const SelectedObject penSelected(context, pen.get());
        const SelectedObject brushSelected(context, brush.get());
        ::Polygon(context, points, static_cast<int>(count));
    }
    template <std::size_t count>
    void Lines(const POINT (&points)[count], COLORREF line, int width) const
    {
        const GdiObject<HPEN> pen(::CreatePen(PS_SOLID, width, line));
        const SelectedObject penSelected(context, pen.get());
        ::Polyline(context, points, static_cast<int>(count));
    }

private:
    HDC context;
    int left;
    int size;
};

void DrawMessage(const Grid& grid, int bits)
{
    const bool unread = (bits & unreadBit) != 0;
    grid.Polygon({grid.At(1, 4), grid.At(14, 4), grid.At(14, 13), grid.At(1, 13)}, outline,
                 unread ? closedPaper : openPaper);
    if (unread)
        grid.Lines({grid.At(1, 4), grid.At(7, 9), grid.At(14, 4)}, outline, 1);
    else
        grid.Lines({grid.At(1, 4), grid.At(7, 1), grid.At(14, 4)}, outline, 1);
    if (bits & flaggedBit)
    {
        grid.Polygon({grid.At(9, 0), grid.At(15, 3), grid.At(9, 6)}, flagColour, flagColour);
        grid.Lines({grid.At(9, 0), grid.At(9, 12)}, flagColour, 1);
    }
    if (bits & expiredBit)
    {
        grid.Lines({grid.At(1, 8), grid.At(8, 15)}, outline, 2);
        grid.Lines({grid.At(8, 8), grid.At(1, 15)}, outline, 2);
    }
}
}    // namespace

CImageList MakeMessageImages()
{
    const int size = FaceSize();
    const WindowContext screen(nullptr);
    const BitmapHandle strip(::CreateCompatibleBitmap(screen.get(), size * imageCount, size));
    {
        const MemoryContext context;
        const SelectedObject selected(context.get(), strip.get());
        const BrushHandle brush(::CreateSolidBrush(ground));
        const RECT whole{0, 0, size * imageCount, size};
        ::FillRect(context.get(), &whole, brush.get());
        for (int bits = 0; bits < imageCount; ++bits)
            DrawMessage(Grid(context.get(), bits * size, size), bits);
    }
    CImageList images;
    images.Create(size, size, ILC_COLOR24 | ILC_MASK, imageCount, 1);
    images.Add(strip.get(), ground);
    return images;
}

int ImageOf(const MessageRow& row) noexcept
{
    return (row.unread ? unreadBit : 0) + (row.flagged ? flaggedBit : 0) + (row.expired ? expiredBit : 0);
}
