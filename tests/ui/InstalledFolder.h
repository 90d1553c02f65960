#pragma once

#include "win/RegistryKey.h"

#include <windows.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

// A folder of the test's own, removed with what is in it.
class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        static std::atomic<int> count = 0;
        path = std::filesystem::temp_directory_path() /
               (L"tqodr-ui-" + std::to_wstring(::GetCurrentProcessId()) + L"-" + std::to_wstring(++count));
        std::filesystem::create_directories(path);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }

    std::wstring Path() const { return path.wstring(); }    // without a backslash at its end
    void Write(const std::wstring& name, const std::string& bytes) const
    {
        std::ofstream(path / name, std::ios::binary) << bytes;
    }
    void Enlarge(const std::wstring& name, long long size) const
    {
        std::filesystem::resize_file(path / name, static_cast<std::uintmax_t>(size));
    }

private:
    std::filesystem::path path;
};

// The registry's entry of the installation folder, for all users of the scratch prefix or for one: a test
// changes it as it likes, and it comes back to what it was.
class InstallEntry
{
public:
    explicit InstallEntry(HKEY root = HKEY_LOCAL_MACHINE);
    InstallEntry(const InstallEntry&) = delete;
    InstallEntry& operator=(const InstallEntry&) = delete;
    ~InstallEntry();

    void Set(const std::wstring& folder) const;    // with its terminating zero
    void SetRaw(DWORD type, const void* data, DWORD size) const;
    void Remove() const;       // the value
    void RemoveKey() const;    // the key with it

private:
    struct Value
    {
        DWORD type;
        std::vector<BYTE> data;
    };
    HKEY root;
    std::optional<Value> before;
    bool hadKey = false;
};
