#pragma once

#include <windows.h>

#include <exception>
#include <string>

// What the user is told about a failure: the failing object's own words, else the system's for its code.
std::wstring DescribeFailure(const std::exception& failure);

// Tells the user of the exception now being handled, in a message box owned by `window`. To be called in a
// catch block only.
void ReportFailure(HWND window) noexcept;

// Every window and dialog procedure runs what it does through this: no exception may enter the system's code,
// so the user is told of it and the window lives on. False when there was one.
template <typename Function>
bool WindowBoundary(HWND window, Function&& function) noexcept
{
    try
    {
        function();
        return true;
    }
    catch (...)
    {
        ReportFailure(window);
        return false;
    }
}
