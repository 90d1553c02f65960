#include "win/WindowBoundary.h"

#include "win/OleException.h"
#include "win/SystemMessage.h"

#include <comdef.h>

#include <new>

namespace
{
constexpr wchar_t unknownFailure[] = L"An unexpected error occurred.";

std::wstring DescribeCurrentFailure()
{
    try
    {
        throw;
    }
    catch (const std::exception& failure)
    {
        return DescribeFailure(failure);
    }
    catch (const _com_error& failure)
    {
        return SystemMessage(static_cast<DWORD>(failure.Error()));
    }
    catch (...)
    {
        return unknownFailure;
    }
}
}    // namespace

std::wstring DescribeFailure(const std::exception& failure)
{
    if (const auto* raised = dynamic_cast<const COleDispatchException*>(&failure);
        raised && !raised->GetDescription().empty())
        return raised->GetDescription();
    if (const auto* failed = dynamic_cast<const COleException*>(&failure))
        return SystemMessage(static_cast<DWORD>(failed->GetCode()));
    if (dynamic_cast<const std::bad_alloc*>(&failure))
        return SystemMessage(ERROR_OUTOFMEMORY);
    return unknownFailure;
}

void ReportFailure(HWND window) noexcept
{
    try
    {
        const std::wstring text = DescribeCurrentFailure();
        wchar_t caption[260] = L"";
        ::GetWindowTextW(window, caption, ARRAYSIZE(caption));
        ::MessageBoxW(window, text.c_str(), caption, MB_OK | MB_ICONERROR);
    }
    catch (const std::bad_alloc&)
    {
        ::MessageBoxW(window, unknownFailure, nullptr, MB_OK | MB_ICONERROR);
    }
}
