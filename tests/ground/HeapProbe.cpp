// A library whose heap can be used from outside.
#include <windows.h>

#include <cstddef>
#include <new>

extern "C"
{
    __declspec(dllexport) void* Allocate(std::size_t size)
    {
        return ::operator new(size, std::nothrow);
    }
    __declspec(dllexport) void Free(void* block)
    {
        ::operator delete(block);
    }
}
