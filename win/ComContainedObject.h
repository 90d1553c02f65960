#pragma once

#include <windows.h>

#include <unknwn.h>

// The COM class `Base` as the inner part of an aggregate: whoever uses its interfaces uses and counts the
// outer object.
template <class Base>
class CComContainedObject final : public Base
{
public:
    explicit CComContainedObject(IUnknown* outer) : outer(outer) {}

    STDMETHODIMP QueryInterface(REFIID iid, void** result) noexcept override
    {
        return outer->QueryInterface(iid, result);
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return outer->AddRef(); }
    STDMETHODIMP_(ULONG) Release() noexcept override { return outer->Release(); }

private:
    IUnknown* const outer;    // not counted: it owns us
};
