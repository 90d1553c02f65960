#pragma once

#include "engine/FolderTreeView.h"
#include "engine/ScanProgressView.h"

#include <functional>
#include <string>
#include <vector>

// One item as the engine drew it.
struct DrawnItem
{
    TreeItem parent = TreeItem::none;
    FolderTreeView::Place place = FolderTreeView::Place::last;
    std::wstring text;
    int image = 0;
    int selectedImage = 0;
    CheckState check = CheckState::none;
    bool bold = false;
    bool greyed = false;
};

// A folder tree view that remembers what was drawn; item n is the n-th inserted, counted from 1.
class RecordingTreeView : public FolderTreeView
{
public:
    std::vector<DrawnItem> items;

    DrawnItem& At(TreeItem item) { return items.at(static_cast<std::size_t>(item) - 1); }
    const DrawnItem& At(TreeItem item) const { return items.at(static_cast<std::size_t>(item) - 1); }

    TreeItem InsertItem(TreeItem parent, Place place, const std::wstring& text, int image,
                        int selectedImage) override
    {
        items.push_back({parent, place, text, image, selectedImage});
        return static_cast<TreeItem>(items.size());
    }
    void SetCheckState(TreeItem item, CheckState state) override { At(item).check = state; }
    CheckState GetCheckState(TreeItem item) const override { return At(item).check; }
    void SetBold(TreeItem item) override { At(item).bold = true; }
    void SetGreyed(TreeItem item) override { At(item).greyed = true; }
    void ExpandBranch(TreeItem) override {}
    void EnsureVisible(TreeItem) override {}
};

struct ResultRow
{
    std::wstring folderName;
    std::wstring subject;
    LONG count = 0;
    LONG runningTotal = 0;

    bool operator==(const ResultRow&) const = default;
};

// A progress view that keeps the rows and counts the steps.
class RecordingProgressView : public ScanProgressView
{
public:
    std::vector<ResultRow> rows;
    int steps = 0;

    void AddResultRow(const std::wstring& folderName, const std::wstring& subject, LONG count,
                      LONG runningTotal) override
    {
        rows.push_back({folderName, subject, count, runningTotal});
    }
    void StepProgress() override { ++steps; }
};
