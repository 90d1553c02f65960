#pragma once

#include <windows.h>

#include <objbase.h>

// COM on the calling thread, as a single-threaded apartment, from here until its end. Made and destroyed on
// the same thread; what COM made meanwhile has to be released first.
class ComInitialization
{
public:
    ComInitialization() noexcept : result(::CoInitialize(nullptr)) {}
    ComInitialization(const ComInitialization&) = delete;
    ComInitialization& operator=(const ComInitialization&) = delete;
    ~ComInitialization()
    {
        if (SUCCEEDED(result))
            ::CoUninitialize();
    }

    // Fails where the thread is another kind of apartment already; COM can be used then all the same.
    HRESULT GetResult() const noexcept { return result; }

private:
    HRESULT result;
};
