#pragma once

#include "quorvex/DispatchObject.h"
#include "quorvex/EntryId.h"
#include "quorvex/SessionContext.h"

#include <windows.h>

#include <mapidefs.h>

#include <memory>
#include <string>
#include <vector>

// A folder of a message store. Name, kind and ids are those it had when it was opened.
class CFolder final : public CDispatchObject
{
public:
    // An empty entry id means the store's root folder.
    CFolder(std::shared_ptr<SessionContext> session, ComPtr<IMsgStore> store, const EntryIdBytes& folderId);

    // The folder behind an automation object that is one of this server's folders, whichever session opened
    // it; throws MapiError(DISP_E_TYPEMISMATCH) for any other object and for null. Borrowed.
    static CFolder& Of(IDispatch* object);

    IMAPIFolder* MapiFolder() const noexcept { return folder.Get(); }
    const EntryIdBytes& Id() const noexcept { return id; }
    const ComPtr<IMsgStore>& Store() const noexcept { return store; }

protected:
    std::span<const Operation> Operations() const noexcept override;
    IUnknown* FindInterface(REFIID iid) noexcept override;

private:
    std::wstring GetName();
    std::wstring GetEntryId();
    ComPtr<IDispatch> GetParent();
    ComPtr<IDispatch> GetItems();
    ComPtr<IDispatch> GetFolders();
    long GetDefaultItemType();

    const std::shared_ptr<SessionContext> session;
    const ComPtr<IMsgStore> store;
    const ComPtr<IMAPIFolder> folder;
    EntryIdBytes id;
    EntryIdBytes parentId;
    std::wstring name;
    long itemType = 0;
};

// The kind of item, by Outlook's OlItemType, that folders of this container class hold. Classes below a known
// one (IPF.Contact.Something) count as that one, unknown ones as mail.
long ItemTypeOf(std::wstring_view containerClass);

// The sub-folders that a folder had when this was asked for, in the hierarchy table's order, counted from 1.
class CFolderCollection final : public CDispatchObject
{
public:
    CFolderCollection(std::shared_ptr<SessionContext> session, ComPtr<IMsgStore> store, IMAPIFolder* parent);

protected:
    std::span<const Operation> Operations() const noexcept override;

private:
    long GetCount();
    ComPtr<IDispatch> GetItem(const VARIANT& index);

    const std::shared_ptr<SessionContext> session;
    const ComPtr<IMsgStore> store;
    std::vector<EntryIdBytes> ids;
};
