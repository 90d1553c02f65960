#pragma once

#include "console/CommandLine.h"
#include "console/ConsoleFolderTree.h"
#include "console/FolderPaths.h"
#include "engine/ScanState.h"

// Ticks in `tree` the folders that the options name, each with every folder below it, and unticks those that
// they exclude. Throws UsageError when a folder is unknown or when they leave no folder that holds mail.
void TickFolders(const ScanState& state, ConsoleFolderTree& tree, const FolderPaths& paths,
                 const ScanOptions& options);

// Puts the folder of --to into the settings. Throws UsageError when it is unknown or holds no mail.
void ChooseDestination(ScanState& state, const ConsoleFolderTree& tree, const FolderPaths& paths,
                       const std::wstring& path);
