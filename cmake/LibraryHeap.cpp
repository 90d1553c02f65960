#include "LibraryHeap.h"

#include <windows.h>

#include <new>

namespace
{
HANDLE heap = nullptr;
}    // namespace

bool MakeLibraryHeap() noexcept
{
    heap = ::HeapCreate(0, 0, 0);
    return heap != nullptr;
}

void FreeLibraryHeap() noexcept
{
    ::HeapDestroy(heap);
    heap = nullptr;
}

// The other forms of both (arrays, sizes, without an exception) lead here.
void* operator new(std::size_t size)
{
    for (;;)
    {
        if (void* const block = ::HeapAlloc(heap, 0, size))
            return block;
        const std::new_handler handler = std::get_new_handler();
        if (!handler)
            throw std::bad_alloc();
        handler();
    }
}

void operator delete(void* block) noexcept
{
    ::HeapFree(heap, 0, block);
}

void operator delete(void* block, std::size_t) noexcept
{
    ::HeapFree(heap, 0, block);
}
