#pragma once

#include "console/CommandLine.h"
#include "console/Console.h"

// Searches, treats the duplicates and reports. Throws UsageError and StoreError, both before anything is
// changed.
ExitCode RunScan(const ScanOptions& options, Console& console);
