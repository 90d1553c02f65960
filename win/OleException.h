#pragma once

#include <windows.h>

#include <exception>
#include <string>

// A failed OLE call; carries the HRESULT that it failed with.
class COleException : public std::exception
{
public:
    explicit COleException(HRESULT code) noexcept : code(code) {}

    HRESULT GetCode() const noexcept { return code; }
    const char* what() const noexcept override { return "an OLE call failed"; }

private:
    HRESULT code;
};

// A failed dispatch call about which the called object gave exception information of its own.
// The code is the object's HRESULT, or DISP_E_EXCEPTION when it named none.
class COleDispatchException : public COleException
{
public:
    COleDispatchException(HRESULT code, WORD ownCode, std::wstring description, std::wstring source)
        : COleException(code),
          ownCode(ownCode),
          description(std::move(description)),
          source(std::move(source))
    {
    }

    WORD GetOwnCode() const noexcept { return ownCode; }    // the object's 16-bit error number, or 0
    const std::wstring& GetDescription() const noexcept { return description; }
    const std::wstring& GetSource() const noexcept { return source; }
    const char* what() const noexcept override { return "a dispatch call raised an exception"; }

private:
    WORD ownCode;
    std::wstring description;
    std::wstring source;
};
