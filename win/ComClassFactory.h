#pragma once

#include <windows.h>

#include <unknwn.h>

#include <atomic>

// How a class makes its objects: CComCoClass<...>::CreateInstance.
using CreateInstanceFunction = HRESULT (*)(IUnknown* outer, REFIID iid, void** result) noexcept;

// The class object of one class, kept by its module for as long as the module lives: the first reference is
// the module's own, only those beyond it keep the module loaded. Any thread.
class CComClassFactory final : public IClassFactory
{
public:
    explicit CComClassFactory(CreateInstanceFunction create) noexcept : create(create) {}
    CComClassFactory(const CComClassFactory&) = delete;
    CComClassFactory& operator=(const CComClassFactory&) = delete;

    STDMETHODIMP QueryInterface(REFIID iid, void** result) noexcept override;
    STDMETHODIMP_(ULONG) AddRef() noexcept override;
    STDMETHODIMP_(ULONG) Release() noexcept override;

    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** result) noexcept override;
    STDMETHODIMP LockServer(BOOL lock) noexcept override;

private:
    ~CComClassFactory() = default;

    const CreateInstanceFunction create;
    std::atomic<ULONG> references = 0;
};
