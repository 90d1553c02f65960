#pragma once

#include <windows.h>

#include <cstddef>
#include <vector>

// Slots of thread-local storage, taken from the process and given back.
class ThreadSlots
{
public:
    ThreadSlots() = default;
    ThreadSlots(const ThreadSlots&) = delete;
    ThreadSlots& operator=(const ThreadSlots&) = delete;
    ~ThreadSlots() { GiveBack(taken.size()); }

    void TakeAll()
    {
        for (DWORD slot; (slot = ::TlsAlloc()) != TLS_OUT_OF_INDEXES;)
            taken.push_back(slot);
    }
    void GiveBack(std::size_t count)
    {
        for (; count > 0; --count, taken.pop_back())
            ::TlsFree(taken.back());
    }
    std::size_t GetCount() const { return taken.size(); }

private:
    std::vector<DWORD> taken;
};

// Takes them all for a moment: no other thread may need one meanwhile.
inline std::size_t CountFreeThreadSlots()
{
    ThreadSlots slots;
    slots.TakeAll();
    return slots.GetCount();
}
