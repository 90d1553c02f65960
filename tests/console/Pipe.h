#pragma once

#include <windows.h>

#include <array>
#include <string>

// A pipe: what is written into its one end is read from the other.
class Pipe
{
public:
    explicit Pipe(DWORD size = 1 << 16)
    {
        SECURITY_ATTRIBUTES inheritable{
            .nLength = sizeof(SECURITY_ATTRIBUTES), .lpSecurityDescriptor = nullptr, .bInheritHandle = TRUE};
        CreatePipe(&readEnd, &writeEnd, &inheritable, size);
        SetHandleInformation(readEnd, HANDLE_FLAG_INHERIT, 0);
    }

    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    ~Pipe()
    {
        CloseReadEnd();
        CloseWriteEnd();
    }

    HANDLE GetWriteEnd() const { return writeEnd; }
    void CloseReadEnd() { Close(readEnd); }
    void CloseWriteEnd() { Close(writeEnd); }

    // What has been written, up to the first time that `text` is complete, or all when it never comes. Waits.
    std::string ReadUntil(const std::string& text)
    {
        std::string bytes;
        char next = 0;
        DWORD read = 0;
        while (bytes.find(text) == std::string::npos && ReadFile(readEnd, &next, 1, &read, nullptr) &&
               read > 0)
            bytes += next;
        return bytes;
    }

    // Everything that is still to be read, until the last write end is closed.
    std::string ReadAll()
    {
        std::string bytes;
        std::array<char, 4096> part{};
        DWORD read = 0;
        while (ReadFile(readEnd, part.data(), static_cast<DWORD>(part.size()), &read, nullptr) && read > 0)
            bytes.append(part.data(), read);
        return bytes;
    }

private:
    static void Close(HANDLE& end)
    {
        if (end)
            CloseHandle(end);
        end = nullptr;
    }

    HANDLE readEnd = nullptr;
    HANDLE writeEnd = nullptr;
};
