#include "ui/LogWriter.h"

#include "res/resource.h"

#include <algorithm>
#include <utility>

LogWriter::LogWriter(StringTable strings, ByteSink sink, UINT codePage)
    : strings(strings),
      sink(std::move(sink)),
      codePage(codePage)
{
}

void LogWriter::WriteReport(std::span<const LogRow> rows) const
{
    WritePiece(strings.Load(IDS_PRODUCT_TITLE) + L"\r\n");

    // A first row without a subject starts no item: it equals the subject before the first row.
    std::wstring previousSubject;
    long itemNumber = 0;
    for (const LogRow& row : rows)
    {
        if (row.subject != previousSubject)
            WriteHeading(++itemNumber, row.subject);
        WriteRow(row);
        previousSubject = row.subject;
    }
}

void LogWriter::WriteHeading(long itemNumber, const std::wstring& subject) const
{
    WritePiece(strings.Format(IDS_LOG_ITEM_NUMBER, {itemNumber}));
    WritePiece(strings.Format(IDS_LOG_SUBJECT, {subject}));
}

void LogWriter::WriteRow(const LogRow& row) const
{
    WritePiece(strings.Format(IDS_LOG_FOLDER_NAME, {row.folderName}) + L"    " +
               strings.Format(IDS_LOG_DUPLICATE_COUNT, {row.duplicateCount}));
}

void LogWriter::WritePiece(const std::wstring& piece) const
{
    const int length = static_cast<int>(piece.size());
    const int needed = ::WideCharToMultiByte(codePage, 0, piece.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(std::max(needed, 0)), '\0');
    if (::WideCharToMultiByte(codePage, 0, piece.data(), length, bytes.data(), needed, nullptr, nullptr) <= 0)
        return;
    bytes.resize(std::min(bytes.size(), piece.size()));
    sink(std::string_view(bytes).substr(0, bytes.find('\0')));
}

LogWriter::ByteSink FileSink(HANDLE file)
{
    return [file](std::string_view bytes)
    {
        DWORD written = 0;
        ::WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    };
}
