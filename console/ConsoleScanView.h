#pragma once

#include "console/OutputStream.h"
#include "console/ProgressBar.h"
#include "console/ScanEstimate.h"
#include "engine/ScanProgressView.h"
#include "ui/LogWriter.h"
#include "win/StringTable.h"

#include <string>
#include <utility>
#include <vector>

// How a scan is shown while it runs. Null: that part is not shown.
struct ScanDisplay
{
    OutputStream* rows = nullptr;
    ProgressBar* bar = nullptr;
};

// A scan watched from a terminal, a pipe or a file: each row is printed as it is found, and kept for the log.
class ConsoleScanView : public ScanProgressView
{
public:
    // What is displayed on is borrowed; `folderColumns` is the width of the longest folder name.
    ConsoleScanView(ScanDisplay display, StringTable strings, ScanEstimate estimate, int folderColumns);

    void AddResultRow(const std::wstring& folderName, const std::wstring& subject, LONG count,
                      LONG runningTotal) override;
    void StepProgress() override;

    void ClearProgress();    // to be called before others write to the terminal
    const std::vector<LogRow>& GetRows() const noexcept { return foundRows; }

private:
    void PrintHeader();
    void PrintRow(const std::wstring& folderName, const std::wstring& subject, const std::wstring& count);
    int ChooseSubjectColumns() const;

    ScanDisplay display;
    StringTable strings;
    ScanEstimate estimate;
    int folderColumns;
    int subjectColumns;
    LONG total = 0;
    std::vector<LogRow> foundRows;
};
