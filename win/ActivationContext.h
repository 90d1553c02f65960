#pragma once

#include <windows.h>

// While it lives, windows made on this thread use what the manifest among our module's resources asks for:
// common controls 6. Where there is no such manifest the thread's context stays as it is.
class ActivationContext
{
public:
    ActivationContext() noexcept;
    ActivationContext(const ActivationContext&) = delete;
    ActivationContext& operator=(const ActivationContext&) = delete;
    ~ActivationContext();    // on the thread that made it

private:
    HANDLE context;
    ULONG_PTR cookie = 0;
};
