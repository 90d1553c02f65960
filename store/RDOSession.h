#pragma once

#include "store/MailItem.h"
#include "store/Store.h"
#include "win/OleDispatchDriver.h"

#include <windows.h>

#include <comutil.h>

#include <string>

// The mail-store session, the object from which all others are reached.
class CRDOSession : public COleDispatchDriver
{
public:
    static constexpr wchar_t progId[] = L"QuorvexDll.RDOSession";

    using COleDispatchDriver::COleDispatchDriver;

    bool Create() noexcept
    {
        return CreateDispatch(progId);
    }    // false when the automation server is not there

    // Logs on to the default profile. Throws when there is none.
    void LogOn() const;
    CStoreCollection GetStores() const;
    // Ids are upper-case hex; `storeEntryId` is a text variant, `accessFlags` an integer one.
    CMailItem GetItemFromId(const std::wstring& entryId, const _variant_t& storeEntryId,
                            const _variant_t& accessFlags) const;
};
