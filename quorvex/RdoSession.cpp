#include "quorvex/RdoSession.h"

#include "contracts/DispatchIds.h"
#include "quorvex/MailItem.h"
#include "quorvex/MapiError.h"
#include "quorvex/Store.h"

#include <mapicode.h>

namespace
{
bool IsGiven(const VARIANT& value)
{
    const bool missing = value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND;
    return value.vt != VT_EMPTY && value.vt != VT_NULL && !missing;
}

// The text of an argument that is one; empty for anything else, such as the number 0 in a password's place.
std::wstring GivenText(const VARIANT& value)
{
    if (value.vt == VT_BSTR && value.bstrVal)
        return {value.bstrVal, SysStringLen(value.bstrVal)};
    if (value.vt == (VT_BSTR | VT_BYREF) && *value.pbstrVal)
        return {*value.pbstrVal, SysStringLen(*value.pbstrVal)};
    return {};
}

long GivenLong(const VARIANT& value, long otherwise)
{
    return IsGiven(value) ? LongOf(value) : otherwise;
}

// A window handle, which has 32 significant bits on every Windows.
ULONG_PTR WindowOf(const VARIANT& value)
{
    return static_cast<ULONG_PTR>(GivenLong(value, 0));
}

[[noreturn]] void ThrowLogOnFailure(HRESULT failure, const std::wstring& profile)
{
    const std::wstring which =
        profile.empty() ? L"the default mail profile" : L"the mail profile \"" + profile + L"\"";
    throw MapiError(failure,
                    L"Logging on to " + which + L" failed (" + NameOfFailure(failure) +
                        L"). Set up a mail profile in the Control Panel under Mail, or start the mail "
                        L"program once, and try again.");
}
}    // namespace

std::span<const Operation> CRdoSession::Operations() const noexcept
{
    static constexpr Operation operations[] = {
        Method<&CRdoSession::LogOn>(dispid::session::logOn),
        Get<&CRdoSession::GetStores>(dispid::session::stores),
        Method<&CRdoSession::GetItemFromId>(dispid::session::getItemFromId),
    };
    return operations;
}

void CRdoSession::LogOn(const VARIANT& profileName, const VARIANT& password, const VARIANT& showDialog,
                        const VARIANT& newSession, const VARIANT& parentWindow, const VARIANT& noMail)
{
    std::wstring profile = GivenText(profileName);
    std::wstring secret = GivenText(password);
    ULONG flags = MAPI_EXTENDED | MAPI_UNICODE | MAPI_ALLOW_OTHERS;
    flags |= profile.empty() ? MAPI_USE_DEFAULT : MAPI_EXPLICIT_PROFILE;
    if (GivenLong(showDialog, 0))
        flags |= MAPI_LOGON_UI;
    if (GivenLong(newSession, 0))
        flags |= MAPI_NEW_SESSION;
    if (GivenLong(noMail, 0))
        flags |= MAPI_NO_MAIL;

    ComPtr<IMAPISession> mapiSession;
    const HRESULT result = Mapi().logonEx(WindowOf(parentWindow), profile.empty() ? nullptr : profile.data(),
                                          secret.empty() ? nullptr : secret.data(), flags, &mapiSession);
    if (FAILED(result))
        ThrowLogOnFailure(result, profile);
    auto loggedOn = std::make_shared<SessionContext>(std::move(mapiSession));
    const std::lock_guard lock(mutex);
    session.swap(loggedOn);
}

std::shared_ptr<SessionContext> CRdoSession::LoggedOn()
{
    const std::lock_guard lock(mutex);
    if (!session)
        throw MapiError(MAPI_E_NOT_INITIALIZED, L"The session is not logged on; log it on first.");
    return session;
}

ComPtr<IDispatch> CRdoSession::GetStores()
{
    return MakeObject<CStoreCollection>(LoggedOn());
}

ComPtr<IDispatch> CRdoSession::GetItemFromId(const std::wstring& entryId, const VARIANT& storeId,
                                             const VARIANT& openFlags)
{
    const std::shared_ptr<SessionContext> context = LoggedOn();
    const ULONG flags = static_cast<ULONG>(GivenLong(openFlags, MAPI_BEST_ACCESS));
    const ComPtr<IMsgStore> store = context->OpenStore(FromHex(GivenText(storeId)));
    const ComPtr<CMailItem> item = MakeObject<CMailItem>(context, store, FromHex(entryId), nullptr, flags);
    item->Open();
    return item;
}
