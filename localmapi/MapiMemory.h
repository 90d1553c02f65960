#pragma once

#include <windows.h>

#include <mapidefs.h>

#include <cstddef>
#include <memory>

// MAPI's buffers: a buffer and what was allocated "more" onto it are freed together, by freeing the buffer.
// Different buffers may be used on different threads; one buffer's chain belongs to one thread at a time.
namespace mapi_memory
{
SCODE AllocateBuffer(ULONG size, void** buffer) noexcept;
SCODE AllocateMore(ULONG size, void* owner, void** buffer) noexcept;
ULONG FreeBuffer(void* buffer) noexcept;    // null is allowed
}    // namespace mapi_memory

struct MapiBufferDeleter
{
    void operator()(void* buffer) const noexcept { mapi_memory::FreeBuffer(buffer); }
};

// Owns one MAPI buffer with all that hangs on it; `release` hands it to MAPI's caller.
template <typename T>
using MapiBuffer = std::unique_ptr<T, MapiBufferDeleter>;

// Allocates `size` bytes, zeroed, of their own or as part of `owner`. Throws std::bad_alloc, also for sizes
// that MAPI's 32-bit lengths cannot say.
void* AllocateMapiBytes(std::size_t size, void* owner = nullptr);

// A buffer of `size` bytes, at least one T, zeroed.
template <typename T>
MapiBuffer<T> MakeMapiBuffer(std::size_t size = sizeof(T))
{
    return MapiBuffer<T>(static_cast<T*>(AllocateMapiBytes(size < sizeof(T) ? sizeof(T) : size)));
}

// `count` zeroed elements that live and end with `owner`.
template <typename T>
T* AllocateMapiArray(std::size_t count, void* owner)
{
    if (count > static_cast<std::size_t>(-1) / sizeof(T))
        throw std::bad_alloc();
    return static_cast<T*>(AllocateMapiBytes(count * sizeof(T), owner));
}

// Frees what QueryRows allocates: each row's properties, then the set.
struct RowSetDeleter
{
    void operator()(SRowSet* rows) const noexcept;
};
using RowSet = std::unique_ptr<SRowSet, RowSetDeleter>;

// A row set with room for `rowCount` rows, none of them filled (cRows 0).
RowSet MakeRowSet(std::size_t rowCount);
