#pragma once

#include <windows.h>

// A window's device context, or with null the screen's, from here until its end.
class WindowContext
{
public:
    explicit WindowContext(HWND window) noexcept : window(window), context(::GetDC(window)) {}
    WindowContext(const WindowContext&) = delete;
    WindowContext& operator=(const WindowContext&) = delete;
    ~WindowContext() { ::ReleaseDC(window, context); }

    HDC get() const noexcept { return context; }

private:
    HWND window;
    HDC context;
};

// A device context in memory, like the screen's.
class MemoryContext
{
public:
    MemoryContext() noexcept : context(::CreateCompatibleDC(nullptr)) {}
    MemoryContext(const MemoryContext&) = delete;
    MemoryContext& operator=(const MemoryContext&) = delete;
    ~MemoryContext() { ::DeleteDC(context); }

    HDC get() const noexcept { return context; }

private:
    HDC context;
};

// An object selected into a context, which gets its former one back at the end.
class SelectedObject
{
public:
    SelectedObject(HDC context, HGDIOBJ object) noexcept
        : context(context),
          former(::SelectObject(context, object))
    {
    }
    SelectedObject(const SelectedObject&) = delete;
    SelectedObject& operator=(const SelectedObject&) = delete;
    ~SelectedObject() { ::SelectObject(context, former); }

private:
    HDC context;
    HGDIOBJ former;
};
