#pragma once

#include "localmapi/MapiMemory.h"
#include "localmapi/storage/Folders.h"
#include "tests/localmapi/TemporaryStore.h"

#include <windows.h>

#include <mapicode.h>
#include <mapidefs.h>
#include <mapiguid.h>
#include <mapitags.h>
#include <wrl/client.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

template <typename T>
using ComPtr = Microsoft::WRL::ComPtr<T>;
using Bytes = std::vector<BYTE>;

// What a MAPI client does with a store's objects, on a fresh store of its own.
class StoreObjects : public testing::Test
{
protected:
    StoreObjects();
    ~StoreObjects() override;

    Bytes FolderEntryId(std::int64_t id) const;
    Bytes MessageEntryId(std::int64_t id) const;
    ComPtr<IMAPIFolder> OpenFolder(std::int64_t id, ULONG flags = MAPI_BEST_ACCESS) const;
    ComPtr<IMessage> OpenMessage(std::int64_t id, ULONG flags = MAPI_BEST_ACCESS) const;
    ComPtr<IMessage> CreateMessage(std::int64_t folderId) const;    // unsaved
    std::int64_t AddMessage(std::int64_t folderId, const std::string& subject) const
    {
        return file.AddMessage(folderId, subject);
    }

    TemporaryStore file;
    ComPtr<IMsgStore> store;

private:
    long modulesBefore;
};

// The value of one property; of type PT_ERROR when it has none.
MapiBuffer<SPropValue> ReadProperty(IMAPIProp& object, ULONG tag);
std::wstring ReadText(IMAPIProp& object, ULONG tag);    // "<error>" when it is none
LONG ReadLong(IMAPIProp& object, ULONG tag);            // -1 when it is none
Bytes ReadBinary(IMAPIProp& object, ULONG tag);
SCODE ReadError(IMAPIProp& object, ULONG tag);    // S_OK when it has a value

SPropValue TextValue(ULONG tag, const wchar_t* text);
SPropValue LongValue(ULONG tag, LONG number);
HRESULT Set(IMAPIProp& object, SPropValue value);

// All rows with the columns asked for.
RowSet ReadTable(IMAPITable& table, const std::vector<ULONG>& columns);
std::vector<std::wstring> ReadTextColumn(IMAPITable& table, ULONG tag);
std::vector<LONG> ReadLongColumn(IMAPITable& table, ULONG tag);
std::vector<std::wstring> Subjects(IMAPIFolder& folder);    // of its contents table

// A list of messages as IMAPIFolder's methods take it; borrows the ids.
class EntryList
{
public:
    explicit EntryList(std::vector<Bytes> entryIds);
    operator ENTRYLIST*() { return &list; }

private:
    std::vector<Bytes> entryIds;
    std::vector<SBinary> items;
    ENTRYLIST list{};
};
