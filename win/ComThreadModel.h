#pragma once

#include <windows.h>

// How a COM object counts its references when only the thread of its apartment uses it.
class CComSingleThreadModel
{
public:
    static ULONG Increment(ULONG& count) noexcept { return ++count; }
    static ULONG Decrement(ULONG& count) noexcept { return --count; }
};
