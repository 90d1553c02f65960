#include "tests/faults/HeapBlocks.h"

#include <windows.h>

#include <algorithm>
#include <vector>

namespace
{
std::size_t CountBlocksOf(HANDLE heap)
{
    std::size_t blocks = 0;
    ::HeapLock(heap);
    PROCESS_HEAP_ENTRY entry{};
    while (::HeapWalk(heap, &entry))
        blocks += entry.wFlags & PROCESS_HEAP_ENTRY_BUSY ? 1 : 0;
    ::HeapUnlock(heap);
    return blocks;
}
}    // namespace

std::size_t CountHeapBlocks()
{
    std::vector<HANDLE> heaps(::GetProcessHeaps(0, nullptr));
    const DWORD held = ::GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
    heaps.resize(std::min<std::size_t>(heaps.size(), held));
    std::size_t blocks = 0;
    for (const HANDLE heap : heaps)
        blocks += CountBlocksOf(heap);
    return blocks;
}
