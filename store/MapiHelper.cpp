#include "store/MapiHelper.h"

#include "store/MapiHelperStore.h"
#include "store/MapiHelperTables.h"
#include "store/MapiOwners.h"

#include <mapitags.h>

#include <algorithm>
#include <new>
#include <span>
#include <string_view>

namespace
{
using Microsoft::WRL::ComPtr;

constexpr std::string_view exchangeService = "MSEMS";

// MAPI's own row of the status table, which is named after the profile.
RowSet ReadProfileRow(const MapiHelper& helper, IMAPITable& table) noexcept
{
    SizedSPropTagArray(2, columns) = {2, {PR_DISPLAY_NAME_A, PR_RESOURCE_TYPE}};
    SPropValue subsystem{};
    subsystem.ulPropTag = PR_RESOURCE_TYPE;
    subsystem.Value.ul = MAPI_SUBSYSTEM;
    SRestriction restriction{};
    restriction.rt = RES_PROPERTY;
    restriction.res.resProperty.relop = RELOP_EQ;
    restriction.res.resProperty.ulPropTag = PR_RESOURCE_TYPE;
    restriction.res.resProperty.lpProp = &subsystem;

    if (FAILED(table.SetColumns(reinterpret_cast<SPropTagArray*>(&columns), 0)) ||
        FAILED(table.Restrict(&restriction, 0)))
        return {};
    SRowSet* read = nullptr;
    const HRESULT result = table.QueryRows(1, 0, &read);
    RowSet rows(read, {helper.mapiFreeBuffer});
    if (FAILED(result))
        rows.reset();
    return rows;
}

void KeepProfileName(MapiHelper& helper, const char* utf8) noexcept
{
    wchar_t* const name = helper.profileName.get();
    // A name that does not fit leaves its beginning behind.
    if (::MultiByteToWideChar(CP_UTF8, 0, utf8, -1, name, MapiHelper::profileNameSize) == 0)
        std::fill_n(name, MapiHelper::profileNameSize, L'\0');
}

void ReadProfileName(MapiHelper& helper) noexcept
{
    ComPtr<IMAPITable> table;
    if (FAILED(helper.mapiSession->GetStatusTable(0, table.ReleaseAndGetAddressOf())) || !table)
        return;
    const RowSet rows = ReadProfileRow(helper, *table.Get());
    if (!rows || rows->cRows == 0)
        return;
    const SPropValue* const name = FindColumn(rows->aRow[0], 0, PR_DISPLAY_NAME_A);
    if (name && name->Value.lpszA)
        KeepProfileName(helper, name->Value.lpszA);
}

bool IsExchangeService(const SRow& row) noexcept
{
    const SPropValue* const name = FindColumn(row, 0, PR_SERVICE_NAME_A);
    return name && name->Value.lpszA && name->Value.lpszA == exchangeService;
}

bool HasExchangeService(const MapiHelper& helper) noexcept
{
    ComPtr<IMsgServiceAdmin> services;
    if (FAILED(helper.mapiSession->AdminServices(0, services.ReleaseAndGetAddressOf())) || !services)
        return false;
    ComPtr<IMAPITable> table;
    if (FAILED(services->GetMsgServiceTable(0, table.ReleaseAndGetAddressOf())) || !table)
        return false;
    SizedSPropTagArray(1, columns) = {1, {PR_SERVICE_NAME_A}};
    const RowSet rows = QueryAllRows(helper, table.Get(), reinterpret_cast<SPropTagArray*>(&columns));
    return rows && std::ranges::any_of(std::span(rows->aRow, rows->cRows), IsExchangeService);
}

void OpenSession(MapiHelper& helper) noexcept
{
    constexpr ULONG flags = MAPI_UNICODE | MAPI_EXTENDED | MAPI_EXPLICIT_PROFILE;
    ComPtr<IMAPISession> session;
    if (FAILED(helper.mapiLogonEx(0, nullptr, nullptr, flags, session.ReleaseAndGetAddressOf())))
        return;
    helper.mapiSession = session;
    publishedMapiSession = session.Get();
}

void CloseSession(MapiHelper& helper) noexcept
{
    if (helper.mapiSession)
        helper.mapiSession->Logoff(0, 0, 0);
    publishedMapiSession = nullptr;
    helper.mapiSession.Reset();
}

void CloseStore(MapiHelper& helper) noexcept
{
    publishedMapiStore = nullptr;
    helper.defaultStore.Reset();
}

void FreeEntryIds(MapiHelper& helper) noexcept
{
    helper.inboxEntryId.Clear();
    helper.outboxEntryId.Clear();
    helper.deletedItemsEntryId.Clear();
    helper.sentItemsEntryId.Clear();
    helper.fifthFolderEntryId.Clear();
    helper.subtreeEntryId.Clear();
}
}    // namespace

void StartMapiHelper(MapiHelper& helper, BOOL& exchangeProfile) noexcept
{
    StopMapiHelper(helper);
    if (!LoadMapiLibrary(helper))
        return;
    helper.profileName.reset(new (std::nothrow) wchar_t[MapiHelper::profileNameSize]());
    OpenSession(helper);
    if (!helper.mapiSession)
        return;
    if (helper.profileName)
        ReadProfileName(helper);
    OpenDefaultStore(helper);
    if (HasExchangeService(helper))
        exchangeProfile = TRUE;
}

void StopMapiHelper(MapiHelper& helper) noexcept
{
    if (!helper.mapiModule)
        return;
    FreeEntryIds(helper);
    helper.profileName.reset();
    CloseSession(helper);
    WithdrawMapiFunctions();
    CloseStore(helper);
    UnloadMapiLibrary(helper);
}
