#pragma once

#include "quorvex/MapiRuntime.h"

#include <windows.h>

#include <mapidefs.h>
#include <mapix.h>

#include <cstdlib>
#include <mutex>
#include <new>
#include <unordered_map>
#include <vector>

// MAPI's memory functions over the heap, counting what is not freed; MAPIInitialize and its kin that only
// succeed. While an object of it lives, it stands in the place of mapi32.dll.
class FakeMapiMemory
{
public:
    FakeMapiMemory()
    {
        static const MapiFunctions functions = []
        {
            MapiFunctions made{};
            made.initialize = Initialize;
            made.uninitialize = Uninitialize;
            made.allocateBuffer = Allocate;
            made.freeBuffer = Free;
            return made;
        }();
        ReplaceMapi(&functions);
    }
    ~FakeMapiMemory() { ReplaceMapi(nullptr); }
    FakeMapiMemory(const FakeMapiMemory&) = delete;
    FakeMapiMemory& operator=(const FakeMapiMemory&) = delete;

    // Buffers given out and not freed, whoever allocated them.
    static std::size_t Outstanding()
    {
        const std::lock_guard lock(State().mutex);
        return State().blocks.size();
    }

    static SCODE STDMETHODCALLTYPE Allocate(ULONG size, LPVOID* buffer) noexcept
    {
        *buffer = std::calloc(1, size ? size : 1);
        if (!*buffer)
            return MAPI_E_NOT_ENOUGH_MEMORY;
        const std::lock_guard lock(State().mutex);
        State().blocks[*buffer];
        return S_OK;
    }

    // Freed together with `parent`, as MAPIAllocateMore does.
    static SCODE STDMETHODCALLTYPE AllocateMore(ULONG size, LPVOID parent, LPVOID* buffer) noexcept
    {
        *buffer = std::calloc(1, size ? size : 1);
        if (!*buffer)
            return MAPI_E_NOT_ENOUGH_MEMORY;
        const std::lock_guard lock(State().mutex);
        State().blocks.at(parent).push_back(*buffer);
        return S_OK;
    }

    static ULONG STDAPICALLTYPE Free(LPVOID buffer) noexcept
    {
        if (!buffer)
            return S_OK;
        const std::lock_guard lock(State().mutex);
        const auto block = State().blocks.find(buffer);
        if (block == State().blocks.end())
            std::abort();    // freed twice, or never one of ours
        for (void* linked : block->second)
            std::free(linked);
        State().blocks.erase(block);
        std::free(buffer);
        return S_OK;
    }

private:
    struct Blocks
    {
        std::mutex mutex;
        std::unordered_map<void*, std::vector<void*>> blocks;
    };

    static Blocks& State()
    {
        static Blocks state;
        return state;
    }

    static HRESULT STDMETHODCALLTYPE Initialize(LPVOID) noexcept { return S_OK; }
    static void STDMETHODCALLTYPE Uninitialize() noexcept {}
};
