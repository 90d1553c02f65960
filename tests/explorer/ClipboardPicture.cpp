#include "tests/explorer/ClipboardPicture.h"

#include "explorer/DeviceContext.h"
#include "win/GdiObject.h"

#include <windows.h>

void PutPictureOnClipboard(COLORREF colour)
{
    constexpr int size = 16;
    const WindowContext screen(nullptr);
    BitmapHandle picture(::CreateCompatibleBitmap(screen.get(), size, size));
    {
        const MemoryContext context;
        const SelectedObject selected(context.get(), picture.get());
        const BrushHandle brush(::CreateSolidBrush(colour));
        const RECT inner{2, 2, size - 2, size - 2};
        ::FillRect(context.get(), &inner, brush.get());
    }
    if (!::OpenClipboard(nullptr))
        return;
    ::EmptyClipboard();
    if (::SetClipboardData(CF_BITMAP, picture.get()))
        (void)picture.release();    // now the clipboard's
    ::CloseClipboard();
}
