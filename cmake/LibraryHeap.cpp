#include "LibraryHeap.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <new>

namespace
{
// Stands in front of each block's bytes.
struct alignas(MEMORY_ALLOCATION_ALIGNMENT) Block
{
    Block* next;          // of those that a thread keeps
    std::size_t units;    // of the bytes that follow; 0 when they are not to be kept
};

// Blocks are kept by size, rounded up to whole units: of each size as many as a batch of messages needs.
constexpr std::size_t unit = MEMORY_ALLOCATION_ALIGNMENT;
constexpr std::size_t mostUnits = 64;
constexpr std::size_t mostBytesOfSize = 128 * 1024;

struct KeptBlocks
{
    std::array<Block*, mostUnits + 1> first{};    // by size
    std::array<std::size_t, mostUnits + 1> bytes{};
};

HANDLE heap = nullptr;
DWORD slot = TLS_OUT_OF_INDEXES;
bool keepsNone = false;

// For a thread that keeps none: there is no block to take and no room for one. Never written.
constinit KeptBlocks none = []
{
    KeptBlocks full;
    full.bytes.fill(mostBytesOfSize);
    return full;
}();

KeptBlocks* MakeKeptBlocks() noexcept
{
    void* const place = keepsNone ? nullptr : ::HeapAlloc(heap, 0, sizeof(KeptBlocks));
    if (!place)
        return &none;
    auto* const kept = new (place) KeptBlocks;
    if (::TlsSetValue(slot, kept))
        return kept;
    ::HeapFree(heap, 0, place);
    return &none;
}

// Those of this thread. Who asks for memory, or frees it, may still want the code of the last error.
KeptBlocks& BlocksOfThread() noexcept
{
    const DWORD lastError = ::GetLastError();
    auto* kept = static_cast<KeptBlocks*>(::TlsGetValue(slot));
    if (!kept)
        kept = MakeKeptBlocks();
    ::SetLastError(lastError);
    return *kept;
}

Block* TakeKept(std::size_t units) noexcept
{
    KeptBlocks& kept = BlocksOfThread();
    Block* const block = kept.first[units];
    if (block)
    {
        kept.first[units] = block->next;
        kept.bytes[units] -= units * unit;
    }
    return block;
}

bool Keep(Block& block) noexcept
{
    KeptBlocks& kept = BlocksOfThread();
    const std::size_t bytes = block.units * unit;
    if (kept.bytes[block.units] + bytes > mostBytesOfSize)
        return false;
    block.next = kept.first[block.units];
    kept.first[block.units] = &block;
    kept.bytes[block.units] += bytes;
    return true;
}

Block* TakeNew(std::size_t size, std::size_t units) noexcept
{
    void* const place = ::HeapAlloc(heap, 0, sizeof(Block) + size);
    return place ? new (place) Block{nullptr, units} : nullptr;
}

Block* Take(std::size_t size) noexcept
{
    if (size > std::numeric_limits<std::size_t>::max() - sizeof(Block))
        return nullptr;
    if (size > mostUnits * unit)
        return TakeNew(size, 0);
    const std::size_t units = std::max<std::size_t>(1, (size + unit - 1) / unit);
    Block* const kept = TakeKept(units);
    return kept ? kept : TakeNew(units * unit, units);
}

void Free(void* bytes) noexcept
{
    Block* const block = static_cast<Block*>(bytes) - 1;
    if (block->units == 0 || !Keep(*block))
        ::HeapFree(heap, 0, block);
}
}    // namespace

bool MakeLibraryHeap() noexcept
{
    heap = ::HeapCreate(0, 0, 0);
    slot = ::TlsAlloc();
    keepsNone = ::GetEnvironmentVariableW(L"TQODR_KEEP_NO_BLOCKS", nullptr, 0) != 0;
    return heap && slot != TLS_OUT_OF_INDEXES;
}

void FreeBlocksOfThread() noexcept
{
    auto* const kept = static_cast<KeptBlocks*>(::TlsGetValue(slot));
    // What the thread still frees on its way out is not kept.
    ::TlsSetValue(slot, &none);
    if (!kept || kept == &none)
        return;
    for (Block* block : kept->first)
        while (block)
        {
            Block* const next = block->next;
            ::HeapFree(heap, 0, block);
            block = next;
        }
    ::HeapFree(heap, 0, kept);
}

void FreeLibraryHeap() noexcept
{
    if (heap)
        ::HeapDestroy(heap);
}

// The other forms of both (arrays, sizes, without an exception) lead here.
void* operator new(std::size_t size)
{
    for (;;)
    {
        if (Block* const block = Take(size))
            return block + 1;
        const std::new_handler handler = std::get_new_handler();
        if (!handler)
            throw std::bad_alloc();
        handler();
    }
}

void operator delete(void* bytes) noexcept
{
    if (bytes)
        Free(bytes);
}

void operator delete(void* bytes, std::size_t) noexcept
{
    if (bytes)
        Free(bytes);
}
