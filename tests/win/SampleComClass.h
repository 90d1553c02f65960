#pragma once

#include "win/ComCoClass.h"
#include "win/ComObjectRoot.h"
#include "win/ComThreadModel.h"

#include <windows.h>

#include <oaidl.h>
#include <objidl.h>

#include <span>

// A COM class with two interfaces, made as the framework makes any.
inline constexpr CLSID CLSID_Sample = {
    0xF0C5E1A2, 0x6B1D, 0x4C64, {0x9A, 0x1E, 0x3C, 0x55, 0x21, 0x8E, 0x70, 0x4D}};

class CSample : public CComObjectRootEx<CComSingleThreadModel>,
                public CComCoClass<CSample, &CLSID_Sample>,
                public IPersist,
                public ISupportErrorInfo
{
public:
    static inline int living = 0;
    static inline HRESULT constructed = S_OK;    // what FinalConstruct answers

    static std::span<const InterfaceEntry<CSample>> GetInterfaceMap() noexcept
    {
        using Entry = InterfaceEntry<CSample>;
        static const Entry map[] = {Entry::By<IPersist>(&IID_IPersist),
                                    Entry::By<ISupportErrorInfo>(&IID_ISupportErrorInfo)};
        return map;
    }

    CSample() { ++living; }
    HRESULT FinalConstruct() noexcept { return constructed; }
    // As a class does that hands itself to others while it goes.
    void FinalRelease() noexcept
    {
        IUnknown* self = UnknownOf(this);
        self->AddRef();
        self->Release();
    }

    STDMETHODIMP GetClassID(CLSID* id) noexcept override
    {
        *id = CLSID_Sample;
        return S_OK;
    }
    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID) noexcept override { return S_FALSE; }

protected:
    ~CSample() { --living; }
};
