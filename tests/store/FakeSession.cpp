// The objects of a FakeProfile. They stand in no unnamed namespace, since only COM calls reach them.
#include "tests/store/FakeProfile.h"

#include <mapitags.h>

#include <algorithm>
#include <cstring>
#include <utility>

// Reference counting, with the object counted in the profile and its end among the calls.
template <typename Interface>
class FakeObject : public Interface
{
public:
    explicit FakeObject(std::string itsName) : name(std::move(itsName)) { ++FakeProfile::Current().objects; }
    FakeObject(const FakeObject&) = delete;
    FakeObject& operator=(const FakeObject&) = delete;

    STDMETHODIMP QueryInterface(REFIID, void** object) override
    {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
    STDMETHODIMP_(ULONG) Release() override
    {
        const ULONG left = --references;
        if (left == 0)
            delete this;
        return left;
    }

protected:
    virtual ~FakeObject()
    {
        --FakeProfile::Current().objects;
        FakeProfile::Current().Called(name + " is gone");
    }

    const std::string name;

private:
    ULONG references = 1;
};

class FakeTable final : public FakeObject<IMAPITable>
{
public:
    FakeTable(std::vector<Row> rows, const TableResults& results, const std::string& name)
        : FakeObject(name + " table"),
          results(results),
          rows(std::move(rows))
    {
    }

    HRESULT ReadAll(std::span<const ULONG> tags, SRowSet** read)
    {
        FakeProfile::Current().Called("HrQueryAllRows of the " + name + TextOf(tags));
        if (FAILED(results.queryAllRows))
            return results.queryAllRows;
        return Give(rows, tags, read);
    }

    STDMETHODIMP SetColumns(SPropTagArray* tags, ULONG) override
    {
        if (FAILED(results.setColumns))
            return results.setColumns;
        columns.assign(tags->aulPropTag, tags->aulPropTag + tags->cValues);
        return S_OK;
    }
    STDMETHODIMP Restrict(SRestriction* restriction, ULONG) override
    {
        if (FAILED(results.restrict))
            return results.restrict;
        const auto& condition = restriction->res.resProperty;
        std::erase_if(rows, [&](const Row& row) { return !Agrees(row, condition); });
        return S_OK;
    }
    STDMETHODIMP QueryRows(LONG count, ULONG, SRowSet** read) override
    {
        if (FAILED(results.queryRows))
            return results.queryRows;
        std::vector<Row> first(rows.begin(),
                               rows.begin() + std::min<std::ptrdiff_t>(count, std::ssize(rows)));
        return Give(first, columns, read);
    }

