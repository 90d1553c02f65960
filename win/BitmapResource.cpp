#include "win/BitmapResource.h"

#include "win/ThisModule.h"

BitmapHandle LoadBitmapResource(UINT id) noexcept
{
    // A bitmap section keeps the resource's colours; any other kind takes on the display's.
    return BitmapHandle(static_cast<HBITMAP>(
        ::LoadImageW(ThisModule(), MAKEINTRESOURCEW(id), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION)));
}
