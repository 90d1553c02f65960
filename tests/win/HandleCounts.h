#pragma once

#include <windows.h>

#include <iosfwd>

// How many graphics and window objects this process holds. A test takes one count before and one after:
//
//     const HandleCounts before = HandleCounts::Now();
//     ... 200 rounds ...
//     EXPECT_LE(HandleCounts::Now(), before.WithSlackFor(200));
//
// One round should go before the first count: the system makes some objects once and keeps them.
struct HandleCounts
{
    DWORD gdi = 0;     // bitmaps, brushes, fonts, device contexts, regions, ...
    DWORD user = 0;    // windows, menus, icons and cursors

    static HandleCounts Now();

    // What may be there after so many rounds if each gives back all that it took: the system keeps device
    // contexts for later, as many as were ever in use at once. One object left behind in each round is far
    // more.
    HandleCounts WithSlackFor(int rounds) const;

    bool operator==(const HandleCounts&) const = default;
    bool operator<=(const HandleCounts& other) const { return gdi <= other.gdi && user <= other.user; }
};

std::ostream& operator<<(std::ostream& stream, const HandleCounts& counts);

// How many handles of kernel objects this process holds.
DWORD CountKernelHandles();
