#pragma once

#include "benchmark/mail/BulkMailbox.h"

#include <cstddef>
#include <filesystem>

// Each writes the whole mailbox in its order and throws ImportError when it cannot; `target` must not be
// there yet.

void WriteBulkMbox(const BulkMailbox& mailbox, const std::filesystem::path& target);

// All messages in `cur`, read.
void WriteBulkMaildir(const BulkMailbox& mailbox, const std::filesystem::path& target);

// A store file as an import of the same mail fills it. Folder "Bulk 1" holds the first messages, "Bulk 2" the
// next, all of them about the same number.
void WriteBulkStore(const BulkMailbox& mailbox, std::size_t folders, const std::filesystem::path& target);
