#pragma once

#include "import/sample/SampleMailbox.h"

#include <filesystem>

// Writes the mailbox as mail files below `directory`, which is made and must be new or empty. Each entry of
// it is a source for the importer: Maildirs with Maildir++ sub-folders, mbox files, directories of message
// files. Throws ImportError when a file cannot be written.
void WriteSampleMailbox(const SampleMailbox& mailbox, const std::filesystem::path& directory);
