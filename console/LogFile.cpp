#include "console/LogFile.h"

#include "console/CommandLine.h"
#include "console/Text.h"
#include "win/SystemMessage.h"

#include <algorithm>
#include <vector>

namespace
{
UsageError CannotBeMade(const std::wstring& path, const std::wstring& reason)
{
    return UsageError(L"the log " + Quoted(path) + L" cannot be made (" + reason +
                      L"): --log takes the name of a file in a folder that exists and may be written to");
}

std::wstring FullPath(const std::wstring& path)
{
    std::vector<wchar_t> buffer(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr));
    const DWORD length =
        GetFullPathNameW(path.c_str(), static_cast<DWORD>(buffer.size()), buffer.data(), nullptr);
    if (length == 0 || length >= buffer.size())
        throw CannotBeMade(path, SystemMessage(GetLastError()));
    return std::wstring(buffer.data(), length);
}

FileHandle OpenFile(const std::wstring& path, DWORD access, DWORD sharing, DWORD disposition)
{
    const HANDLE file =
        CreateFileW(path.c_str(), access, sharing, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    return FileHandle(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

// An older file must give way in the end: what would forbid that is said at once.
void CheckOlderFile(const std::wstring& path)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return;
    if (attributes & FILE_ATTRIBUTE_DIRECTORY)
        throw CannotBeMade(path, L"it is a folder");
    if (attributes & FILE_ATTRIBUTE_READONLY)
        throw CannotBeMade(path, L"it is read-only");
    constexpr DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    if (!OpenFile(path, GENERIC_WRITE | DELETE, sharing, OPEN_EXISTING))
        throw CannotBeMade(path, SystemMessage(GetLastError()));
}
}    // namespace

LogFile::LogFile(const std::wstring& path) : path(FullPath(path))
{
    CheckOlderFile(this->path);
    temporaryPath = this->path + L"." + std::to_wstring(GetCurrentProcessId()) + L".tmp";
    file = OpenFile(temporaryPath, GENERIC_WRITE, 0, CREATE_ALWAYS);
    if (!file)
        throw CannotBeMade(path, SystemMessage(GetLastError()));
}

LogFile::~LogFile()
{
    if (!file)
        return;
    file.reset();
    DeleteFileW(temporaryPath.c_str());
}

bool LogFile::Write(std::string_view bytes) const
{
    while (!bytes.empty())
    {
        constexpr std::size_t most = 1 << 20;
        DWORD written = 0;
        const DWORD part = static_cast<DWORD>(std::min(bytes.size(), most));
        if (!WriteFile(file.get(), bytes.data(), part, &written, nullptr))
            return false;
        if (written == 0)
        {
            SetLastError(ERROR_DISK_FULL);
            return false;
        }
        bytes.remove_prefix(written);
    }
    return FlushFileBuffers(file.get()) != FALSE;
}

std::wstring LogFile::Save(std::string_view report)
{
    if (!Write(report))
        return SystemMessage(GetLastError());
    file.reset();
    if (MoveFileExW(temporaryPath.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return {};
    const DWORD error = GetLastError();
    DeleteFileW(temporaryPath.c_str());
    return SystemMessage(error);
}
