#pragma once

#include "import/SourceTree.h"
#include "import/StoreWriter.h"

#include <functional>

struct ImportCounts
{
    int64_t messages = 0;
    int64_t folders = 0;    // that the sources came to, empty ones included
};

// Reads everything the plan names into the store, folder by folder and message by message in the plan's
// order; the messages are converted on a second thread meanwhile. `progress` is called, on the calling
// thread, after every batch with what has been written. Throws ImportError when a source cannot be read or
// the store not be written.
ImportCounts ImportPlan(const SourcePlan& plan, StoreWriter& writer,
                        const std::function<void(const ImportCounts&)>& progress);
