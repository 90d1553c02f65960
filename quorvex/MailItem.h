#pragma once

#include "quorvex/DispatchObject.h"
#include "quorvex/EntryId.h"
#include "quorvex/PropertyReader.h"
#include "quorvex/SessionContext.h"

#include <windows.h>

#include <mapidefs.h>

#include <memory>
#include <mutex>
#include <optional>
#include <string>

// One message. It is opened when something of it is first needed that its entry id does not tell; its texts
// are then read together and kept.
class CMailItem final : public CDispatchObject
{
public:
    // `folder` is where the message lies; null to find that out when it matters. `openFlags` are OpenEntry's.
    CMailItem(std::shared_ptr<SessionContext> session, ComPtr<IMsgStore> store, EntryIdBytes id,
              ComPtr<IMAPIFolder> folder, ULONG openFlags = MAPI_BEST_ACCESS);

    // Opens the message now, so that a wrong id fails here. Throws MapiError.
    void Open();

protected:
    std::span<const Operation> Operations() const noexcept override;

private:
    std::wstring GetSubject();
    std::wstring GetBodyText();
    std::wstring GetSenderEmail();
    std::wstring GetSenderName();
    DATE GetSentTime();
    std::wstring GetEntryId();
    _variant_t GetField(const VARIANT& tag);
    ComPtr<IDispatch> GetRecipients();
    ComPtr<IDispatch> GetAttachments();
    void PutExpiryTime(DATE time);
    void PutFlagText(const std::wstring& text);
    void PutFlagStatus(long status);
    void Save();
    void Delete(const VARIANT& choice);
    void CopyTo(const VARIANT& destination);
    ComPtr<IDispatch> MoveTo(IDispatch* destination);

    // These are called with the mutex held.
    IMessage* OpenMessage();
    IMAPIFolder* OpenFolder();
    const PropertyValues& KeptTexts(std::optional<PropertyValues>& kept, std::span<const ULONG> tags);
    bool MoveInto(IMAPIFolder* target, const EntryIdBytes& targetId);    // false when it lies there already

    std::wstring ShortText(ULONG tag);

    const std::shared_ptr<SessionContext> session;
    const ComPtr<IMsgStore> store;
    const EntryIdBytes id;
    const ULONG openFlags;

    std::mutex mutex;    // guards everything below
    ComPtr<IMAPIFolder> folder;
    ComPtr<IMessage> message;
    std::optional<PropertyValues> shortTexts;
    std::optional<PropertyValues> longTexts;
};
