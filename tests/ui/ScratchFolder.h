#pragma once

#include "tests/ui/InstalledFolder.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

// A temporary folder whose files are looked at.
class ScratchFolder : public TemporaryFolder
{
public:
    std::wstring PathOf(const std::wstring& name) const { return Path() + L"\\" + name; }
    bool Has(const std::wstring& name) const { return std::filesystem::exists(PathOf(name)); }

    std::string Read(const std::wstring& name) const
    {
        std::ifstream file(std::filesystem::path(PathOf(name)), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
};
