#pragma once

#include "tests/quorvex/FakeMapiMemory.h"
#include "tests/quorvex/FakeProps.h"

#include <windows.h>

#include <mapidefs.h>
#include <mapiguid.h>
#include <wrl/client.h>

#include <atomic>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// A mail store in memory behind MAPI's interfaces. The objects answer what the plain data of FakeProps.h
// holds at the time of the call, so that a test may change it under them; methods nothing here has a use for
// return MAPI_E_NO_SUPPORT. Needs a living FakeMapiMemory.
namespace fake
{
// The reference counting of every fake; counts the objects that are alive.
struct LiveObjects
{
    static inline std::atomic<long> count = 0;
};

template <class Interface>
class Unknown : public Interface
{
public:
    Unknown(std::initializer_list<const IID*> interfaces) : iids(interfaces) { ++LiveObjects::count; }
    Unknown(const Unknown&) = delete;
    Unknown& operator=(const Unknown&) = delete;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override
    {
        *object = nullptr;
        for (const IID* known : iids)
            if (IsEqualIID(*known, iid))
            {
                *object = static_cast<Interface*>(this);
                AddRef();
                return S_OK;
            }
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
    virtual ~Unknown() { --LiveObjects::count; }

private:
    std::vector<const IID*> iids;
    std::atomic<ULONG> references = 1;
};

template <class T, class... Arguments>
Microsoft::WRL::ComPtr<T> Make(Arguments&&... arguments)
{
    Microsoft::WRL::ComPtr<T> object;
    // Not by Attach: mingw's adds a reference.
    *object.GetAddressOf() = new T(std::forward<Arguments>(arguments)...);
    return object;
}

// A MAPIERROR with that text; null in `error` when the text is empty.
HRESULT GiveLastError(const std::wstring& text, MAPIERROR** error);

// The calls of IMAPIProp, apart from the interface that they are reached through.
HRESULT GetProps(const Properties& properties, const PropHabits& habits, const SPropTagArray* tags,
                 ULONG* count, SPropValue** values);
HRESULT GetPropList(const Properties& properties, SPropTagArray** tags);
HRESULT OpenTextStream(const Properties& properties, const PropHabits& habits, ULONG tag, REFIID iid,
                       IUnknown** stream);
HRESULT SetProps(Properties& properties, ULONG count, const SPropValue* values);
HRESULT DeleteProps(Properties& properties, const SPropTagArray* tags);

// An IMAPIProp over properties, which a derived class gives when asked.
template <class Interface>
class MapiProp : public Unknown<Interface>
{
public:
    using Unknown<Interface>::Unknown;

    STDMETHODIMP GetLastError(HRESULT, ULONG, MAPIERROR** error) override
    {
        return GiveLastError(Habits().lastError, error);
    }
    STDMETHODIMP SaveChanges(ULONG) override { return S_OK; }
    STDMETHODIMP GetProps(SPropTagArray* tags, ULONG, ULONG* count, SPropValue** values) override
    {
        ++counters->getPropsCalls;
        return fake::GetProps(Current(), Habits(), tags, count, values);
    }
    STDMETHODIMP GetPropList(ULONG, SPropTagArray** tags) override
    {
        return fake::GetPropList(Current(), tags);
    }
    STDMETHODIMP OpenProperty(ULONG tag, const IID* iid, ULONG, ULONG, IUnknown** object) override
    {
        ++counters->streamsOpened;
        return OpenTextStream(Current(), Habits(), tag, *iid, object);
    }
    STDMETHODIMP SetProps(ULONG count, SPropValue* values, SPropProblemArray** problems) override
    {
        if (problems)
            *problems = nullptr;
        return fake::SetProps(Stored(), count, values);
    }
    STDMETHODIMP DeleteProps(SPropTagArray* tags, SPropProblemArray** problems) override
    {
        if (problems)
            *problems = nullptr;
        return fake::DeleteProps(Stored(), tags);
    }
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

protected:
    virtual Properties& Stored() = 0;
    virtual Properties Current() { return Stored(); }    // with what is computed
    virtual const PropHabits& Habits() const = 0;