    STDMETHODIMP GetLastError(HRESULT, ULONG, MAPIERROR**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP Advise(ULONG, IMAPIAdviseSink*, ULONG*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP Unadvise(ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP GetStatus(ULONG*, ULONG*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP QueryColumns(ULONG, SPropTagArray**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP GetRowCount(ULONG, ULONG*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP SeekRow(BOOKMARK, LONG, LONG*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP SeekRowApprox(ULONG, ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP QueryPosition(ULONG*, ULONG*, ULONG*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP FindRow(SRestriction*, BOOKMARK, ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP CreateBookmark(BOOKMARK*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP FreeBookmark(BOOKMARK) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP SortTable(SSortOrderSet*, ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP QuerySortOrder(SSortOrderSet**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP Abort() override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP ExpandRow(ULONG, BYTE*, ULONG, ULONG, SRowSet**, ULONG*) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP CollapseRow(ULONG, BYTE*, ULONG, ULONG*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP WaitForCompletion(ULONG, ULONG, ULONG*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP GetCollapseState(ULONG, ULONG, BYTE*, ULONG*, BYTE**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP SetCollapseState(ULONG, ULONG, BYTE*, BOOKMARK*) override { return MAPI_E_NO_SUPPORT; }

private:
    static std::string TextOf(std::span<const ULONG> tags)
    {
        std::string text;
        for (const ULONG tag : tags)
            text += ' ' + Hex(tag);
        return text;
    }

    static bool Agrees(const Row& row, const SPropertyRestriction& condition)
    {
        for (const Column& column : row)
        {
            if (column.tag == condition.ulPropTag)
                return std::get<std::int32_t>(column.value) == condition.lpProp->Value.l;
        }
        return false;
    }

    static HRESULT Give(const std::vector<Row>& rows, std::span<const ULONG> tags, SRowSet** read)
    {
        auto* const set = static_cast<SRowSet*>(
            FakeProfile::Current().Allocate(sizeof(SRowSet) + rows.size() * sizeof(SRow)));
        for (const Row& row : rows)
            set->aRow[set->cRows++] = {0, static_cast<ULONG>(tags.size()), AllocateValues(row, tags)};
        *read = set;
        return S_OK;
    }

    const TableResults results;
    std::vector<Row> rows;
    std::vector<ULONG> columns;
};

class FakeMsgStore final : public FakeObject<IMsgStore>
{
public:
    explicit FakeMsgStore(const FakeStore& data)
        : FakeObject("store " + std::to_string(data.entryId[0])),
          data(data)
    {
    }

    HRESULT GetOneProp(ULONG tag, SPropValue** value)
    {
        FakeProfile::Current().Called("HrGetOneProp " + Hex(tag));
        if (FAILED(data.getOneProp))
            return data.getOneProp;
        if (data.oneProp)
        {
            *value = AllocateValue(*data.oneProp);
            return S_OK;
        }
        *value = AllocateValues(data.properties, {&tag, 1});
        return S_OK;
    }

    STDMETHODIMP GetReceiveFolder(LPTSTR messageClass, ULONG flags, ULONG* size, ENTRYID** entryId,
                                  LPTSTR*) override
    {
        const bool isMail = flags == MAPI_UNICODE && std::wstring(messageClass) == L"IPM.Note";
        FakeProfile::Current().Called(isMail ? "GetReceiveFolder IPM.Note" : "GetReceiveFolder");
        if (FAILED(data.getReceiveFolder))
            return data.getReceiveFolder;
        void* const copy = FakeProfile::Current().Allocate(data.inbox.size());
        std::memcpy(copy, data.inbox.data(), data.inbox.size());
        *size = static_cast<ULONG>(data.inbox.size());
        *entryId = static_cast<ENTRYID*>(copy);
        return S_OK;
    }
    STDMETHODIMP GetProps(SPropTagArray* tags, ULONG, ULONG* count, SPropValue** values) override
    {
        if (FAILED(data.getProps))
            return data.getProps;
        *values = AllocateValues(data.properties, {tags->aulPropTag, tags->cValues});
        *count = tags->cValues;
        for (ULONG index = 0; index < *count; ++index)
        {
            if (PROP_TYPE((*values)[index].ulPropTag) == PT_ERROR)
                return MAPI_W_ERRORS_RETURNED;
        }
        return data.getProps;
    }

    STDMETHODIMP GetLastError(HRESULT, ULONG, MAPIERROR**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP SaveChanges(ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP GetPropList(ULONG, SPropTagArray**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP OpenProperty(ULONG, const IID*, ULONG, ULONG, IUnknown**) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP SetProps(ULONG, SPropValue*, SPropProblemArray**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP DeleteProps(SPropTagArray*, SPropProblemArray**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP CopyTo(ULONG, const IID*, SPropTagArray*, ULONG, IMAPIProgress*, const IID*, void*, ULONG,
                        SPropProblemArray**) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP CopyProps(SPropTagArray*, ULONG, IMAPIProgress*, const IID*, void*, ULONG,
                           SPropProblemArray**) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP GetNamesFromIDs(SPropTagArray**, GUID*, ULONG, ULONG*, MAPINAMEID***) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP GetIDsFromNames(ULONG, MAPINAMEID**, ULONG, SPropTagArray**) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP Advise(ULONG, ENTRYID*, ULONG, IMAPIAdviseSink*, ULONG*) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP Unadvise(ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP CompareEntryIDs(ULONG, ENTRYID*, ULONG, ENTRYID*, ULONG, ULONG*) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP OpenEntry(ULONG, ENTRYID*, const IID*, ULONG, ULONG*, IUnknown**) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP SetReceiveFolder(LPTSTR, ULONG, ULONG, ENTRYID*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP GetReceiveFolderTable(ULONG, IMAPITable**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP StoreLogoff(ULONG*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP AbortSubmit(ULONG, ENTRYID*, ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP GetOutgoingQueue(ULONG, IMAPITable**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP SetLockState(IMessage*, ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP FinishedMsg(ULONG, ULONG, ENTRYID*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP NotifyNewMail(NOTIFICATION*) override { return MAPI_E_NO_SUPPORT; }

private:
    const FakeStore data;
};

class FakeServiceAdmin final : public FakeObject<IMsgServiceAdmin>
{
public:
    FakeServiceAdmin() : FakeObject("service administration") {}

    STDMETHODIMP GetMsgServiceTable(ULONG, IMAPITable** table) override
    {
        const FakeProfile& mail = FakeProfile::Current();
        if (SUCCEEDED(mail.serviceTable.open))
            *table = MakeFakeTable(mail.serviceRows, mail.serviceTable, "service");
        return mail.serviceTable.open;
    }

    STDMETHODIMP GetLastError(HRESULT, ULONG, MAPIERROR**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP CreateMsgService(LPTSTR, LPTSTR, ULONG_PTR, ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP DeleteMsgService(MAPIUID*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP CopyMsgService(MAPIUID*, LPTSTR, const IID*, const IID*, void*, ULONG_PTR, ULONG) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP RenameMsgService(MAPIUID*, ULONG, LPTSTR) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP ConfigureMsgService(MAPIUID*, ULONG_PTR, ULONG, ULONG, SPropValue*) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP OpenProfileSection(MAPIUID*, const IID*, ULONG, IProfSect**) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP MsgServiceTransportOrder(ULONG, MAPIUID*, ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP AdminProviders(MAPIUID*, ULONG, IProviderAdmin**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP SetPrimaryIdentity(MAPIUID*, ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP GetProviderTable(ULONG, IMAPITable**) override { return MAPI_E_NO_SUPPORT; }
};

class FakeMapiSession final : public FakeObject<IMAPISession>
{
public:
    FakeMapiSession() : FakeObject("session") {}

    STDMETHODIMP GetLastError(HRESULT result, ULONG flags, MAPIERROR** error) override
    {
        FakeProfile& mail = FakeProfile::Current();
        mail.Called("GetLastError " + Hex(static_cast<std::uint32_t>(result)) + ' ' + Hex(flags));
        if (SUCCEEDED(mail.getLastError))
            *error = static_cast<MAPIERROR*>(mail.Allocate(sizeof(MAPIERROR)));
        return mail.getLastError;
    }
    STDMETHODIMP GetMsgStoresTable(ULONG, IMAPITable** table) override
    {
        const FakeProfile& mail = FakeProfile::Current();
        if (SUCCEEDED(mail.storesTable.open))
            *table = MakeFakeTable(mail.storeRows, mail.storesTable, "stores");
        return mail.storesTable.open;
    }
    STDMETHODIMP OpenMsgStore(ULONG_PTR, ULONG size, ENTRYID* entryId, const IID* iid, ULONG flags,
                              IMsgStore** store) override;
    STDMETHODIMP GetStatusTable(ULONG, IMAPITable** table) override
    {
        const FakeProfile& mail = FakeProfile::Current();
        if (SUCCEEDED(mail.statusTable.open))
            *table = MakeFakeTable(mail.statusRows, mail.statusTable, "status");
        return mail.statusTable.open;
    }
    STDMETHODIMP Logoff(ULONG_PTR window, ULONG flags, ULONG reserved) override
    {
        ++FakeProfile::Current().logoffs;
        FakeProfile::Current().Called(window || flags || reserved ? "Logoff with arguments" : "Logoff");
        return S_OK;
    }
    STDMETHODIMP AdminServices(ULONG, IMsgServiceAdmin** services) override
    {
        const FakeProfile& mail = FakeProfile::Current();
        FakeProfile::Current().Called("AdminServices");
        if (SUCCEEDED(mail.adminServices))
            *services = new FakeServiceAdmin;
        return mail.adminServices;
    }

    STDMETHODIMP OpenAddressBook(ULONG_PTR, const IID*, ULONG, IAddrBook**) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP OpenProfileSection(MAPIUID*, const IID*, ULONG, IProfSect**) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP OpenEntry(ULONG, ENTRYID*, const IID*, ULONG, ULONG*, IUnknown**) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP CompareEntryIDs(ULONG, ENTRYID*, ULONG, ENTRYID*, ULONG, ULONG*) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP Advise(ULONG, ENTRYID*, ULONG, IMAPIAdviseSink*, ULONG*) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP Unadvise(ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP MessageOptions(ULONG_PTR, ULONG, LPTSTR, IMessage*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP QueryDefaultMessageOpt(LPTSTR, ULONG, ULONG*, SPropValue**) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP EnumAdrTypes(ULONG, ULONG*, LPTSTR**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP QueryIdentity(ULONG*, ENTRYID**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP SetDefaultStore(ULONG, ULONG, ENTRYID*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP ShowForm(ULONG_PTR, IMsgStore*, IMAPIFolder*, const IID*, ULONG, IMessage*, ULONG, ULONG,
                          ULONG, ULONG, LPSTR) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP PrepareForm(const IID*, IMessage*, ULONG*) override { return MAPI_E_NO_SUPPORT; }
};

STDMETHODIMP FakeMapiSession::OpenMsgStore(ULONG_PTR, ULONG size, ENTRYID* entryId, const IID* iid,
                                           ULONG flags, IMsgStore** store)
{
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(entryId);
    const Bytes wanted(bytes, bytes + size);
    for (const FakeStore& known : FakeProfile::Current().stores)
    {
        if (known.entryId != wanted)
            continue;
        FakeProfile::Current().Called("OpenMsgStore " + std::to_string(known.entryId[0]) + ' ' + Hex(flags) +
                                      (iid ? " by an id" : ""));
        if (SUCCEEDED(known.open))
            *store = new FakeMsgStore(known);
        return known.open;
    }
    return MAPI_E_UNKNOWN_ENTRYID;
}

IMAPISession* MakeFakeSession()
{
    return new FakeMapiSession;
}

IMAPITable* MakeFakeTable(std::vector<Row> rows, const TableResults& results, const std::string& name)
{
    return new FakeTable(std::move(rows), results, name);
}

HRESULT ReadFakeTable(IMAPITable* table, std::span<const ULONG> columns, SRowSet** rows)
{
    return static_cast<FakeTable*>(table)->ReadAll(columns, rows);
}

HRESULT ReadFakeStore(IMAPIProp* object, ULONG tag, SPropValue** value)
{
    return static_cast<FakeMsgStore*>(static_cast<IMsgStore*>(object))->GetOneProp(tag, value);
}
