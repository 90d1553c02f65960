#pragma once

#include <windows.h>

#include <comutil.h>
#include <wrl/client.h>

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

// What all fake objects of one test share: every call made on them in order, the one call that is to go
// wrong, and how many of them are alive.
struct CallLog
{
    enum class Failure
    {
        plain,           // an HRESULT alone
        withInfo,        // DISP_E_EXCEPTION and an EXCEPINFO
        withoutObject    // success, but with no object where one is expected
    };

    // One line a call: "Object id kind(TYPE value, ...)", as in "Session 9 method(BSTR 0A, I4 16)".
    std::vector<std::string> lines;
    std::vector<std::string> refused;    // lines of calls for which the object has no answer
    std::function<void(const std::string& line)> onCall;
    std::size_t failAt = 0;    // counted from 1; 0 for none
    Failure failure = Failure::plain;
    int liveObjects = 0;
};

using FakeArguments = std::vector<VARIANT>;    // in the order of the call, borrowed
using FakeAnswer = std::function<_variant_t(const FakeArguments&)>;

// A late-bound object that answers by dispatch id and invoke kind, and writes down each call it gets.
class FakeDispatch : public IDispatch
{
public:
    static Microsoft::WRL::ComPtr<FakeDispatch> Make(CallLog& log, std::string name);

    FakeDispatch* OnMethod(DISPID id, FakeAnswer answer)
    {
        return On(id, DISPATCH_METHOD, std::move(answer));
    }
    FakeDispatch* OnGet(DISPID id, FakeAnswer answer)
    {
        return On(id, DISPATCH_PROPERTYGET, std::move(answer));
    }
    FakeDispatch* OnPut(DISPID id, FakeAnswer answer)
    {
        return On(id, DISPATCH_PROPERTYPUT, std::move(answer));
    }

    STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP GetTypeInfoCount(UINT* count) override;
    STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
    STDMETHODIMP Invoke(DISPID id, REFIID interfaceId, LCID locale, WORD kind, DISPPARAMS* parameters,
                        VARIANT* result, EXCEPINFO* exception, UINT* badArgument) override;

private:
    FakeDispatch(CallLog& log, std::string name);
    virtual ~FakeDispatch();

    FakeDispatch* On(DISPID id, WORD kind, FakeAnswer answer);
    HRESULT Fail(VARIANT* result, EXCEPINFO* exception) const;

    CallLog& log;
    std::string name;
    std::map<std::pair<DISPID, WORD>, FakeAnswer> answers;
    ULONG references = 1;
};

// Gives a variant of a fake object its own reference.
_variant_t ObjectVariant(const Microsoft::WRL::ComPtr<FakeDispatch>& object);
