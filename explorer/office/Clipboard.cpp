#include "explorer/office/Clipboard.h"

#include <windows.h>

#include <comdef.h>

namespace
{
[[noreturn]] void ThrowLastError()
{
    const DWORD error = ::GetLastError();
    throw _com_error(error ? HRESULT_FROM_WIN32(error) : E_FAIL);
}

// The clipboard, opened from here until its end.
class Clipboard
{
public:
    explicit Clipboard(HWND window)
    {
        if (!::OpenClipboard(window))
            ThrowLastError();
    }
    Clipboard(const Clipboard&) = delete;
    Clipboard& operator=(const Clipboard&) = delete;
    ~Clipboard() { ::CloseClipboard(); }
};
}    // namespace

BitmapHandle CopyBitmapFromClipboard(HWND window)
{
    if (!::IsClipboardFormatAvailable(CF_BITMAP))
        throw _com_error(DV_E_CLIPFORMAT);
    const Clipboard opened(window);
    const HANDLE shared = ::GetClipboardData(CF_BITMAP);    // the clipboard's
    BitmapHandle copy(static_cast<HBITMAP>(shared ? ::CopyImage(shared, IMAGE_BITMAP, 0, 0, 0) : nullptr));
    if (!copy)
        ThrowLastError();
    return copy;
}
