#pragma once

#include <filesystem>

// Opens the store file and does with it what clients do: every folder is listed, every message and its parts
// are read, some are made, changed, copied, moved and deleted, folders too. Where a step is refused, the
// refusal must be a StoreError that says why, and the steps behind it are gone through nevertheless.
void WalkStore(const std::filesystem::path& path);
