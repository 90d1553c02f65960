#include "console/ConsoleScanView.h"

#include "console/Text.h"
#include "res/resource.h"

#include <algorithm>

namespace
{
constexpr int gap = 2;
constexpr int mostFolderColumns = 30;
}    // namespace

ConsoleScanView::ConsoleScanView(ScanDisplay display, StringTable strings, ScanEstimate estimate,
                                 int folderColumns)
    : display(display),
      strings(strings),
      estimate(std::move(estimate)),
      folderColumns(
          std::clamp(folderColumns, CountColumns(strings.Load(IDS_COLUMN_FOLDER_NAME)), mostFolderColumns)),
      subjectColumns(ChooseSubjectColumns())
{
}

int ConsoleScanView::ChooseSubjectColumns() const
{
    constexpr int usual = 60;
    constexpr int least = 20;
    if (!display.rows || !display.rows->IsTerminal())
        return usual;
    // The last column of a line stays free: some terminals break the line after writing into it.
    const int others = folderColumns + gap + gap + CountColumns(strings.Load(IDS_COLUMN_DUPLICATE_COUNT)) + 1;
    return std::max(least, display.rows->GetColumns() - others);
}

void ConsoleScanView::AddResultRow(const std::wstring& folderName, const std::wstring& subject, LONG count,
                                   LONG runningTotal)
{
    const std::wstring countText = std::to_wstring(count);
    if (display.rows)
    {
        if (display.rows->IsTerminal())
            ClearProgress();
        if (foundRows.empty())
            PrintHeader();
        PrintRow(folderName, subject, countText);
    }
    foundRows.push_back({folderName, subject, countText});
    estimate.FoundDuplicates(count);
    total = runningTotal;
}

void ConsoleScanView::StepProgress()
{
    estimate.FinishedSearch();
    if (display.bar)
        display.bar->Show(estimate.GetPercent(), total);
}

void ConsoleScanView::ClearProgress()
{
    if (display.bar)
        display.bar->Clear();
}

void ConsoleScanView::PrintHeader()
{
    PrintRow(strings.Load(IDS_COLUMN_FOLDER_NAME), strings.Load(IDS_COLUMN_SUBJECT),
             strings.Load(IDS_COLUMN_DUPLICATE_COUNT));
}

void ConsoleScanView::PrintRow(const std::wstring& folderName, const std::wstring& subject,
                               const std::wstring& count)
{
    std::wstring folder = OnOneLine(folderName);
    std::wstring shown = OnOneLine(subject);
    // Whoever reads a file or a pipe gets the whole text; on a terminal the lines stay lines.
    if (display.rows->IsTerminal())
    {
        folder = Shortened(folder, folderColumns);
        shown = Shortened(shown, subjectColumns);
    }
    const std::wstring between(gap, L' ');
    display.rows->WriteLine(Padded(folder, folderColumns) + between + Padded(shown, subjectColumns) +
                            between + count);
}
