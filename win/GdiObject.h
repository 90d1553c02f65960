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

using Brush = GdiObject<HBRUSH>;
using Font = GdiObject<HFONT>;
using Bitmap = GdiObject<HBITMAP>;
