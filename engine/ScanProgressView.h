#pragma once

#include <windows.h>

#include <functional>
#include <string>

// Whatever watches a running scan: the progress dialog, a console, a test.
// Called on the engine's thread only; the view carries each call to its own thread before it returns.
class ScanProgressView
{
public:
    virtual ~ScanProgressView() = default;

    // `count` duplicates of the message with that subject lie in that folder; `runningTotal` is the whole
    // run's.
    virtual void AddResultRow(const std::wstring& folderName, const std::wstring& subject, LONG count,
                              LONG runningTotal) = 0;
    virtual void StepProgress() = 0;

    // Takes the progress bar away and tells how the run ended; returns when the user has taken note. Stays on
    // the engine's thread, whatever it shows there.
    virtual void ShowEnd(bool /*stopped*/, LONG /*duplicateCount*/, const std::wstring& /*actionName*/) {}
    // Lets the report be saved and calls `endJob`, both in one go on the view's own thread: nothing that the
    // user does comes between. Afterwards the engine's thread touches neither view nor state.
    virtual void FinishRun(const std::function<void()>& endJob) { endJob(); }
};
