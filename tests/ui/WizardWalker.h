#pragma once

#include "tests/ui/WizardStore.h"
#include "tests/ui/WizardUser.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <vector>

// Goes through the wizard by chance: on each page one of the moves that its user can make there. Keeps in
// mind what a run was asked for, so that what it does can be reckoned.
class WizardWalker
{
public:
    // `logFolder` is where reports are saved.
    WizardWalker(std::uint32_t seed, const WizardStore& store, std::wstring logFolder);

    // Makes moves until the wizard closes; after so many only those that lead out of it.
    void Walk(WizardUser& wizardUser, int limit);

    const std::optional<RunChoice>& Run() const { return run; }    // none when none was started
    bool IsStopped() const { return stopped; }
    const std::wstring& EndMessage() const { return endMessage; }

private:
    // What may be done on a page and which pages can come of it. The last of a page's moves leads out.
    struct Move
    {
        std::function<void()> make;
        std::vector<Page> next;
    };
    using Moves = std::vector<Move>;

    Moves MovesOn(Page page);
    Moves MovesOnFolders();
    Moves MovesOnSettings();
    Moves MovesOnPicker();
    Moves MovesOnProgress();
    Moves MovesOnNotice();
    Moves MovesOnSaveDialog();
    void AddWaysOut(Moves& moves, Page page, int button, const std::vector<Page>& next);

    int Any(int limit);    // 0 to limit - 1
    bool IsAnyTicked();
    void StartRun();

    std::mt19937 random;
    const WizardStore& store;
    std::wstring logFolder;
    WizardUser* user = nullptr;

    RunChoice choice;
    std::int64_t destination = 0;    // 0 is none
    std::optional<RunChoice> run;
    bool stopped = false;
    std::wstring endMessage;
};
