#pragma once

#include <windows.h>

#include <mapix.h>

// The functions of Extended MAPI that this server uses. They are looked up in the system's mapi32.dll at run
// time, so that a machine without MAPI gets an error text from LogOn and not a module that does not load.
struct MapiFunctions
{
    LPMAPIINITIALIZE initialize;
    LPMAPIUNINITIALIZE uninitialize;
    LPMAPILOGONEX logonEx;
    LPMAPIALLOCATEBUFFER allocateBuffer;
    LPMAPIFREEBUFFER freeBuffer;
};

// The functions in use; mapi32.dll is loaded by the first call and stays loaded. Throws MapiError when it or
// one of the functions is missing. Safe on any thread.
const MapiFunctions& Mapi();

// Puts other functions in the place of mapi32.dll's, or with null takes them away again. They have to outlive
// every thread that called PrepareThread meanwhile. For tests, while nothing else runs.
void ReplaceMapi(const MapiFunctions* functions) noexcept;

// Initialises MAPI for the calling thread unless that was done; MAPI is uninitialised for it when the thread
// ends. Cheap when there is nothing to do. Throws MapiError.
void PrepareThread();

// The same for a thread that lets go of what may hold MAPI's objects, as far as it succeeds. Where no thread
// of this process has been prepared there are none: MAPI is not loaded then, and the module may still be
// unloaded.
void PrepareThreadForRelease() noexcept;
