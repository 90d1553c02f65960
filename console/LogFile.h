#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <string_view>

struct FileCloser
{
    void operator()(HANDLE file) const noexcept { CloseHandle(file); }
};

// Owns one open file; null when there is none.
using FileHandle = std::unique_ptr<void, FileCloser>;

// The file of --log. It is written beside its final place and takes the place of an older file only when
// every byte is on the disk, so that neither a full disk nor a stopped run leaves a cut report.
class LogFile
{
public:
    // Makes sure that the file can be made. Throws UsageError when it cannot.
    explicit LogFile(const std::wstring& path);
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;
    ~LogFile();    // without Save: takes away what was made

    // Writes the report and puts it in its place. The empty text, or why it failed; an older file is then as
    // it was.
    std::wstring Save(std::string_view report);

private:
    bool Write(std::string_view bytes) const;

    std::wstring path;
    std::wstring temporaryPath;
    FileHandle file;
};
