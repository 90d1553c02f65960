#include "localmapi/MapiMemory.h"

#include <mapicode.h>

#include <cstring>
#include <limits>
#include <new>

namespace
{
// Stands in front of the bytes the caller sees; the chain starts at the buffer and runs through what was
// allocated onto it. The alignment keeps those bytes fit for any type.
struct alignas(16) BlockHeader
{
    BlockHeader* next;
};

BlockHeader* HeaderOf(void* buffer)
{
    return static_cast<BlockHeader*>(buffer) - 1;
}

BlockHeader* AllocateBlock(ULONG size)
{
    if (size > std::numeric_limits<std::size_t>::max() - sizeof(BlockHeader))
        return nullptr;
    void* const bytes = ::operator new(sizeof(BlockHeader) + size, std::nothrow);
    return bytes ? new (bytes) BlockHeader{nullptr} : nullptr;
}
}    // namespace

SCODE mapi_memory::AllocateBuffer(ULONG size, void** buffer) noexcept
{
    if (!buffer)
        return MAPI_E_INVALID_PARAMETER;
    BlockHeader* const block = AllocateBlock(size);
    *buffer = block ? block + 1 : nullptr;
    return block ? S_OK : MAPI_E_NOT_ENOUGH_MEMORY;
}

SCODE mapi_memory::AllocateMore(ULONG size, void* owner, void** buffer) noexcept
{
    if (!buffer)
        return MAPI_E_INVALID_PARAMETER;
    *buffer = nullptr;
    if (!owner)
        return MAPI_E_INVALID_PARAMETER;
    BlockHeader* const block = AllocateBlock(size);
    if (!block)
        return MAPI_E_NOT_ENOUGH_MEMORY;
    block->next = HeaderOf(owner)->next;
    HeaderOf(owner)->next = block;
    *buffer = block + 1;
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
