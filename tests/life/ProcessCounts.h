#pragma once

#include "win/ModuleHandle.h"

#include <windows.h>

#include <array>
#include <cstddef>

// What this process holds of everything that a leak would use up.
enum class Held
{
    kernelHandles,
    gdiObjects,
    userObjects,
    threadSlots,    // of thread-local storage
    heapBlocks,
    committedKilobytes
};
inline constexpr std::size_t heldKinds = 6;

const char* NameOf(Held kind);

// One number for each kind, in its order. No other thread may run meanwhile: all free slots of thread-local
// storage are taken for a moment.
std::array<double, heldKinds> CountHeld();

// The mail servers that the process has loaded, kept loaded while this lives, so that they can be asked
// whether anybody holds an object of theirs.
class KeptServers
{
public:
    KeptServers();

    bool AreLoaded() const;    // both of them
    bool AreIdle() const;      // no object of either is left

private:
    std::array<ModuleHandle, 2> servers;
};
