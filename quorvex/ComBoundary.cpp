#include "quorvex/ComBoundary.h"

#include "quorvex/MapiError.h"

#include <comdef.h>
#include <oleauto.h>
#include <wrl/client.h>

#include <new>

Failure CurrentFailure() noexcept
{
    try
    {
        throw;
    }
    catch (const MapiError& error)
    {
        return {error.Code(), error.Description()};
    }
    catch (const _com_error& error)
    {
        return {error.Error(), {}};
    }
    catch (const std::bad_alloc&)
    {
        return {E_OUTOFMEMORY, {}};
    }
    catch (...)
    {
        return {E_UNEXPECTED, {}};
    }
}

void SetErrorInfoFor(const Failure& failure) noexcept
{
    using Microsoft::WRL::ComPtr;
    ComPtr<ICreateErrorInfo> create;
    if (FAILED(CreateErrorInfo(&create)))
        return;
    create->SetGUID(IID_IDispatch);
    create->SetSource(const_cast<wchar_t*>(errorSource));
    create->SetDescription(const_cast<wchar_t*>(failure.description.c_str()));
    ComPtr<IErrorInfo> info;
    if (SUCCEEDED(create.As(&info)))
        SetErrorInfo(0, info.Get());
}
