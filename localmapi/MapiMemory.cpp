#include "localmapi/MapiMemory.h"

#include <mapicode.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace
{
// Fit for any type.
constexpr std::size_t alignment = 16;

// What is allocated onto a buffer is mostly a short text or an id: such share a block of this size.
constexpr std::size_t sharedSize = 512;

// Stands in front of a block's bytes. The chain starts at the buffer and runs through the blocks that were
// allocated onto it.
struct alignas(alignment) BlockHeader
{
    BlockHeader* next;
    std::size_t taken;    // of the bytes that follow
    std::size_t size;     // of them all

    void* Take(std::size_t bytes)
    {
        void* const place = reinterpret_cast<char*>(this + 1) + taken;
        taken += bytes;
        return place;
    }
};

BlockHeader* HeaderOf(void* buffer)
{
    return static_cast<BlockHeader*>(buffer) - 1;
}

std::size_t Aligned(std::size_t size)
{
    return (size + alignment - 1) / alignment * alignment;
}

BlockHeader* AllocateBlock(std::size_t size)
{
    void* const bytes = ::operator new(sizeof(BlockHeader) + size, std::nothrow);
    return bytes ? new (bytes) BlockHeader{nullptr, 0, size} : nullptr;
}

// A block of the chain that has so much room: the one behind the buffer, or a new one.
BlockHeader* BlockWithRoom(BlockHeader& buffer, std::size_t size)
{
    BlockHeader* const shared = buffer.next;
    if (shared && shared->size - shared->taken >= size)
        return shared;
    BlockHeader* const block = AllocateBlock(std::max(size, sharedSize));
    if (!block)
        return nullptr;
    // What fills a block of its own goes behind the one that still has room.
    BlockHeader& before = shared && size >= sharedSize ? *shared : buffer;
    block->next = before.next;
    before.next = block;
    return block;
}

// On x86 the largest sizes that MAPI can say leave no room for a header.
bool IsTooLarge(ULONG size)
{
    return size > std::numeric_limits<std::size_t>::max() - sizeof(BlockHeader) - alignment;
}
}    // namespace

SCODE mapi_memory::AllocateBuffer(ULONG size, void** buffer) noexcept
{
    if (!buffer)
        return MAPI_E_INVALID_PARAMETER;
    BlockHeader* const block = IsTooLarge(size) ? nullptr : AllocateBlock(size);
    *buffer = block ? block->Take(size) : nullptr;
    return block ? S_OK : MAPI_E_NOT_ENOUGH_MEMORY;
}

SCODE mapi_memory::AllocateMore(ULONG size, void* owner, void** buffer) noexcept
{
    if (!buffer)
        return MAPI_E_INVALID_PARAMETER;
    *buffer = nullptr;
    if (!owner)
        return MAPI_E_INVALID_PARAMETER;
    BlockHeader* const block = IsTooLarge(size) ? nullptr : BlockWithRoom(*HeaderOf(owner), Aligned(size));
    if (!block)
        return MAPI_E_NOT_ENOUGH_MEMORY;
    *buffer = block->Take(Aligned(size));
    return S_OK;
}

ULONG mapi_memory::FreeBuffer(void* buffer) noexcept
{
    BlockHeader* block = buffer ? HeaderOf(buffer) : nullptr;
    while (block)
    {
        BlockHeader* const next = block->next;
        ::operator delete(block);
        block = next;
    }
    return S_OK;
}

void* AllocateMapiBytes(std::size_t size, void* owner)
{
    if (size > std::numeric_limits<ULONG>::max())
        throw std::bad_alloc();
    void* buffer = nullptr;
    const ULONG bytes = static_cast<ULONG>(size);
    const SCODE result = owner ? mapi_memory::AllocateMore(bytes, owner, &buffer)
                               : mapi_memory::AllocateBuffer(bytes, &buffer);
    if (FAILED(result))
        throw std::bad_alloc();
    std::memset(buffer, 0, size);
    return buffer;
}

void RowSetDeleter::operator()(SRowSet* rows) const noexcept
{
    for (ULONG row = 0; row < rows->cRows; ++row)
        mapi_memory::FreeBuffer(rows->aRow[row].lpProps);
    mapi_memory::FreeBuffer(rows);
}

RowSet MakeRowSet(std::size_t rowCount)
{
    if (rowCount > (std::numeric_limits<ULONG>::max() - sizeof(SRowSet)) / sizeof(SRow))
        throw std::bad_alloc();
    return RowSet(MakeMapiBuffer<SRowSet>(CbNewSRowSet(rowCount)).release());
}
