#include "localmapi/MsgServiceAdmin.h"

#include "localmapi/Arguments.h"
#include "localmapi/ComBoundary.h"
#include "localmapi/ComObject.h"
#include "localmapi/ProfileTables.h"

#include <utility>

namespace
{
class CMsgServiceAdmin final : public ComObject<IMsgServiceAdmin, IID_IMsgServiceAdmin>
{
public:
    explicit CMsgServiceAdmin(std::wstring storePath) : storePath(std::move(storePath)) {}

    STDMETHODIMP GetLastError(HRESULT result, ULONG flags, LPMAPIERROR* error) noexcept override
    {
        return lastError.Get(result, flags, error);
    }
    STDMETHODIMP GetMsgServiceTable(ULONG flags, LPMAPITABLE* table) noexcept override;
    STDMETHODIMP CreateMsgService(LPTSTR, LPTSTR, ULONG_PTR, ULONG) noexcept override { return NoSupport(); }
    STDMETHODIMP DeleteMsgService(LPMAPIUID) noexcept override { return NoSupport(); }
    STDMETHODIMP CopyMsgService(LPMAPIUID, LPTSTR, LPCIID, LPCIID, LPVOID, ULONG_PTR, ULONG) noexcept override
    {
        return NoSupport();
    }
    STDMETHODIMP RenameMsgService(LPMAPIUID, ULONG, LPTSTR) noexcept override { return NoSupport(); }
    STDMETHODIMP ConfigureMsgService(LPMAPIUID, ULONG_PTR, ULONG, ULONG, LPSPropValue) noexcept override
    {
        return NoSupport();
    }
    STDMETHODIMP OpenProfileSection(LPMAPIUID, LPCIID, ULONG, LPPROFSECT* section) noexcept override
    {
        return NoSupport(section);
    }
    STDMETHODIMP MsgServiceTransportOrder(ULONG, LPMAPIUID, ULONG) noexcept override { return NoSupport(); }
    STDMETHODIMP AdminProviders(LPMAPIUID, ULONG, LPPROVIDERADMIN* providerAdmin) noexcept override
    {
        return NoSupport(providerAdmin);
    }
    STDMETHODIMP SetPrimaryIdentity(LPMAPIUID, ULONG) noexcept override { return NoSupport(); }
    STDMETHODIMP GetProviderTable(ULONG, LPMAPITABLE* table) noexcept override { return NoSupport(table); }

private:
    LastError lastError;
    const std::wstring storePath;
};

STDMETHODIMP CMsgServiceAdmin::GetMsgServiceTable(ULONG flags, LPMAPITABLE* table) noexcept
{
    return ComBoundary(lastError,
                       [&]
                       {
                           Given(table) = nullptr;
                           RequireKnownFlags(flags, MAPI_UNICODE);
                           *table =
                               MakeMsgServiceTable(DescribeStore(storePath)).Detach();    // now the caller's
                       });
}
}    // namespace

Microsoft::WRL::ComPtr<IMsgServiceAdmin> MakeMsgServiceAdmin(std::wstring storePath)
{
    return MakeObject<CMsgServiceAdmin>(std::move(storePath));
}
