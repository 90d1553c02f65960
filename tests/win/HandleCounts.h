#pragma once

#include <windows.h>

#include <iosfwd>

// How many graphics and window objects this process holds. A test takes one count before and one after:
//
//     const HandleCounts before = HandleCounts::Now();
//     ... 200 rounds ...
//     EXPECT_EQ(HandleCounts::Now(), before);
//
// One round should go before the first count: the system makes some objects once and keeps them.
struct HandleCounts
{
    DWORD gdi = 0;     // bitmaps, brushes, fonts, device contexts, regions, ...
    DWORD user = 0;    // windows, menus, icons and cursors

    static HandleCounts Now();

    bool operator==(const HandleCounts&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const HandleCounts& counts);
