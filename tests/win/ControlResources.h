#pragma once

// Bitmaps of the tests: rows of images of 16 by 16 pixels.
#define IDB_FOUR_IMAGES 11
#define IDB_ONE_IMAGE 12
