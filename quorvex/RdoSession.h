#pragma once

#include "quorvex/DispatchObject.h"
#include "quorvex/SessionContext.h"

#include <windows.h>

#include <memory>
#include <mutex>
#include <string>

// The session, the one object of this server that clients create. Everything but LogOn fails until it is
// logged on.
class CRdoSession final : public CDispatchObject
{
protected:
    std::span<const Operation> Operations() const noexcept override;

private:
    // Each argument may be missing or empty. An empty profile name means the default profile, and no password
    // is then needed; what MAPI should ask the user for is asked over `parentWindow`.
    void LogOn(const VARIANT& profileName, const VARIANT& password, const VARIANT& showDialog,
               const VARIANT& newSession, const VARIANT& parentWindow, const VARIANT& noMail);
    ComPtr<IDispatch> GetStores();

    // A message by its entry id, short- or long-term; `openFlags` are OpenEntry's, MAPI_BEST_ACCESS when
    // missing. A missing or empty store id means the default store.
    ComPtr<IDispatch> GetItemFromId(const std::wstring& entryId, const VARIANT& storeId,
                                    const VARIANT& openFlags);

    std::shared_ptr<SessionContext> LoggedOn();

    std::mutex mutex;
    std::shared_ptr<SessionContext> session;    // guarded by mutex
};
