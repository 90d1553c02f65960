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
#include <vector>

// One message. It is opened when something of it is first needed that its entry id does not tell; its texts
// are then read together and kept.
class CMailItem final : public CDispatchObject
{
public:
    // `folder` is where the message lies; null to find that out when it matters. `openFlags` are OpenEntry's.
    // A message whose id is not known is, on first use, the folder's last one with that search key.
    CMailItem(std::shared_ptr<SessionContext> session, ComPtr<IMsgStore> store, EntryIdBytes id,
              ComPtr<IMAPIFolder> folder, ULONG openFlags = MAPI_BEST_ACCESS,
              std::vector<std::uint8_t> searchKey = {});

    // Opens the message now, so that a wrong id fails here. Throws MapiError.
    void Open();

protected:
    std::span<const Operation> Operations() const noexcept override;

private:
    _variant_t GetSubject();
    _variant_t GetBodyText();
    _variant_t GetSenderEmail();
    _variant_t GetSenderName();
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
    const EntryIdBytes& Id();
    IMessage* OpenMessage();
    IMAPIFolder* OpenFolder();
    _variant_t KeptText(ULONG tag);
    bool MoveInto(IMAPIFolder* target, const EntryIdBytes& targetId);    // false when it lies there already

    _variant_t Text(ULONG tag);
    void NoteText(ULONG tag, const _variant_t& text);

    const std::shared_ptr<SessionContext> session;
    const ComPtr<IMsgStore> store;
    const ULONG openFlags;

    std::mutex mutex;    // guards everything below
    EntryIdBytes id;
    const std::vector<std::uint8_t> knownBy;    // its search key, while there is no id
    ComPtr<IMAPIFolder> folder;
    ComPtr<IMessage> message;
    std::optional<PropertyValues> texts;
};
