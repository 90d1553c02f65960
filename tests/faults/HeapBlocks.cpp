#include "tests/faults/HeapBlocks.h"

#include <windows.h>

std::size_t CountHeapBlocks()
{
    const HANDLE heap = ::GetProcessHeap();
    std::size_t blocks = 0;
    ::HeapLock(heap);
    PROCESS_HEAP_ENTRY entry{};
    while (::HeapWalk(heap, &entry))
        blocks += entry.wFlags & PROCESS_HEAP_ENTRY_BUSY ? 1 : 0;
    ::HeapUnlock(heap);
    return blocks;
}
