#pragma once

#include <windows.h>

#include <filesystem>
#include <optional>
#include <string>

// The installer in this scratch prefix, run as an administrator's script runs it: silently, until it has
// ended.
namespace installer
{
inline constexpr DWORD done = 0;
inline constexpr DWORD fileNotWritten = 2;
inline constexpr DWORD stillOpen = 3;
inline constexpr DWORD registrationFailed = 4;
inline constexpr DWORD wrongUsage = 6;
inline constexpr DWORD installedForOthers = 7;
inline constexpr DWORD mailClientThere = 8;

enum class For
{
    user,
    everyone
};

std::filesystem::path File();
std::filesystem::path UsualFolder(For whom);

// The exit code of the installer with `switches`; of any program with its arguments. Both wait for its end.
DWORD Run(const std::wstring& switches);
DWORD RunProgram(const std::wstring& commandLine);

// What the program writes to its standard output.
std::string OutputOf(const std::wstring& commandLine);

// Removes the installation in `folder` as Windows does, by its own program there. False when it has not gone
// within a minute.
bool Remove(const std::filesystem::path& folder, For whom);

// The removal's exit code, from a program that stands elsewhere.
DWORD RemovalCode(const std::filesystem::path& folder);

// A text of the entry for removal; nothing where there is no such entry or text.
std::optional<std::wstring> EntryText(For whom, const wchar_t* name);
std::optional<DWORD> EntryNumber(For whom, const wchar_t* name);
}    // namespace installer