    std::shared_ptr<Counters> counters = std::make_shared<Counters>();
};

// A table over rows made when it was opened.
Microsoft::WRL::ComPtr<IMAPITable> MakeTable(std::vector<Properties> rows, TableHabits habits,
                                             std::shared_ptr<Counters> counters);

class FakeAttach : public MapiProp<IAttach>
{
public:
    FakeAttach(std::shared_ptr<Message> message, std::size_t number, std::shared_ptr<Counters> counters);

protected:
    Properties& Stored() override { return message->attachments.at(number); }
    const PropHabits& Habits() const override { return message->habits; }

private:
    std::shared_ptr<Message> message;
    std::size_t number;
};

class FakeMessage : public MapiProp<IMessage>
{
public:
    FakeMessage(std::shared_ptr<Message> message, std::shared_ptr<Counters> counters);

    STDMETHODIMP GetAttachmentTable(ULONG flags, IMAPITable** table) override;
    STDMETHODIMP OpenAttach(ULONG number, const IID* iid, ULONG flags, IAttach** attach) override;
    STDMETHODIMP CreateAttach(const IID*, ULONG, ULONG*, IAttach**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP DeleteAttach(ULONG, ULONG, IMAPIProgress*, ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP GetRecipientTable(ULONG flags, IMAPITable** table) override;
    STDMETHODIMP ModifyRecipients(ULONG, ADRLIST*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP SubmitMessage(ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP SetReadFlag(ULONG) override { return MAPI_E_NO_SUPPORT; }

protected:
    Properties& Stored() override { return message->properties; }
    const PropHabits& Habits() const override { return message->habits; }

private:
    std::shared_ptr<Message> message;
};

class FakeFolder : public MapiProp<IMAPIFolder>
{
public:
    explicit FakeFolder(std::shared_ptr<Folder> folder);

    STDMETHODIMP GetContentsTable(ULONG flags, IMAPITable** table) override;
    STDMETHODIMP GetHierarchyTable(ULONG, IMAPITable**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP OpenEntry(ULONG size, ENTRYID* id, const IID* iid, ULONG flags, ULONG* type,
                           IUnknown** object) override;
    STDMETHODIMP SetSearchCriteria(SRestriction*, ENTRYLIST*, ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP GetSearchCriteria(ULONG, SRestriction**, ENTRYLIST**, ULONG*) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP CreateMessage(const IID*, ULONG, IMessage**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP CopyMessages(ENTRYLIST*, const IID*, void*, ULONG, IMAPIProgress*, ULONG) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP DeleteMessages(ENTRYLIST* ids, ULONG window, IMAPIProgress* progress, ULONG flags) override;
    STDMETHODIMP CreateFolder(ULONG, LPTSTR, LPTSTR, const IID*, ULONG, IMAPIFolder**) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP CopyFolder(ULONG, ENTRYID*, const IID*, void*, LPTSTR, ULONG, IMAPIProgress*, ULONG) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP DeleteFolder(ULONG, ENTRYID*, ULONG, IMAPIProgress*, ULONG) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP SetReadFlags(ENTRYLIST*, ULONG, IMAPIProgress*, ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP GetMessageStatus(ULONG, ENTRYID*, ULONG, ULONG*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP SetMessageStatus(ULONG, ENTRYID*, ULONG, ULONG, ULONG*) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP SaveContentsSort(SSortOrderSet*, ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP EmptyFolder(ULONG, IMAPIProgress*, ULONG) override { return MAPI_E_NO_SUPPORT; }

protected:
    Properties& Stored() override { return folder->properties; }
    Properties Current() override;
    const PropHabits& Habits() const override { return folder->habits; }

private:
    std::shared_ptr<Folder> folder;
};

// A message added at the end of the folder, under an entry id that no other message of this process has.
std::shared_ptr<Message> AddMessage(Folder& folder, Properties properties);
}    // namespace fake
