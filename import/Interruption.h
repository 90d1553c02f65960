#pragma once

#include "import/ImportError.h"

// Thrown at the next point where the import may stop after the user or the system asked it to.
class Interrupted : public ImportError
{
public:
    explicit Interrupted(int signal)
        : ImportError("stopped before the end; nothing was imported"),
          signal(signal)
    {
    }

    const int signal;
};

// From now on SIGINT, SIGTERM and SIGHUP ask the import to stop instead of ending the program, and a write
// past a file size limit or to a closed pipe is an error instead of a signal.
void CatchSignals();

// Throws Interrupted once a signal has come.
void ThrowIfInterrupted();
