#pragma once

#include "localmapi/MapiMemory.h"
#include "localmapi/MapiTable.h"
#include "localmapi/VectorTableSource.h"

#include <windows.h>

#include <mapidefs.h>
#include <mapitags.h>

#include <string>
#include <utility>
#include <vector>

// Rows in memory under an IMAPITable, with attachments, for the tests of tables and restrictions.
struct SampleRow
{
    std::string subject;
    std::int64_t size = 0;
    VectorTableSource::Row more = {};
    std::vector<std::string> attachmentNames = {};
};

class SampleSource : public VectorTableSource
{
public:
    explicit SampleSource(std::vector<SampleRow> samples)
        : VectorTableSource({PR_SUBJECT_W, PR_MESSAGE_SIZE}, RowsOf(samples)),
          samples(std::move(samples))
    {
    }

    std::unique_ptr<TableSource> OpenSubTable(std::int64_t rowId, std::uint32_t subObjectTag) override
    {
        if (subObjectTag != PR_MESSAGE_ATTACHMENTS)
            return nullptr;
        std::vector<Row> attachments;
        for (const std::string& name : samples.at(static_cast<std::size_t>(rowId)).attachmentNames)
            attachments.push_back({{PR_ATTACH_LONG_FILENAME_W, name}});
        return std::make_unique<VectorTableSource>(std::vector<std::uint32_t>{PR_ATTACH_LONG_FILENAME_W},
                                                   std::move(attachments));
    }

private:
    static std::vector<Row> RowsOf(const std::vector<SampleRow>& samples)
    {
        std::vector<Row> rows;
        for (const SampleRow& sample : samples)
        {
            rows.push_back(sample.more);
            rows.back().emplace(PR_SUBJECT_W, sample.subject);
            rows.back().emplace(PR_MESSAGE_SIZE, sample.size);
        }
        return rows;
    }

    std::vector<SampleRow> samples;
};

inline Microsoft::WRL::ComPtr<IMAPITable> MakeSampleTable(std::vector<SampleRow> samples)
{
    return MakeMapiTable(std::make_unique<SampleSource>(std::move(samples)));
}

// A table of rows with these subjects.
inline Microsoft::WRL::ComPtr<IMAPITable> MakeSubjectTable(const std::vector<std::string>& subjects)
{
    std::vector<SampleRow> samples;
    for (const std::string& subject : subjects)
        samples.push_back({subject});
    return MakeSampleTable(std::move(samples));
}

inline RowSet QueryRows(IMAPITable& table, LONG count, ULONG flags = 0)
{
    SRowSet* rows = nullptr;
    if (FAILED(table.QueryRows(count, flags, &rows)))
        return nullptr;
    return RowSet(rows);
}

// The subjects of the next rows; "<failed>" alone when they cannot be had. Subjects must be the first column.
inline std::vector<std::wstring> ReadSubjects(IMAPITable& table, LONG count = 1000, ULONG flags = 0)
{
    const RowSet rows = QueryRows(table, count, flags);
    if (!rows)
        return {L"<failed>"};
    std::vector<std::wstring> subjects;
    for (ULONG row = 0; row < rows->cRows; ++row)
        subjects.push_back(rows->aRow[row].lpProps[0].Value.lpszW);
    return subjects;
}

using Texts = std::vector<std::wstring>;
