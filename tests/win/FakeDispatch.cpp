#include "tests/win/FakeDispatch.h"

#include "win/Variant.h"

#include <windows.h>

#include <oleauto.h>

#include <algorithm>
#include <iomanip>
#include <sstream>

namespace
{
std::string Narrow(const std::wstring& text)
{
    std::string narrow;
    for (const wchar_t letter : text)
        narrow += letter < 0x80 ? static_cast<char>(letter) : '?';
    return narrow;
}

std::string Hex(ULONGLONG value)
{
    std::ostringstream text;
    text << "0x" << std::hex << value;
    return text.str();
}

std::string DescribeArray(const VARIANT& value)
{
    if (!value.parray)
        return "ARRAY " + Hex(value.vt) + " null";
    VARTYPE elementType = VT_EMPTY;
    ::SafeArrayGetVartype(value.parray, &elementType);
    std::string text = "ARRAY " + Hex(value.vt) + " of " + std::to_string(elementType) + ":";
    for (ULONG i = 0; i < ArrayLength(value); ++i)
        text += " " + Hex(ArrayElement(value, i).ullVal);
    return text;
}

std::string DescribeDate(DATE date)
{
    std::ostringstream text;
    text << "DATE " << std::fixed << std::setprecision(6) << date;
    return text.str();
}

std::string Describe(const VARIANT& value)
{
    if (value.vt & VT_ARRAY)
        return DescribeArray(value);
    switch (value.vt)
    {
    case VT_I4:
        return "I4 " + std::to_string(value.lVal);
    case VT_BOOL:
        return "BOOL " + std::to_string(value.boolVal);
    case VT_DATE:
        return DescribeDate(value.date);
    case VT_BSTR:
        return "BSTR " + Narrow(TextOf(value.bstrVal));
    case VT_DISPATCH:
        return value.pdispVal ? "DISPATCH" : "DISPATCH null";
    case VT_ERROR:
        return "ERROR " + Hex(static_cast<ULONG>(value.scode));
    default:
        return "VT " + std::to_string(value.vt);
    }
}

std::string DescribeKind(WORD kind, const DISPPARAMS& parameters)
{
    const bool namesValue =
        parameters.cNamedArgs == 1 && parameters.rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
    if (kind == DISPATCH_PROPERTYPUT && namesValue)
        return "put";
    if (parameters.cNamedArgs != 0)
        return std::to_string(kind) + " with names";
    if (kind == DISPATCH_METHOD)
        return "method";
    if (kind == DISPATCH_PROPERTYGET)
        return "get";
    return std::to_string(kind);
}

std::string DescribeCall(const std::string& name, DISPID id, WORD kind, const DISPPARAMS& parameters,
                         const FakeArguments& arguments)
{
    std::string line = name + " " + std::to_string(id) + " " + DescribeKind(kind, parameters) + "(";
    for (std::size_t i = 0; i < arguments.size(); ++i)
        line += (i == 0 ? "" : ", ") + Describe(arguments[i]);
    return line + ")";
}
}    // namespace

FakeDispatch::FakeDispatch(CallLog& log, std::string name) : log(log), name(std::move(name))
{
    ++log.liveObjects;
}

FakeDispatch::~FakeDispatch()
{
    --log.liveObjects;
}

Microsoft::WRL::ComPtr<FakeDispatch> FakeDispatch::Make(CallLog& log, std::string name)
{
    Microsoft::WRL::ComPtr<FakeDispatch> object;
    *object.GetAddressOf() =
        new FakeDispatch(log, std::move(name));    // mingw's Attach would count once more
    return object;
}

FakeDispatch* FakeDispatch::On(DISPID id, WORD kind, FakeAnswer answer)
{
    answers[{id, kind}] = std::move(answer);
    return this;
}

STDMETHODIMP FakeDispatch::QueryInterface(REFIID interfaceId, void** object)
{
    const bool known = interfaceId == IID_IUnknown || interfaceId == IID_IDispatch;
    *object = known ? this : nullptr;
    if (known)
        AddRef();
    return known ? S_OK : E_NOINTERFACE;
}

STDMETHODIMP_(ULONG) FakeDispatch::AddRef()
{
    return ++references;
}

STDMETHODIMP_(ULONG) FakeDispatch::Release()
{
    const ULONG left = --references;
    if (left == 0)
        delete this;
    return left;
}

STDMETHODIMP FakeDispatch::GetTypeInfoCount(UINT* count)
{
    *count = 0;
    return S_OK;
}

STDMETHODIMP FakeDispatch::GetTypeInfo(UINT, LCID, ITypeInfo**)
{
    return E_NOTIMPL;
}

STDMETHODIMP FakeDispatch::GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*)
{
    return DISP_E_UNKNOWNNAME;    // callers know the ids
}

HRESULT FakeDispatch::Fail(VARIANT* result, EXCEPINFO* exception) const
{
    switch (log.failure)
    {
    case CallLog::Failure::withInfo:
        exception->bstrDescription = ::SysAllocString(L"The store is busy.");
        exception->bstrSource = ::SysAllocString(L"FakeStore");
        exception->scode = E_ACCESSDENIED;
        return DISP_E_EXCEPTION;
    case CallLog::Failure::withoutObject:
        if (result)
            result->vt = VT_DISPATCH;
        return S_OK;
    case CallLog::Failure::plain:
        break;
    }
    return E_OUTOFMEMORY;
}

STDMETHODIMP FakeDispatch::Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters, VARIANT* result,
                                  EXCEPINFO* exception, UINT*)
{
    FakeArguments arguments(parameters->rgvarg, parameters->rgvarg + parameters->cArgs);
    std::ranges::reverse(arguments);
    log.lines.push_back(DescribeCall(name, id, kind, *parameters, arguments));
    if (log.onCall)
        log.onCall(log.lines.back());
    if (log.lines.size() == log.failAt)
        return Fail(result, exception);

    const auto answer = answers.find({id, kind});
    if (answer == answers.end())
    {
        log.refused.push_back(log.lines.back());
        return DISP_E_MEMBERNOTFOUND;
    }
    _variant_t value = answer->second(arguments);
    if (result)
        *result = value.Detach();
    return S_OK;
}

_variant_t ObjectVariant(const Microsoft::WRL::ComPtr<FakeDispatch>& object)
{
    return DispatchVariant(object.Get());
}
