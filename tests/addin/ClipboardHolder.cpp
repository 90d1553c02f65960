#include "tests/addin/ClipboardHolder.h"

#include <windows.h>

#include <cstring>
#include <cwchar>
#include <memory>
#include <stdexcept>
#include <type_traits>

namespace
{
struct WindowDestroyer
{
    void operator()(HWND window) const noexcept { ::DestroyWindow(window); }
};
using Window = std::unique_ptr<std::remove_pointer_t<HWND>, WindowDestroyer>;
}    // namespace

ClipboardHolder::ClipboardHolder() : thread(&ClipboardHolder::Hold, this)
{
    if (opened.get_future().get())
        return;
    thread.join();
    throw std::runtime_error("the clipboard does not open");
}

ClipboardHolder::~ClipboardHolder()
{
    enough.set_value();
    thread.join();
}

void ClipboardHolder::Hold()
{
    const Window window(
        ::CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr));
    const bool open = ::OpenClipboard(window.get()) != FALSE;
    opened.set_value(open);
    if (!open)
        return;
    enough.get_future().wait();
    ::CloseClipboard();
}

void PutTextOnClipboard(const wchar_t* text)
{
    const std::size_t size = (std::wcslen(text) + 1) * sizeof(wchar_t);
    const HGLOBAL memory = ::GlobalAlloc(GMEM_MOVEABLE, size);
    std::memcpy(::GlobalLock(memory), text, size);
    ::GlobalUnlock(memory);
    const bool done =
        ::OpenClipboard(nullptr) && ::EmptyClipboard() && ::SetClipboardData(CF_UNICODETEXT, memory);
    ::CloseClipboard();
    if (!done)
        throw std::runtime_error("no text can be put on the clipboard");
}
