#pragma once

#include "engine/ScanState.h"
#include "tests/engine/Watchers.h"
#include "tests/ui/WizardStore.h"
#include "win/ComInitialization.h"
#include "win/KernelHandle.h"

#include <windows.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

// What a run told its user and what the engine knew at its end.
struct RunStory
{
    bool loggedOn = false;
    bool loaded = false;     // false: the first page closes, as there is no store
    bool scanned = false;    // false: the destination folder could not be chosen either
    bool stopped = false;
    LONG count = 0;
    LONG faultsInSearch = 0;    // that had happened when the search made its last step
    std::vector<ResultRow> rows;
    std::string report;                      // the saved file
    std::vector<std::int64_t> duplicates;    // the messages to treat, as found; 0 for an id that is none
};

// The engine over the automation server and the store that the environment names, as the wizard drives it:
// jobs on its worker thread, and views that remember. Ends the process, with a word, when a job does not end.
class EngineSession
{
public:
    using Wrap = std::function<CRDOSession(const CRDOSession&)>;

    // Every call goes to what `wrap` makes of the session; `faults` counts what has failed so far.
    explicit EngineSession(std::function<LONG()> faults, Wrap wrap = {});
    ~EngineSession();

    // From the tree to the saved report. Logs on unless an earlier run has.
    RunStory Run(const RunChoice& choice);
    void Stop() { state->stopRequested = 1; }

private:
    class Tree;
    class Progress;

    bool LogOn();
    bool LoadTree();
    bool Choose(const RunChoice& choice);
    void Scan(RunStory& story);

    ComInitialization com;    // outlives the state's objects
    std::function<LONG()> faults;
    Wrap wrap;
    std::unique_ptr<ScanState> state = std::make_unique<ScanState>();
    bool loggedOn = false;
    std::unique_ptr<Tree> tree;
};
