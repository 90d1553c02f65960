#include "localmapi/ProfileTables.h"

#include "localmapi/MapiTable.h"
#include "localmapi/TextConversion.h"
#include "localmapi/VectorTableSource.h"

#include <mapix.h>

#include <utility>

namespace
{
constexpr char providerName[] = "Local mail store in one file";
constexpr char libraryName[] = "LocalMapi.dll";

std::int64_t Number(std::int64_t number)
{
    return number;
}

Microsoft::WRL::ComPtr<IMAPITable> MakeTableOfOne(VectorTableSource::Row row)
{
    row.emplace(PR_ROWID, Number(0));
    std::vector<std::uint32_t> columns;
    for (const auto& [tag, value] : row)
        columns.push_back(tag);
    return MakeMapiTable(
        std::make_unique<VectorTableSource>(std::move(columns), std::vector{std::move(row)}));
}

Blob BlobOf(const StoreUid& uid)
{
    return Blob(uid.begin(), uid.end());
}
}    // namespace

Microsoft::WRL::ComPtr<IMAPITable> MakeMsgStoresTable(const StoreDescription& store)
{
    const Blob entryId = EncodeEntryId({store.uid, EntryKind::Store, 0});
    return MakeTableOfOne({{PR_DISPLAY_NAME_W, store.displayName},
                           {PR_ENTRYID, entryId},
                           {PR_INSTANCE_KEY, entryId},
                           {PR_RECORD_KEY, BlobOf(store.uid)},
                           {PR_OBJECT_TYPE, Number(MAPI_STORE)},
                           {PR_RESOURCE_TYPE, Number(MAPI_STORE_PROVIDER)},
                           {PR_RESOURCE_FLAGS, Number(STATUS_DEFAULT_STORE | STATUS_PRIMARY_STORE)},
                           {PR_DEFAULT_STORE, Number(1)},
                           {PR_PROVIDER_DISPLAY_W, std::string(providerName)},
                           {PR_PROVIDER_DLL_NAME_W, std::string(libraryName)},
                           {PR_MDB_PROVIDER, BlobOf(providerUid)}});
}

Microsoft::WRL::ComPtr<IMAPITable> MakeStatusTable(const std::wstring& profileName)
{
    return MakeTableOfOne({{PR_DISPLAY_NAME_W, Utf8FromWide(profileName)},
                           {PR_INSTANCE_KEY, Blob{0}},
                           {PR_OBJECT_TYPE, Number(MAPI_STATUS)},
                           {PR_RESOURCE_TYPE, Number(MAPI_SUBSYSTEM)},
                           {PR_RESOURCE_METHODS, Number(0)},
                           {PR_STATUS_CODE, Number(STATUS_AVAILABLE)},
                           {PR_PROVIDER_DISPLAY_W, std::string(providerName)},
                           {PR_PROVIDER_DLL_NAME_W, std::string(libraryName)}});
}

Microsoft::WRL::ComPtr<IMAPITable> MakeMsgServiceTable(const StoreDescription& store)
{
    return MakeTableOfOne({{PR_SERVICE_NAME_W, store.serviceName},
                           {PR_DISPLAY_NAME_W, store.displayName},
                           {PR_SERVICE_UID, BlobOf(store.uid)},
                           {PR_INSTANCE_KEY, BlobOf(store.uid)},
                           {PR_SERVICE_DLL_NAME_W, std::string(libraryName)},
                           {PR_RESOURCE_FLAGS, Number(SERVICE_DEFAULT_STORE | SERVICE_NO_PRIMARY_IDENTITY)}});
}
