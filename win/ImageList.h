#pragma once

#include "win/ModuleHandle.h"

#include <windows.h>

#include <commctrl.h>

#include <memory>

struct ImageListDestroyer
{
    void operator()(HIMAGELIST images) const noexcept { ::ImageList_Destroy(images); }
};

// Owns one list of equally large images. A control that shows it only borrows it, so it has to outlive the
// control, or be taken from it first.
class CImageList
{
public:
    // Sizes in pixels; flags ILC_...; room for `initial` images, growing by `grow`. What was held is
    // destroyed. False when no list can be made.
    bool Create(int width, int height, UINT flags, int initial, int grow) noexcept;

    // Cuts a bitmap into images, from the left, and adds them; pixels of the colour `mask` become transparent
    // and turn black in the bitmap itself, which stays the caller's. The index of the first, or -1. The
    // thread's last error is left as it was.
    int Add(HBITMAP bitmap, COLORREF mask) noexcept;

    HIMAGELIST get() const noexcept { return images.get(); }     // borrowed; null when empty
    HIMAGELIST Detach() noexcept { return images.release(); }    // now the caller's

private:
    HMODULE CommonControls() noexcept;

    ModuleHandle library;    // only where nobody else has loaded it; outlives the images
    std::unique_ptr<std::remove_pointer_t<HIMAGELIST>, ImageListDestroyer> images;
};
