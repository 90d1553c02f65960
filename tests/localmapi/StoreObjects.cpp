#include "tests/localmapi/StoreObjects.h"

#include "localmapi/EntryId.h"
#include "localmapi/ModuleCount.h"
#include "localmapi/MsgStore.h"

#include <algorithm>

namespace
{
Bytes EntryIdOf(IMsgStore& store, EntryKind kind, std::int64_t id)
{
    const Bytes uid = ReadBinary(store, PR_RECORD_KEY);
    EntryId entryId{{}, kind, id};
    std::copy_n(uid.begin(), entryId.storeUid.size(), entryId.storeUid.begin());
    return EncodeEntryId(entryId);
}

ENTRYID* Borrow(const Bytes& bytes)
{
    return reinterpret_cast<ENTRYID*>(const_cast<BYTE*>(bytes.data()));
}

template <typename T>
ComPtr<T> Open(IMsgStore& store, const Bytes& entryId, const IID& iid, ULONG flags)
{
    ULONG type = 0;
    ComPtr<IUnknown> opened;
    ComPtr<T> object;
    EXPECT_EQ(
        store.OpenEntry(static_cast<ULONG>(entryId.size()), Borrow(entryId), &iid, flags, &type, &opened),
        S_OK);
    if (opened)
        opened->QueryInterface(iid, &object);
    return object;
}
}    // namespace

StoreObjects::StoreObjects() : modulesBefore(ModuleCount::Get())
{
    const std::u8string path = (file.Folder() / "store.db").u8string();
    store = OpenStoreObject(std::filesystem::path(path).wstring());
}

StoreObjects::~StoreObjects()
{
    store.Reset();
    EXPECT_EQ(ModuleCount::Get(), modulesBefore);
}

Bytes StoreObjects::FolderEntryId(std::int64_t id) const
{
    return EntryIdOf(*store.Get(), EntryKind::Folder, id);
}

Bytes StoreObjects::MessageEntryId(std::int64_t id) const
{
    return EntryIdOf(*store.Get(), EntryKind::Message, id);
}

ComPtr<IMAPIFolder> StoreObjects::OpenFolder(std::int64_t id, ULONG flags) const
{
    return Open<IMAPIFolder>(*store.Get(), FolderEntryId(id), IID_IMAPIFolder, flags);
}

ComPtr<IMessage> StoreObjects::OpenMessage(std::int64_t id, ULONG flags) const
{
    return Open<IMessage>(*store.Get(), MessageEntryId(id), IID_IMessage, flags);
}

ComPtr<IMessage> StoreObjects::CreateMessage(std::int64_t folderId) const
{
    ComPtr<IMessage> message;
    EXPECT_EQ(OpenFolder(folderId)->CreateMessage(nullptr, 0, &message), S_OK);
    return message;
}

MapiBuffer<SPropValue> ReadProperty(IMAPIProp& object, ULONG tag)
{
    SizedSPropTagArray(1, tags) = {1, {tag}};
    ULONG count = 0;
    SPropValue* value = nullptr;
    EXPECT_TRUE(SUCCEEDED(object.GetProps(reinterpret_cast<SPropTagArray*>(&tags), 0, &count, &value)));
    EXPECT_EQ(count, 1u);
    return MapiBuffer<SPropValue>(value);
}

std::wstring ReadText(IMAPIProp& object, ULONG tag)
{
    const auto value = ReadProperty(object, tag);
    return PROP_TYPE(value->ulPropTag) == PT_UNICODE ? value->Value.lpszW : L"<error>";
}

LONG ReadLong(IMAPIProp& object, ULONG tag)
{
    const auto value = ReadProperty(object, tag);
    if (PROP_TYPE(value->ulPropTag) == PT_BOOLEAN)
        return value->Value.b;
    return PROP_TYPE(value->ulPropTag) == PT_LONG ? value->Value.l : -1;
}

Bytes ReadBinary(IMAPIProp& object, ULONG tag)
{
    const auto value = ReadProperty(object, tag);
    if (PROP_TYPE(value->ulPropTag) != PT_BINARY)
        return {};
    return {value->Value.bin.lpb, value->Value.bin.lpb + value->Value.bin.cb};
}

SCODE ReadError(IMAPIProp& object, ULONG tag)
{
    const auto value = ReadProperty(object, tag);
    return PROP_TYPE(value->ulPropTag) == PT_ERROR ? value->Value.err : S_OK;
}

SPropValue TextValue(ULONG tag, const wchar_t* text)
{
    SPropValue value{};
    value.ulPropTag = tag;
    value.Value.lpszW = const_cast<wchar_t*>(text);
    return value;
}

SPropValue LongValue(ULONG tag, LONG number)
{
    SPropValue value{};
    value.ulPropTag = tag;
    value.Value.l = number;
    return value;
}

HRESULT Set(IMAPIProp& object, SPropValue value)
{
    return object.SetProps(1, &value, nullptr);
}

RowSet ReadTable(IMAPITable& table, const std::vector<ULONG>& columns)
{
    auto tags = MakeMapiBuffer<SPropTagArray>(CbNewSPropTagArray(columns.size()));
    tags->cValues = static_cast<ULONG>(columns.size());
    std::copy(columns.begin(), columns.end(), tags->aulPropTag);
    EXPECT_EQ(table.SetColumns(tags.get(), 0), S_OK);
    table.SeekRow(BOOKMARK_BEGINNING, 0, nullptr);
    SRowSet* rows = nullptr;
    EXPECT_EQ(table.QueryRows(1000, 0, &rows), S_OK);
    return RowSet(rows);
}

std::vector<std::wstring> ReadTextColumn(IMAPITable& table, ULONG tag)
{
    const RowSet rows = ReadTable(table, {tag});
    std::vector<std::wstring> texts;
    for (ULONG row = 0; row < rows->cRows; ++row)
    {
        const SPropValue& value = rows->aRow[row].lpProps[0];
        texts.push_back(PROP_TYPE(value.ulPropTag) == PT_UNICODE ? value.Value.lpszW : L"<error>");
    }
    return texts;
}

std::vector<LONG> ReadLongColumn(IMAPITable& table, ULONG tag)
{
    const RowSet rows = ReadTable(table, {tag});
    std::vector<LONG> numbers;
    for (ULONG row = 0; row < rows->cRows; ++row)
    {
        const SPropValue& value = rows->aRow[row].lpProps[0];
        numbers.push_back(PROP_TYPE(value.ulPropTag) == PT_LONG ? value.Value.l : -1);
    }
    return numbers;
}

std::vector<std::wstring> Subjects(IMAPIFolder& folder)
{
    ComPtr<IMAPITable> table;
    EXPECT_EQ(folder.GetContentsTable(0, &table), S_OK);
    return ReadTextColumn(*table.Get(), PR_SUBJECT_W);
}

EntryList::EntryList(std::vector<Bytes> ids) : entryIds(std::move(ids))
{
    for (Bytes& entryId : entryIds)
        items.push_back({static_cast<ULONG>(entryId.size()), entryId.data()});
    list = {static_cast<ULONG>(items.size()), items.data()};
}
