#pragma once

#include "quorvex/EntryId.h"
#include "quorvex/MapiRuntime.h"

#include <windows.h>

#include <mapidefs.h>

#include <span>
#include <utility>

// Owns what MAPI allocated. `put` is for out-parameters and frees what was held; `release` hands it over.
template <class T, void (*Free)(T*) noexcept>
class MapiOwner
{
public:
    MapiOwner() noexcept = default;
    explicit MapiOwner(T* value) noexcept : held(value) {}
    MapiOwner(MapiOwner&& other) noexcept : held(other.release()) {}
    MapiOwner& operator=(MapiOwner&& other) noexcept
    {
        if (this != &other)
            reset(other.release());
        return *this;
    }
    ~MapiOwner() { reset(nullptr); }

    T* get() const noexcept { return held; }
    T* operator->() const noexcept { return held; }
    T& operator*() const noexcept { return *held; }
    explicit operator bool() const noexcept { return held != nullptr; }

    T** put() noexcept
    {
        reset(nullptr);
        return &held;
    }
    T* release() noexcept { return std::exchange(held, nullptr); }
    void reset(T* value) noexcept
    {
        if (T* old = std::exchange(held, value))
            Free(old);
    }

private:
    T* held = nullptr;
};

template <class T>
void FreeMapiBuffer(T* buffer) noexcept
{
    Mapi().freeBuffer(buffer);
}

// Frees what QueryRows allocates: each row's properties, then the set.
inline void FreeMapiRows(SRowSet* rows) noexcept
{
    for (const SRow& row : std::span(rows->aRow, rows->cRows))
        if (row.lpProps)
            Mapi().freeBuffer(row.lpProps);
    Mapi().freeBuffer(rows);
}

// One block of MAPI's memory, with whatever was linked to it by MAPIAllocateMore.
template <class T>
using MapiBuffer = MapiOwner<T, FreeMapiBuffer<T>>;

using PropArray = MapiBuffer<SPropValue>;
using RowSet = MapiOwner<SRowSet, FreeMapiRows>;
