#pragma once

#include "explorer/office/ComBoundary.h"
#include "explorer/office/ModelContext.h"
#include "explorer/office/TypeLibraries.h"

#include <windows.h>

#include <comdef.h>

#include <wrl/client.h>

#include <atomic>
#include <utility>

// Counts the objects of all object models of the process that somebody still holds.
class CountedObject
{
public:
    static long GetCount() noexcept { return count; }

protected:
    CountedObject() noexcept { ++count; }
    CountedObject(const CountedObject&) = delete;
    CountedObject& operator=(const CountedObject&) = delete;
    ~CountedObject() { --count; }

private:
    static inline std::atomic<long> count = 0;
};

// References and late-bound calls of an object of the model, over `Base`, a chain of dual interfaces that
// ends with `Interface`. Chain lists its other interfaces but IUnknown and IDispatch. Used on the window's
// thread.
template <typename Base, typename Interface, typename... Chain>
class ModelObject : public Base, private CountedObject
{
public:
    STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override
    {
        if (!object)
            return E_POINTER;
        *object = Find(iid);
        if (!*object)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references; }
    STDMETHODIMP_(ULONG) Release() noexcept override
    {
        const ULONG left = --references;
        if (left == 0)
            delete this;
        return left;
    }

    STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override
    {
        return ComBoundary(count, [&] { *count = 1; });
    }
    STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept override
    {
        if (index != 0)
            return DISP_E_BADINDEX;
        return ComBoundary(info, [&] { *info = FindTypeInfo(__uuidof(Interface)).Detach(); });
    }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept override
    {
        return ComBoundary(
            [&]
            { _com_util::CheckError(FindTypeInfo(__uuidof(Interface))->GetIDsOfNames(names, count, ids)); });
    }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                        EXCEPINFO* exception, UINT* wrongArgument) noexcept override
    {
        HRESULT called = E_UNEXPECTED;
        const HRESULT found = ComBoundary(
            [&]
            {
                called = FindTypeInfo(__uuidof(Interface))
                             ->Invoke(static_cast<Interface*>(this), id, flags, arguments, result, exception,
                                      wrongArgument);
            });
        return FAILED(found) ? found : called;
    }

protected:
    explicit ModelObject(SharedContext shared) noexcept : context(std::move(shared)) {}
    virtual ~ModelObject() = default;

    virtual void* Find(REFIID iid) noexcept
    {
        const bool ours = iid == IID_IUnknown || iid == IID_IDispatch || iid == __uuidof(Interface) ||
                          (... || (iid == __uuidof(Chain)));
        return ours ? static_cast<Interface*>(this) : nullptr;
    }

    const SharedContext context;

private:
    ULONG references = 0;
};

// A new object of the model, in a reference of its own.
template <typename Object, typename... Arguments>
Microsoft::WRL::ComPtr<Object> MakeModelObject(Arguments&&... arguments)
{
    return Microsoft::WRL::ComPtr<Object>(new Object(std::forward<Arguments>(arguments)...));
}
