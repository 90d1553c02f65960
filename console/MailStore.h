#pragma once

#include "console/ConsoleFolderTree.h"
#include "console/FolderPaths.h"
#include "engine/ScanState.h"
#include "store/MapiHelper.h"
#include "win/ComInitialization.h"

#include <exception>
#include <string>
#include <utility>

// The mail store, or its folders, cannot be reached. The text is one line without an end.
class StoreError : public std::exception
{
public:
    explicit StoreError(std::wstring text) : text(std::move(text)) {}

    const std::wstring& GetText() const noexcept { return text; }
    const char* what() const noexcept override { return "the mail store cannot be opened"; }

private:
    std::wstring text;
};

// COM on this thread; throws StoreError where it cannot be had.
class ComApartment
{
public:
    ComApartment();

private:
    ComInitialization com;
};

// Creates the session, logs on, opens the default store and walks its folders into `state` and `tree`, until
// a stop is requested. Throws StoreError. COM must be there on this thread for as long as `state`.
void LoadFolders(ScanState& state, ConsoleFolderTree& tree);

// Starts the helper beside the session of `state`, which then knows whether the profile has Exchange. The
// helper ends before the session does.
void LearnProfileKind(ScanState& state, MapiHelper& helper) noexcept;

// The records of `state.folders`, under their indexes.
FolderPaths MakeFolderPaths(const ScanState& state, const ConsoleFolderTree& tree);

// The number of items that the walk counted in the folder.
long long GetItemCount(const FOLDER_INFO& folder, const ConsoleFolderTree& tree);
