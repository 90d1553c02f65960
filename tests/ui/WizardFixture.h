#pragma once

#include "res/resource.h"
#include "tests/localmapi/Sandbox.h"
#include "tests/ui/InstalledFolder.h"
#include "tests/ui/WizardResources.h"
#include "tests/ui/WizardStore.h"
#include "tests/ui/WizardUser.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

// Walks through the wizard over a store of the walk's own. After each the store is whole and the process
// holds what it held before.
class Wizard : public testing::Test
{
protected:
    using Walk = std::function<void(WizardUser&)>;
    enum Action
    {
        moveToDeletedItems,
        expire,
        copy,
        move,
        flag,
        deletePermanently
    };

    TemporaryFolder folder;
    InstallEntry install;
    WizardStore store;
    StoreVariable variable{std::filesystem::path(store.File().Path()).c_str()};

    Wizard()
    {
        folder.Write(L"eula.dat", "Licence");
        install.Set(folder.Path());
    }
    ~Wizard() override { EXPECT_TRUE(store.IsWhole()); }

    WizardRun Use(const Walk& walk);

    // Every folder, in one of the ways that the list of actions names.
    RunChoice AllFolders(Action action) const;
    bool NeedsDestination(const RunChoice& choice) const
    {
        return choice.action == copy || choice.action == move;
    }

    // From the folders to the page of the run.
    void StartRun(WizardUser& user, const RunChoice& choice) const;
    void Choose(WizardUser& user, const RunChoice& choice) const;
    // To the end of the wizard: what the message at the end said.
    std::wstring Run(WizardUser& user, const RunChoice& choice) const;

    static std::wstring Completed(std::size_t duplicates, const std::wstring& action);
    static std::wstring Aborted(std::size_t duplicates);
};
