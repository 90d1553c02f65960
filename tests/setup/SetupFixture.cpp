#include "tests/setup/SetupFixture.h"

#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>

using installer::For;

namespace
{
void AddTree(const std::filesystem::path& folder, std::set<std::wstring>& files)
{
    std::error_code none;
    for (std::filesystem::recursive_directory_iterator entry(folder, none), end; entry != end; ++entry)
    {
        files.insert(entry->path().wstring());
        // Windows itself keeps its books there all the time.
        if (::_wcsicmp(entry->path().filename().c_str(), L"Temp") == 0)
            entry.disable_recursion_pending();
    }
}

// Everything where programs are installed. A user's documents are left out: Wine has them in the home of the
// machine's user.
std::set<std::wstring> AllFiles()
{
    std::set<std::wstring> files;
    for (const auto& entry : std::filesystem::directory_iterator(L"C:\\"))
    {
        files.insert(entry.path().wstring());
        const std::wstring name = entry.path().filename().wstring();
        if (::_wcsicmp(name.c_str(), L"windows") != 0 && ::_wcsicmp(name.c_str(), L"users") != 0)
            AddTree(entry.path(), files);
    }
    if (const wchar_t* path = ::_wgetenv(L"LOCALAPPDATA"))
        AddTree(path, files);
    return files;
}

std::set<std::wstring> Difference(const std::set<std::wstring>& one, const std::set<std::wstring>& other)
{
    std::set<std::wstring> rest;
    std::set_difference(one.begin(), one.end(), other.begin(), other.end(), std::inserter(rest, rest.end()));
    return rest;
}
}    // namespace

SetupFixture::SetupFixture()
{
    StartFromHere();
}

SetupFixture::~SetupFixture()
{
    for (const For whom : {For::user, For::everyone})
    {
        const auto folder = installer::EntryText(whom, L"InstallLocation");
        EXPECT_TRUE(!folder || installer::Remove(*folder, whom));
    }
    std::error_code ignored;
    std::filesystem::remove_all(scratch, ignored);
}

RegistryImage::Entries SetupFixture::AddedEntries() const
{
    return RegistryImage::Take().Since(registry);
}

RegistryImage::Entries SetupFixture::RemovedEntries() const
{
    return registry.Since(RegistryImage::Take());
}

std::set<std::wstring> SetupFixture::AddedFiles() const
{
    return Difference(AllFiles(), files);
}

std::set<std::wstring> SetupFixture::RemovedFiles() const
{
    return Difference(files, AllFiles());
}

void SetupFixture::ExpectNothingChanged() const
{
    EXPECT_EQ(AddedEntries(), RegistryImage::Entries());
    EXPECT_EQ(RemovedEntries(), RegistryImage::Entries());
    EXPECT_EQ(AddedFiles(), std::set<std::wstring>());
    EXPECT_EQ(RemovedFiles(), std::set<std::wstring>());
}

void SetupFixture::StartFromHere()
{
    registry = RegistryImage::Take();
    files = AllFiles();
}
