#include "tests/store/FakeProfile.h"

#include "tests/store/TestMapi32.h"

#include <mapitags.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace
{
FakeProfile* current = nullptr;

HRESULT Initialize(void* options)
{
    FakeProfile::Current().Called(options ? "MAPIInitialize with options" : "MAPIInitialize");
    if (FakeProfile::Current().initialize != S_OK)
        return FakeProfile::Current().initialize;
    ++FakeProfile::Current().initialized;
    return S_OK;
}

void Uninitialize()
{
    FakeProfile::Current().Called("MAPIUninitialize");
    --FakeProfile::Current().initialized;
}

HRESULT LogonEx(const wchar_t* profile, const wchar_t* password, ULONG flags, IMAPISession** session)
{
    FakeProfile& mail = FakeProfile::Current();
    mail.Called("MAPILogonEx " + Hex(flags) + (profile || password ? " as somebody" : ""));
    if (FAILED(mail.logon))
        return mail.logon;
    ++mail.logons;
    *session = MakeFakeSession();
    return S_OK;
}

ULONG FreeBuffer(void* buffer)
{
    FakeProfile& mail = FakeProfile::Current();
    if (!buffer)
        return S_OK;
    if (mail.buffers.erase(buffer) == 0)
        ++mail.wrongFrees;
    else
        std::free(buffer);
    return S_OK;
}

HRESULT QueryAllRows(IMAPITable* table, SPropTagArray* columns, SRowSet** rows)
{
    return ReadFakeTable(table, {columns->aulPropTag, columns->cValues}, rows);
}

constexpr TestMapi32 functions = {Initialize, Uninitialize, LogonEx, FreeBuffer, QueryAllRows, ReadFakeStore};

// How many bytes of a value lie outside its SPropValue.
std::size_t SizeOutside(const Column& column)
{
    if (const auto* text = std::get_if<std::string>(&column.value))
        return text->size() + 1;
    if (const auto* text = std::get_if<std::wstring>(&column.value))
        return (text->size() + 1) * sizeof(wchar_t);
    if (const auto* bytes = std::get_if<Bytes>(&column.value))
        return bytes->size();
    return 0;
}

// Even, so that wide text may stand behind anything.
std::size_t RoomOutside(const Column& column)
{
    return (SizeOutside(column) + 1) & ~std::size_t{1};
}

void Fill(SPropValue& target, const Column& column, std::uint8_t* outside)
{
    target.ulPropTag = column.tag;
    // Beside a value of another type there may be anything; whoever takes it for binary shall notice.
    target.Value.bin = {~0u, reinterpret_cast<BYTE*>(&target)};
    if (const auto* number = std::get_if<std::int32_t>(&column.value))
        target.Value.l = *number;
    else if (const auto* flag = std::get_if<bool>(&column.value))
        target.Value.b = *flag;
    else if (const auto* text = std::get_if<std::string>(&column.value))
        target.Value.lpszA = static_cast<char*>(std::memcpy(outside, text->c_str(), SizeOutside(column)));
    else if (const auto* wide = std::get_if<std::wstring>(&column.value))
        target.Value.lpszW = static_cast<wchar_t*>(std::memcpy(outside, wide->c_str(), SizeOutside(column)));
    else if (const auto* bytes = std::get_if<Bytes>(&column.value))
    {
        std::ranges::copy(*bytes, outside);
        target.Value.bin = {static_cast<ULONG>(bytes->size()), outside};
    }
}

SPropValue* AllocateColumns(const Row& row)
{
    std::size_t size = row.size() * sizeof(SPropValue);
    for (const Column& column : row)
        size += RoomOutside(column);
    auto* const values = static_cast<SPropValue*>(FakeProfile::Current().Allocate(size));
    auto* outside = reinterpret_cast<std::uint8_t*>(values + row.size());
    for (std::size_t index = 0; index < row.size(); ++index)
    {
        Fill(values[index], row[index], outside);
        outside += RoomOutside(row[index]);
    }
    return values;
}

Row StoreRow(const Bytes& entryId, const wchar_t* name, bool isDefault)
{
    return {{PR_ENTRYID, entryId},
            {PR_RESOURCE_FLAGS, 0},
            {PR_DISPLAY_NAME_W, std::wstring(name)},
            {PR_DEFAULT_STORE, isDefault}};
}
}    // namespace

extern "C" __declspec(dllexport) const TestMapi32* GetTestMapi32()
{
    return &functions;
}

FakeProfile::FakeProfile()
    : statusRows{{{PR_DISPLAY_NAME_A, std::string("A spooler")}, {PR_RESOURCE_TYPE, 35}},
                 {{PR_DISPLAY_NAME_A, std::string("Work")}, {PR_RESOURCE_TYPE, 39}}},
      storeRows{StoreRow({1, 1}, L"Archive", false), StoreRow({2, 2, 2}, L"Mailbox", true)},
      serviceRows{{{PR_SERVICE_NAME_A, std::string("MSPST MS")}}},
      stores{{.entryId = {1, 1}, .properties = {}, .inbox = {0x1A}, .oneProp = {}},
             {.entryId = {2, 2, 2},
              .properties = {{0x35DF0003, 1 | 2 | 4 | 8 | 16},
                             {0x35E00102, Bytes{0xE0, 1}},
                             {0x35E20102, Bytes{0xE2, 1, 2}},
                             {0x35E30102, Bytes{0xE3, 1, 2, 3}},
                             {0x35E40102, Bytes{0xE4, 1, 2, 3, 4}},
                             {0x36D70102, Bytes{0xD7, 1, 2, 3, 4, 5}}},
              .inbox = {0x2A, 0},
              .oneProp = {}}}
{
    current = this;
}

FakeProfile::~FakeProfile()
{
    for (void* buffer : buffers)
        std::free(buffer);
    current = nullptr;
}

FakeProfile& FakeProfile::Current()
{
    return *current;
}

std::ptrdiff_t FakeProfile::CountCalls(const std::string& call) const
{
    return std::ranges::count(calls, call);
}

void* FakeProfile::Allocate(std::size_t size)
{
    void* const buffer = std::calloc(1, size ? size : 1);
    buffers.insert(buffer);
    return buffer;
}

SPropValue* AllocateValues(const Row& row, std::span<const ULONG> tags)
{
    Row asked;
    for (const ULONG tag : tags)
    {
        const auto found = std::ranges::find(row, tag, &Column::tag);
        asked.push_back(found != row.end()
                            ? *found
                            : Column{CHANGE_PROP_TYPE(tag, PT_ERROR), std::int32_t(MAPI_E_NOT_FOUND)});
    }
    return AllocateColumns(asked);
}

SPropValue* AllocateValue(const Column& column)
{
    return AllocateColumns({column});
}

std::string Hex(std::uint32_t number)
{
    char text[9];
    std::snprintf(text, sizeof text, "%08X", static_cast<unsigned>(number));
    return text;
}
