#include "tests/win/MemoryGone.h"

#include <cstdlib>
#include <new>

namespace
{
thread_local bool gone = false;
}

MemoryGone::MemoryGone() noexcept
{
    gone = true;
}

MemoryGone::~MemoryGone()
{
    gone = false;
}

void* operator new(std::size_t size)
{
    void* memory = gone ? nullptr : std::malloc(size);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
