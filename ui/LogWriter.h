#pragma once

#include "win/StringTable.h"

#include <windows.h>

#include <functional>
#include <span>
#include <string>
#include <string_view>

// One row of the result list, in the texts that the list shows.
struct LogRow
{
    std::wstring folderName;
    std::wstring subject;
    std::wstring duplicateCount;
};

// Writes the report of a run: the product title, then each row, consecutive rows with the same subject under
// one item number. Plain text in an ANSI code page with CR LF ends, without byte-order mark. Each piece of N
// characters takes at most N bytes and ends at its first zero byte; a piece that cannot be converted is left
// out.
class LogWriter
{
public:
    using ByteSink = std::function<void(std::string_view)>;

    // `strings` holds the report's patterns; `codePage` as WideCharToMultiByte takes it.
    LogWriter(StringTable strings, ByteSink sink, UINT codePage = CP_ACP);

    void WriteReport(std::span<const LogRow> rows) const;

private:
    void WriteRow(const LogRow& row) const;
    void WriteHeading(long itemNumber, const std::wstring& subject) const;
    void WritePiece(const std::wstring& piece) const;

    StringTable strings;
    ByteSink sink;
    UINT codePage;
};

// Writes into an open file; what cannot be written is lost without a word. The handle is borrowed.
LogWriter::ByteSink FileSink(HANDLE file);
