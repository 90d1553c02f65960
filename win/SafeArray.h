#pragma once

#include <windows.h>

#include <oleauto.h>

#include <memory>

struct SafeArrayDeleter
{
    void operator()(SAFEARRAY* array) const noexcept { ::SafeArrayDestroy(array); }
};

// Owns one automation array and destroys it with everything in it.
using SafeArray = std::unique_ptr<SAFEARRAY, SafeArrayDeleter>;
