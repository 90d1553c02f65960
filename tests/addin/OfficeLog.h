#pragma once

#include <windows.h>

#include <oaidl.h>
#include <wrl/client.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

// What all fake objects of one host share: every call made on them in order, the one call that is to go
// wrong, and how many of them are alive.
struct OfficeLog
{
    enum class Failure
    {
        plain,           // an HRESULT alone
        withInfo,        // and error information that the object vouches for
        withoutObject    // success, but with no object where one is expected
    };
    static constexpr HRESULT plannedCode = RPC_E_CALL_REJECTED;
    static constexpr wchar_t plannedText[] = L"The host is busy.";

    // One line a call: "ToolBar put Visible(-1)".
    std::vector<std::string> lines;
    std::function<void(const std::string& line)> onCall;    // after it was written down
    std::size_t failAt = 0;                                 // counted from 1; 0 for none
    Failure failure = Failure::plain;
    bool throws = false;                   // an exception instead of a failure
    std::vector<IID> unknownInterfaces;    // that no object admits to have
    int liveObjects = 0;

    // Writes the call down. What it comes to when it is the one to go wrong, else S_OK; `hasObject` says
    // whether the call may give out its object.
    struct Verdict
    {
        HRESULT result = S_OK;
        bool hasObject = true;
    };
    Verdict Note(std::string line);

    bool Knows(REFIID interfaceId) const;
    std::size_t CountOf(const std::string& line) const;
};

// "I4 1", "BSTR text", "missing", ...
std::string Describe(const VARIANT& value);
std::string Describe(BSTR text);
std::string Describe(long value);
