#include "tests/addin/OfficeLog.h"

#include <oleauto.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

using Microsoft::WRL::ComPtr;

namespace
{
void LeavePlannedText()
{
    ComPtr<ICreateErrorInfo> create;
    ComPtr<IErrorInfo> info;
    std::wstring text = OfficeLog::plannedText;
    if (FAILED(::CreateErrorInfo(create.ReleaseAndGetAddressOf())) || FAILED(create.As(&info)))
        throw std::runtime_error("no error information can be made");
    create->SetDescription(text.data());
    ::SetErrorInfo(0, info.Get());
}
}    // namespace

OfficeLog::Verdict OfficeLog::Note(std::string line)
{
    lines.push_back(std::move(line));
    if (onCall)
        onCall(lines.back());
    if (lines.size() != failAt)
        return {};
    if (throws)
        throw std::runtime_error("the host is broken");
    if (failure == Failure::withoutObject)
        return {S_OK, false};
    if (failure == Failure::withInfo)
        LeavePlannedText();
    return {plannedCode, false};
}

bool OfficeLog::Knows(REFIID interfaceId) const
{
    return std::ranges::find(unknownInterfaces, interfaceId) == unknownInterfaces.end();
}

std::size_t OfficeLog::CountOf(const std::string& line) const
{
    return static_cast<std::size_t>(std::ranges::count(lines, line));
}

std::string Describe(BSTR text)
{
    std::string narrow;
    for (UINT i = 0; i < ::SysStringLen(text); ++i)
        narrow += text[i] < 0x80 ? static_cast<char>(text[i]) : '?';
    return narrow;
}

std::string Describe(long value)
{
    return std::to_string(value);
}

std::string Describe(const VARIANT& value)
{
    switch (value.vt)
    {
    case VT_I2:
        return "I2 " + std::to_string(value.iVal);
    case VT_I4:
        return "I4 " + std::to_string(value.lVal);
    case VT_BSTR:
        return "BSTR " + Describe(value.bstrVal);
    case VT_ERROR:
        return value.scode == DISP_E_PARAMNOTFOUND ? "missing" : "ERROR " + std::to_string(value.scode);
    default:
        return "VT " + std::to_string(value.vt);
    }
}
