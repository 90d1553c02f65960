#pragma once

#include "tests/addin/OfficeLog.h"

#include <windows.h>

#include <oaidl.h>
#include <wrl/client.h>

#include <string>
#include <utility>

// A reference-counted object of the fake host: answers the interfaces `Known`, which `Base` implements, and
// writes down the calls that its functions hand to Note, Give and Put. It starts with no reference.
template <typename Base, typename... Known>
class FakeObject : public Base, public ISupportErrorInfo
{
public:
    FakeObject(OfficeLog& log, std::string name) : log(log), name(std::move(name)) { ++log.liveObjects; }
    FakeObject(const FakeObject&) = delete;
    FakeObject& operator=(const FakeObject&) = delete;

    STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) override
    {
        *object = log.Knows(interfaceId) ? Find(interfaceId) : nullptr;
        if (!*object)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
    STDMETHODIMP_(ULONG) Release() override
    {
        const ULONG left = --references;
        if (!left)
            delete this;
        return left;
    }

    STDMETHODIMP GetTypeInfoCount(UINT* count)
    {
        *count = 0;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) { return DISP_E_UNKNOWNNAME; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*)
    {
        return DISP_E_MEMBERNOTFOUND;
    }

    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID) override
    {
        return log.failure == OfficeLog::Failure::withInfo ? S_OK : S_FALSE;
    }

protected:
    virtual ~FakeObject() { --log.liveObjects; }

    // Borrowed; null when the object has no such interface.
    virtual void* Find(REFIID interfaceId)
    {
        if (interfaceId == IID_ISupportErrorInfo)
            return static_cast<ISupportErrorInfo*>(this);
        const bool known = interfaceId == IID_IUnknown || (... || (interfaceId == __uuidof(Known)));
        return known ? static_cast<Base*>(this) : nullptr;
    }

    OfficeLog::Verdict Note(const std::string& call) { return log.Note(name + " " + call); }

    template <typename Result, typename Object>
    HRESULT Give(const std::string& call, Result** result, const Microsoft::WRL::ComPtr<Object>& object)
    {
        *result = nullptr;
        const OfficeLog::Verdict verdict = Note(call);
        if (verdict.hasObject && object)
        {
            *result = object.Get();
            (*result)->AddRef();
        }
        return verdict.result;
    }
    template <typename Value>
    HRESULT Put(const std::string& property, Value value)
    {
        return Note("put " + property + "(" + Describe(value) + ")").result;
    }

    OfficeLog& log;
    std::string name;

private:
    ULONG references = 0;
};
