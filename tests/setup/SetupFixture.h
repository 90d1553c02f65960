#pragma once

#include "tests/setup/Installer.h"
#include "tests/setup/RegistryImage.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

// A machine without the product, as registry and disk have it. What a test installs is removed at its end.
class SetupFixture : public testing::Test
{
protected:
    using For = installer::For;

    SetupFixture();
    ~SetupFixture() override;

    // What is on the machine and was not, or not so, before; and the other way round.
    RegistryImage::Entries AddedEntries() const;
    RegistryImage::Entries RemovedEntries() const;
    std::set<std::wstring> AddedFiles() const;
    std::set<std::wstring> RemovedFiles() const;

    void ExpectNothingChanged() const;

    // Takes what is now as that what was before.
    void StartFromHere();

    // A folder of the test's own, below the drive's root and removed at the end.
    const std::filesystem::path scratch = L"C:\\tqodr setup test";

private:
    RegistryImage registry;
    std::set<std::wstring> files;
};
