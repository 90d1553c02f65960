#pragma once

#include <windows.h>

#include <string>
#include <string_view>

// Standard output or standard error. A console gets UTF-16 as it is; a file or a pipe gets UTF-8 without a
// byte-order mark and with "\n" as the end of a line. The handle is only borrowed. One thread at a time.
class OutputStream
{
public:
    explicit OutputStream(HANDLE handle);

    bool IsTerminal() const noexcept { return isTerminal; }
    int GetColumns() const;    // of the terminal; 0 for a file or a pipe
    void Write(std::wstring_view text);
    void WriteLine(std::wstring_view text);

    // True once something could not be written (full disk, reader gone); what came later was not tried.
    bool HasFailed() const noexcept { return hasFailed; }

private:
    void WriteToTerminal(std::wstring_view text);
    void WriteBytes(std::string_view bytes);

    HANDLE handle;
    bool isTerminal = false;
    bool hasFailed = false;
};

// UTF-8, unpaired surrogates replaced.
std::string ToUtf8(std::wstring_view text);
