#pragma once

#include "win/GdiObject.h"
#include "win/ImageList.h"

#include <windows.h>

// The width and height of a button's picture on this display, in pixels.
int FaceSize() noexcept;

// Adds a picture of any size, scaled; the colour of its upper left corner becomes transparent. The index, or
// -1.
int AddFace(CImageList& images, HBITMAP face);

// The picture on the ground of a menu.
BitmapHandle MakeMenuFace(HBITMAP face);
