#pragma once

#include "store/RDOSession.h"
#include "tests/win/FakeDispatch.h"

#include <windows.h>

#include <comutil.h>

#include <list>
#include <memory>
#include <string>
#include <vector>

// One message of a fake store, and what was done to it.
struct FakeMessage
{
    std::wstring subject = L"Minutes";
    std::wstring body = L"As agreed.";
    std::wstring senderEmail = L"ann@example.org";
    std::wstring senderName = L"Ann";
    std::wstring headers = L"Message-ID: <1@example.org>";
    std::vector<std::pair<LONG, std::wstring>> recipients{};    // type and name
    std::vector<std::wstring> attachments{};
    DATE sent = 45000.5;
    DATE delivered = 45000.5;

    std::wstring id{};    // given by the store
    LONG flagStatus = 0;
    std::wstring flagText{};
    DATE expiry = 0;
    int saves = 0;
};

struct FakeFolder
{
    std::wstring name;
    LONG itemType = 0;
    std::list<FakeFolder> folders{};
    std::vector<std::shared_ptr<FakeMessage>> messages{};
    std::wstring id{};    // given by the store
    FakeFolder* parent = nullptr;

    FakeFolder& AddFolder(std::wstring folderName, LONG type = 0);
    // The new message's entry id.
    std::wstring AddMessage(FakeMessage message = {});
};

// A mail store in memory behind the automation contract. Answers searches by walking every message of the
// folder. Every call made on any of its objects stands in `log`.
class FakeStore
{
public:
    CallLog log;
    FakeFolder root{L"Mailbox"};
    FakeFolder deletedItems{L"Deleted Items"};    // not in the tree
    bool hasRootFolder = true;
    std::vector<FakeFolder*> withoutItems;    // these have no item collection

    FakeStore();

    CRDOSession MakeSession();
    CFolder MakeFolder(FakeFolder& folder);

    // Where the message lies, wherever in the tree or in Deleted Items; null when it is gone.
    FakeFolder* FolderOf(const std::wstring& messageId);
    FakeMessage* Find(const std::wstring& messageId);

private:
    using Object = Microsoft::WRL::ComPtr<FakeDispatch>;

    Object MakeFolderObject(FakeFolder& folder);
    Object MakeFolders(FakeFolder& folder);
    Object MakeItems(FakeFolder& folder);
    Object MakeItem(std::shared_ptr<FakeMessage> message);
    void AddActions(FakeDispatch& item, std::shared_ptr<FakeMessage> message);
    Object MakeRecipients(std::shared_ptr<FakeMessage> message);
    Object MakeAttachments(std::shared_ptr<FakeMessage> message);
    void Take(const std::shared_ptr<FakeMessage>& message, FakeFolder* target);
    FakeFolder* FolderOfObject(IDispatch* object);

    std::vector<std::pair<IDispatch*, FakeFolder*>> folderObjects;
};
