#pragma once

#include "quorvex/MapiOwners.h"

#include <windows.h>

#include <mapidefs.h>

#include <exception>
#include <string>

// A failure on its way to the caller: the HRESULT, and a text for people that says what was refused.
class MapiError : public std::exception
{
public:
    MapiError(HRESULT code, std::wstring description) : failure(code), text(std::move(description)) {}

    HRESULT Code() const noexcept { return failure; }
    const std::wstring& Description() const noexcept { return text; }
    const char* what() const noexcept override { return "a MAPI call failed"; }

private:
    HRESULT failure;
    std::wstring text;
};

// The failure's symbolic name where it is one of MAPI's ("MAPI_E_NOT_FOUND"), else its number ("0x80004005").
std::wstring NameOfFailure(HRESULT failure);

// Throws for a failure of `step`, a few words of what was done ("open the message"). `lastError` is the
// object's own text and may be null.
[[noreturn]] void ThrowMapiError(HRESULT failure, const MAPIERROR* lastError, const wchar_t* step);

// Throws MapiError when a method of `object` failed, with the text of the object's GetLastError. Warnings
// (MAPI_W_ERRORS_RETURNED and the like) pass. `object` is an IMAPISession, IMAPIProp, IMAPITable or one of
// theirs.
template <class T>
void CheckMapi(HRESULT result, T* object, const wchar_t* step)
{
    if (SUCCEEDED(result))
        return;
    MapiBuffer<MAPIERROR> lastError;
    if (FAILED(object->GetLastError(result, MAPI_UNICODE, lastError.put())))
        (void)lastError.release();    // nothing valid was given out
    ThrowMapiError(result, lastError.get(), step);
}

// The same where no object can say more.
void CheckMapi(HRESULT result, const wchar_t* step);
