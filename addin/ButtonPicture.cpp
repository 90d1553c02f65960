#include "addin/ButtonPicture.h"

#include "res/resource.h"
#include "win/GdiObject.h"
#include "win/ThisModule.h"

#include <windows.h>

namespace
{
// The clipboard, opened for no window, from here until its end.
class OpenedClipboard
{
public:
    OpenedClipboard() noexcept : opened(::OpenClipboard(nullptr)) {}
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;
    ~OpenedClipboard()
    {
        if (opened)
            ::CloseClipboard();
    }

    explicit operator bool() const noexcept { return opened; }

private:
    BOOL opened;
};

// Its greys become those of the user's buttons.
BitmapHandle LoadButtonPicture() noexcept
{
    return BitmapHandle(static_cast<HBITMAP>(
        ::LoadImageW(ThisModule(), MAKEINTRESOURCEW(IDB_BUTTON), IMAGE_BITMAP, 0, 0, LR_LOADMAP3DCOLORS)));
}
}    // namespace

bool PutButtonPictureOnClipboard() noexcept
{
    // The clipboard keeps a picture of its own: ours goes when the clipboard is closed.
    const BitmapHandle picture = LoadButtonPicture();
    const OpenedClipboard clipboard;
    return picture && clipboard && ::EmptyClipboard() && ::SetClipboardData(CF_BITMAP, picture.get());
}
