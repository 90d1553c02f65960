#pragma once

#include <windows.h>

#include <cstring>
#include <memory>
#include <new>

// A copy of one entry id: a count of bytes, and the bytes.
class EntryIdBlock
{
public:
    // Replaces what was kept. Without memory for the bytes nothing is kept.
    void Keep(ULONG count, const void* bytes) noexcept
    {
        Clear();
        if (count == 0 || !bytes)
            return;
        copy.reset(new (std::nothrow) BYTE[count]);
        if (!copy)
            return;
        byteCount = count;
        std::memcpy(copy.get(), bytes, count);
    }
    void Clear() noexcept
    {
        copy.reset();
        byteCount = 0;
    }

    ULONG GetCount() const noexcept { return byteCount; }
    const BYTE* GetBytes() const noexcept { return copy.get(); }    // null when nothing is kept

private:
    std::unique_ptr<BYTE[]> copy;
    ULONG byteCount = 0;
};
