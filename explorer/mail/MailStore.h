#pragma once

#include "explorer/mail/MapiLibrary.h"
#include "explorer/mail/MapiValue.h"
#include "explorer/mail/MessageTable.h"

#include <windows.h>

#include <mapix.h>
#include <wrl/client.h>

#include <string>
#include <vector>

// One folder of the tree. Folders come in pre-order: the children of a folder follow it, one level deeper.
struct MailFolder
{
    EntryId id;
    std::wstring name;
    LONG depth;     // 0 for the folders at the top
    LONG unread;    // how many of its messages nobody has read
};

// The default store of the default profile, read only, over Extended MAPI. Used and destroyed on the thread
// that opened it. Every method throws COleDispatchException, whose description says what was refused.
class MailStore
{
public:
    MailStore();    // logs on, without asking the user anything

    const std::wstring& GetName() const noexcept { return name; }
    std::vector<MailFolder> ReadFolders() const;
    MessageTable OpenMessages(const EntryId& folder) const;
    std::wstring ReadText(const EntryId& message) const;    // its plain text; empty when it has none

private:
    template <typename Interface>
    Microsoft::WRL::ComPtr<Interface> OpenEntry(const EntryId& id, ULONG type, const wchar_t* step) const;

    MapiInitialization initialization;    // outlives every object below
    Microsoft::WRL::ComPtr<IMAPISession> session;
    Microsoft::WRL::ComPtr<IMsgStore> store;
    std::wstring name;
};
