#pragma once

#include "engine/FolderTree.h"
#include "engine/ScanDriver.h"
#include "engine/ScanState.h"
#include "tests/engine/FakeStore.h"
#include "tests/engine/Watchers.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

// A fake store below, the engine's state above it, and something that watches.
class ScanFixture : public testing::Test
{
protected:
    FakeStore store;
    RecordingTreeView tree;
    RecordingProgressView progress;
    ScanState state;

    void LoadTree()
    {
        state.storeSession = store.MakeSession();
        ASSERT_EQ(OpenDefaultStore(state), 1);
        EnumerateFolder(state, tree, state.folderRoot, TreeItem::none);
        store.log.lines.clear();
    }

    void RunSearch()
    {
        LoadTree();
        state.progressDialog = &progress;
        RunDuplicateScan(state, state.folderRoot);
    }

    void Run()
    {
        RunSearch();
        store.log.lines.clear();
        ApplyDuplicateAction(state);
    }

    std::vector<std::wstring> FoundIds() const
    {
        return {state.duplicateIds.begin(), state.duplicateIds.end()};
    }
};
