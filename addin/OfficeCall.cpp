#include "addin/OfficeCall.h"

#include <oaidl.h>
#include <oleauto.h>

using Microsoft::WRL::ComPtr;

namespace
{
// An error of another call may still stand: only what the object vouches for belongs to this one.
bool LeavesErrorInfo(IUnknown& object, REFIID interfaceId)
{
    ComPtr<ISupportErrorInfo> support;
    return SUCCEEDED(object.QueryInterface(IID_ISupportErrorInfo,
                                           reinterpret_cast<void**>(support.ReleaseAndGetAddressOf()))) &&
           support && support->InterfaceSupportsErrorInfo(interfaceId) == S_OK;
}
}    // namespace

void ThrowOfficeError(HRESULT result, IUnknown& object, REFIID interfaceId)
{
    ComPtr<IErrorInfo> info;
    if (LeavesErrorInfo(object, interfaceId))
        ::GetErrorInfo(0, info.ReleaseAndGetAddressOf());
    throw _com_error(result, info.Detach());
}
