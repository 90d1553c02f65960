#pragma once

#include "store/MapiLibrary.h"

#include <windows.h>

#include <mapidefs.h>

#include <memory>

// Owners of what MAPI allocated. Their deleters call the MAPIFreeBuffer that they were made with, so none of
// them may outlive the library.

struct MapiBufferDeleter
{
    LPMAPIFREEBUFFER freeBuffer = nullptr;

    void operator()(void* buffer) const noexcept { freeBuffer(buffer); }
};

template <typename T>
using MapiBuffer = std::unique_ptr<T, MapiBufferDeleter>;

template <typename T>
MapiBuffer<T> OwnMapiBuffer(const MapiLibrary& library, T* buffer) noexcept
{
    return MapiBuffer<T>(buffer, {library.mapiFreeBuffer});
}

// Frees each row's properties, then the set.
struct RowSetDeleter
{
    LPMAPIFREEBUFFER freeBuffer = nullptr;

    void operator()(SRowSet* rows) const noexcept
    {
        for (ULONG row = 0; row < rows->cRows; ++row)
            freeBuffer(rows->aRow[row].lpProps);
        freeBuffer(rows);
    }
};
using RowSet = std::unique_ptr<SRowSet, RowSetDeleter>;
