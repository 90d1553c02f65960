#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

struct GdiObjectDeleter
{
    void operator()(HGDIOBJ object) const noexcept { ::DeleteObject(object); }
};

// Owns one GDI object and deletes it.
template <typename Handle>
using GdiObject = std::unique_ptr<std::remove_pointer_t<Handle>, GdiObjectDeleter>;

using BrushHandle = GdiObject<HBRUSH>;
using FontHandle = GdiObject<HFONT>;
using BitmapHandle = GdiObject<HBITMAP>;
