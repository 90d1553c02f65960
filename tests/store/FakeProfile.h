#pragma once

#include <windows.h>

#include <mapicode.h>
#include <mapix.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <variant>
#include <vector>

// A mail profile for one test, behind the tests' mapi32.dll: plain data that a test fills in before the
// helper starts, and what was seen of the helper afterwards.
using Bytes = std::vector<std::uint8_t>;

struct Column
{
    ULONG tag;
    std::variant<std::int32_t, bool, std::string, std::wstring, Bytes> value;
};
using Row = std::vector<Column>;

// What the calls of one table return; where it is no success nothing is done.
struct TableResults
{
    HRESULT open = S_OK;
    HRESULT setColumns = S_OK;
    HRESULT restrict = S_OK;
    HRESULT queryRows = S_OK;
    HRESULT queryAllRows = S_OK;
};

struct FakeStore
{
    Bytes entryId;
    Row properties;
    Bytes inbox;
    HRESULT open = S_OK;
    HRESULT getReceiveFolder = S_OK;
    HRESULT getProps = S_OK;
    HRESULT getOneProp = S_OK;
    std::optional<Column> oneProp;    // what HrGetOneProp answers; without it, the property asked for
};

class FakeProfile
{
public:
    FakeProfile();    // a healthy one; the tests' mapi32.dll reaches it from now on
    FakeProfile(const FakeProfile&) = delete;
    FakeProfile& operator=(const FakeProfile&) = delete;
    ~FakeProfile();

    static FakeProfile& Current();

    // What the profile is, and where it fails.
    HRESULT initialize = S_OK;
    HRESULT logon = S_OK;
    HRESULT adminServices = S_OK;
    HRESULT getLastError = S_OK;
    std::vector<Row> statusRows;
    std::vector<Row> storeRows;
    std::vector<Row> serviceRows;
    TableResults statusTable;
    TableResults storesTable;
    TableResults serviceTable;
    std::vector<FakeStore> stores;    // the default store is the second of two

    // What was seen.
    std::vector<std::string> calls;    // in order, each with the arguments that matter
    std::set<void*> buffers;           // allocated and not freed
    int wrongFrees = 0;                // of what was freed before, or never allocated
    int initialized = 0;               // successful MAPIInitialize less MAPIUninitialize
    int logons = 0;
    int logoffs = 0;
    int objects = 0;    // alive

    void Called(std::string call) { calls.push_back(std::move(call)); }
    std::ptrdiff_t CountCalls(const std::string& call) const;

    // Memory that MAPIFreeBuffer takes back.
    void* Allocate(std::size_t size);
};

// The properties of those tags, each an error where there is none.
SPropValue* AllocateValues(const Row& row, std::span<const ULONG> tags);
SPropValue* AllocateValue(const Column& column);

// Objects of the profile, with the first reference the caller's.
IMAPISession* MakeFakeSession();
IMAPITable* MakeFakeTable(std::vector<Row> rows, const TableResults& results, const std::string& name);

// What HrQueryAllRows and HrGetOneProp do with such objects.
HRESULT ReadFakeTable(IMAPITable* table, std::span<const ULONG> columns, SRowSet** rows);
HRESULT ReadFakeStore(IMAPIProp* object, ULONG tag, SPropValue** value);

std::string Hex(std::uint32_t number);
