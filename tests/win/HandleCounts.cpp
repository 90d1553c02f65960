#include "tests/win/HandleCounts.h"

#include "win/GdiObject.h"

#include <ostream>

namespace
{
// Wine does not keep these counts and answers 0. But it finds an object by the lower word of its handle
// alone, so that every handle there may be can be tried. Handles of GDI objects follow one another by `step`
// 1, of USER objects by 2.
template <typename Predicate>
DWORD CountHandles(DWORD step, Predicate&& isObject)
{
    constexpr DWORD limit = 0x10000;
    DWORD count = 0;
    for (DWORD handle = step; handle < limit; handle += step)
        if (isObject(reinterpret_cast<void*>(static_cast<ULONG_PTR>(handle))))
            ++count;
    return count;
}

DWORD CountGdiObjects()
{
    return CountHandles(1, [](void* handle) { return ::GetObjectType(handle) != 0; });
}

bool IsIconOrCursor(HICON icon)
{
    ICONINFO info{};
    if (!::GetIconInfo(icon, &info))
        return false;
    // Both are copies made for whoever asks.
    const BitmapHandle mask(info.hbmMask);
    const BitmapHandle colour(info.hbmColor);
    return true;
}

// Windows are counted by a walk: whether a handle is one, only the system's server could say.
BOOL CALLBACK CountWindow(HWND window, LPARAM counter)
{
    DWORD process = 0;
    ::GetWindowThreadProcessId(window, &process);
    if (process == ::GetCurrentProcessId())
        ++*reinterpret_cast<DWORD*>(counter);
    return TRUE;
}

DWORD CountWindows()
{
    DWORD count = 0;
    const auto counter = reinterpret_cast<LPARAM>(&count);
    ::EnumChildWindows(::GetDesktopWindow(), &CountWindow, counter);
    // Message-only windows are below no desktop.
    for (HWND window = nullptr;
         (window = ::FindWindowExW(HWND_MESSAGE, window, nullptr, nullptr)) != nullptr;)
    {
        CountWindow(window, counter);
        ::EnumChildWindows(window, &CountWindow, counter);
    }
    return count;
}

DWORD CountUserObjects()
{
    return CountWindows() + CountHandles(2,
                                         [](void* handle) {
                                             return ::IsMenu(static_cast<HMENU>(handle)) ||
                                                    IsIconOrCursor(static_cast<HICON>(handle));
                                         });
}

DWORD Count(DWORD kind, DWORD (*countHandles)())
{
    const DWORD kept = ::GetGuiResources(::GetCurrentProcess(), kind);
    return kept != 0 ? kept : countHandles();
}
}    // namespace

HandleCounts HandleCounts::Now()
{
    return {Count(GR_GDIOBJECTS, &CountGdiObjects), Count(GR_USEROBJECTS, &CountUserObjects)};
}

HandleCounts HandleCounts::WithSlackFor(int rounds) const
{
    const DWORD slack = static_cast<DWORD>(rounds) / 20;
    return {gdi + slack, user + slack};
}

std::ostream& operator<<(std::ostream& stream, const HandleCounts& counts)
{
    return stream << counts.gdi << " GDI objects, " << counts.user << " USER objects";
}

// Not every system counts them for us; then each value that a handle can have is tried, until many in a row
// are none.
DWORD CountKernelHandles()
{
    DWORD kept = 0;
    if (::GetProcessHandleCount(::GetCurrentProcess(), &kept) && kept != 0)
        return kept;
    constexpr ULONG_PTR step = 4;
    constexpr DWORD manyInARow = 512;
    DWORD count = 0;
    DWORD missed = 0;
    for (ULONG_PTR value = step; missed < manyInARow; value += step)
    {
        DWORD flags = 0;
        const bool isHandle = ::GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) != FALSE;
        missed = isHandle ? 0 : missed + 1;
        count += isHandle ? 1 : 0;
    }
    return count;
}
