#pragma once

#include "win/ImageList.h"

// The folder icons in the order of the image numbers that a folder tree view is given; empty when no list can
// be made.
CImageList MakeFolderImages();

// The state images of a folder tree, in the order of CheckState.
CImageList MakeCheckImages();
