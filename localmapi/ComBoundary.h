#pragma once

#include <windows.h>

#include <mapidefs.h>

#include <exception>
#include <mutex>
#include <string>
#include <type_traits>
#include <utility>

// A failure with the HRESULT that MAPI's caller gets; `text`, when there is one, is a sentence for the user,
// which the object's GetLastError gives.
class MapiError : public std::exception
{
public:
    explicit MapiError(HRESULT result, std::wstring text = {}) : result(result), text(std::move(text)) {}

    const char* what() const noexcept override { return "a MAPI call failed"; }

    HRESULT result;
    std::wstring text;
};

// What an object remembers of its last failure, for its GetLastError. Safe on any thread.
class LastError
{
public:
    // To be called while an exception is handled: remembers its text and gives its HRESULT.
    HRESULT TranslateException() noexcept;

    // Implements GetLastError: the text of the last failure when that failure was `result`, else S_OK and
    // null.
    HRESULT Get(HRESULT result, ULONG flags, MAPIERROR** error) noexcept;

private:
    void Remember(HRESULT result, std::wstring text) noexcept;

    std::mutex mutex;
    HRESULT lastResult = S_OK;
    std::wstring lastText;
};

// Runs `action` at the edge of a MAPI object: exceptions become HRESULTs and the text is kept in `lastError`.
// `action` yields nothing, which is S_OK, or the HRESULT of a success.
template <typename Action>
HRESULT ComBoundary(LastError& lastError, Action&& action) noexcept
{
    try
    {
        if constexpr (std::is_void_v<std::invoke_result_t<Action>>)
        {
            std::forward<Action>(action)();
            return S_OK;
        }
        else
        {
            return std::forward<Action>(action)();
        }
    }
    catch (...)
    {
        return lastError.TranslateException();
    }
}

// The same for what keeps no last error, such as the library's exports.
template <typename Action>
HRESULT ComBoundary(Action&& action) noexcept
{
    LastError forgotten;
    return ComBoundary(forgotten, std::forward<Action>(action));
}
