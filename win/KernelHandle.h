#pragma once

#include <windows.h>

#include <memory>

struct KernelHandleCloser
{
    void operator()(HANDLE handle) const noexcept { ::CloseHandle(handle); }
};

// Owns one handle of a kernel object (thread, event, process, ...) and closes it.
using KernelHandle = std::unique_ptr<void, KernelHandleCloser>;
