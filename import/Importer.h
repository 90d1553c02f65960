#pragma once

#include "import/MailPipeline.h"
#include "import/SourceTree.h"
#include "import/StoreWriter.h"

// Reads everything the plan names into the store, folder by folder and message by message in the plan's
// order; the messages are converted on a second thread meanwhile. `progress` is called, on the calling
// thread, after every batch with what has been written. Throws ImportError when a source cannot be read or
// the store not be written.
ImportCounts ImportPlan(const SourcePlan& plan, StoreWriter& writer, const MailPipeline::Progress& progress);
