#include "explorer/Face.h"

#include "explorer/DeviceContext.h"
#include "explorer/Metrics.h"

#include <windows.h>

#include <commctrl.h>

namespace
{
constexpr int sizeAt96 = 16;

BitmapHandle ScaleFace(HBITMAP face)
{
    const int size = FaceSize();
    return BitmapHandle(static_cast<HBITMAP>(::CopyImage(face, IMAGE_BITMAP, size, size, 0)));
}

COLORREF CornerOf(HBITMAP bitmap)
{
    const MemoryContext context;
    const SelectedObject selected(context.get(), bitmap);
    return ::GetPixel(context.get(), 0, 0);
}
}    // namespace

int FaceSize() noexcept
{
    return Scaled(sizeAt96);
}

int AddFace(CImageList& images, HBITMAP face)
{
    const BitmapHandle scaled = ScaleFace(face);
    return scaled ? images.Add(scaled.get(), CornerOf(scaled.get())) : -1;
}

BitmapHandle MakeMenuFace(HBITMAP face)
{
    const int size = FaceSize();
    CImageList images;
    if (!images.Create(size, size, ILC_COLOR24 | ILC_MASK, 1, 1) || AddFace(images, face) < 0)
        return nullptr;
    const WindowContext screen(nullptr);
    BitmapHandle drawn(::CreateCompatibleBitmap(screen.get(), size, size));
    const MemoryContext context;
    const SelectedObject selected(context.get(), drawn.get());
    const RECT whole{0, 0, size, size};
    ::FillRect(context.get(), &whole, ::GetSysColorBrush(COLOR_MENU));
    ::ImageList_Draw(images.get(), 0, context.get(), 0, 0, ILD_TRANSPARENT);
    return drawn;
}
