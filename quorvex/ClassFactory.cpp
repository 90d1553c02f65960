#include "quorvex/ClassFactory.h"

#include "quorvex/ComBoundary.h"
#include "quorvex/MapiError.h"
#include "quorvex/Module.h"
#include "quorvex/RdoSession.h"

#include <atomic>

namespace
{
// Makes sessions. Safe on any thread.
class CSessionFactory final : public IClassFactory
{
public:
    CSessionFactory() noexcept { ++Module::count; }
    CSessionFactory(const CSessionFactory&) = delete;
    CSessionFactory& operator=(const CSessionFactory&) = delete;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override
    {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (iid != IID_IUnknown && iid != IID_IClassFactory)
            return E_NOINTERFACE;
        *object = static_cast<IClassFactory*>(this);
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

    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) noexcept override
    {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (outer)
            return CLASS_E_NOAGGREGATION;
        return ComBoundary(
            [&] { CheckMapi(MakeObject<CRdoSession>()->QueryInterface(iid, object), L"make a session"); });
    }

    STDMETHODIMP LockServer(BOOL lock) noexcept override
    {
        if (lock)
            ++Module::count;
        else
            --Module::count;
        return S_OK;
    }

private:
    virtual ~CSessionFactory() { --Module::count; }

    std::atomic<ULONG> references = 1;
};
}    // namespace

HRESULT GetClassObject(REFCLSID classId, REFIID iid, void** object) noexcept
{
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (classId != sessionClass)
        return CLASS_E_CLASSNOTAVAILABLE;
    return ComBoundary(
        [&]
        {
            ComPtr<IClassFactory> factory;
            *factory.GetAddressOf() = new CSessionFactory;    // not by Attach: mingw's adds a reference
            CheckMapi(factory->QueryInterface(iid, object), L"make the class object");
        });
}
