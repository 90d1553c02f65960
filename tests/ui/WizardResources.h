#pragma once

#include "tests/win/HandleCounts.h"

#include <windows.h>

#include <iosfwd>

// What the process holds between two walks. The mail servers stay loaded from the first count on, so that
// they can be asked whether objects of theirs are left.
struct WizardResources
{
    HandleCounts windows;
    DWORD handles = 0;          // to kernel objects
    bool quorvexIdle = true;    // no object of QuorvexDll is left
    bool localMapiIdle = true;

    static WizardResources Now();
    // The count of now, or that of the last look when it does not come back to `rest` within some seconds: a
    // thread that has done its work goes a moment later.
    static WizardResources Settled(const WizardResources& rest, DWORD saves);

    // Whether this is what was there at rest, but for what the system keeps for later: a device context or
    // two in all, and some handles for each of the `saves`, files chosen in its dialog since. What is left
    // over in every walk outgrows that soon.
    bool IsBackAt(const WizardResources& rest, DWORD saves) const;
};

std::ostream& operator<<(std::ostream& stream, const WizardResources& resources);
