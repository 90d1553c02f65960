#pragma once

#include "win/RegistrationScope.h"

#include <windows.h>

// While it lives, this process finds the user's own classes (HKEY_CURRENT_USER\Software\Classes) below
// HKEY_CLASSES_ROOT when the scope is the user. COM finds no other classes meanwhile.
class ClassesRoot
{
public:
    explicit ClassesRoot(RegistrationScope scope) noexcept;
    ClassesRoot(const ClassesRoot&) = delete;
    ClassesRoot& operator=(const ClassesRoot&) = delete;
    ~ClassesRoot();

    HRESULT GetResult() const noexcept { return result; }    // a failure left everything as it was

private:
    HRESULT Redirect() noexcept;

    HRESULT result = S_OK;
    bool redirected = false;
};
