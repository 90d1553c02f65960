#pragma once

#include <windows.h>

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
};
