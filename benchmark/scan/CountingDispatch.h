#pragma once

#include <windows.h>

#include <wrl/client.h>

#include <atomic>
#include <map>
#include <tuple>

// Every call that was made on counting objects, by dispatch id, invoke kind and number of arguments.
class CallCounts
{
public:
    void Add(DISPID id, WORD kind, UINT arguments)
    {
        ++calls[{id, kind, arguments}];
        ++total;
    }

    long long Of(DISPID id, WORD kind, UINT arguments) const
    {
        const auto found = calls.find({id, kind, arguments});
        return found == calls.end() ? 0 : found->second;
    }
    long long Total() const { return total; }

private:
    std::map<std::tuple<DISPID, WORD, UINT>, long long> calls;
    long long total = 0;
};

// Stands before a late-bound object, passes each call on and counts it; so do the objects that it gives out.
// For one thread at a time, and for clients that hand none of these objects back as an argument.
class CountingDispatch final : public IDispatch
{
public:
    // `counts` must outlive the object and all that come from it.
    static Microsoft::WRL::ComPtr<IDispatch> Before(Microsoft::WRL::ComPtr<IDispatch> object,
                                                    CallCounts& counts);

    STDMETHODIMP QueryInterface(REFIID iid, void** result) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP GetTypeInfoCount(UINT* count) override;
    STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
    STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
    STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID locale, WORD kind, DISPPARAMS* parameters,
                        VARIANT* result, EXCEPINFO* info, UINT* argument) override;

private:
    CountingDispatch(Microsoft::WRL::ComPtr<IDispatch> object, CallCounts& counts)
        : object(std::move(object)),
          counts(counts)
    {
    }
    ~CountingDispatch() = default;

    std::atomic<ULONG> references = 1;
    Microsoft::WRL::ComPtr<IDispatch> object;
    CallCounts& counts;
};
