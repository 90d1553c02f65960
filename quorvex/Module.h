#pragma once

#include <windows.h>

#include <atomic>

// What a COM module has to know about itself. The count is of live objects and server locks: the module may
// be unloaded while it is zero.
struct Module
{
    static inline HINSTANCE instance = nullptr;    // written once, by DllMain
    static inline std::atomic<long> count = 0;
};
