#include "tests/engine/FakeStore.h"

#include "tests/engine/FakeTable.h"
#include "win/Variant.h"

#include <windows.h>

#include <algorithm>
#include <atomic>

namespace
{
using Microsoft::WRL::ComPtr;

// Ids hold a zero byte, a byte below 0x10 and one above 0x9F, so that every way of writing a byte occurs.
std::wstring NextId()
{
    static unsigned number = 0;
    wchar_t id[16];
    swprintf(id, std::size(id), L"000AFF%08X", ++number);
    return id;
}

FakeFolder* FindFolderOf(FakeFolder& folder, const std::wstring& messageId)
{
    for (const auto& message : folder.messages)
        if (message->id == messageId)
            return &folder;
    for (FakeFolder& child : folder.folders)
        if (FakeFolder* found = FindFolderOf(child, messageId))
            return found;
    return nullptr;
}

FakeAnswer Text(std::wstring text)
{
    return [text = std::move(text)](const FakeArguments&) { return TextVariant(text); };
}

FakeAnswer Number(LONG number)
{
    return [number](const FakeArguments&) { return LongVariant(number); };
}
}    // namespace

FakeFolder& FakeFolder::AddFolder(std::wstring folderName, LONG type)
{
    FakeFolder& folder = folders.emplace_back();
    folder.name = std::move(folderName);
    folder.itemType = type;
    folder.id = NextId();
    folder.parent = this;
    return folder;
}

std::wstring FakeFolder::AddMessage(FakeMessage message)
{
    message.id = NextId();
    messages.push_back(std::make_shared<FakeMessage>(std::move(message)));
    return messages.back()->id;
}

FakeStore::FakeStore()
{
    root.id = NextId();
    deletedItems.id = NextId();
}

FakeFolder* FakeStore::FolderOf(const std::wstring& messageId)
{
    FakeFolder* folder = FindFolderOf(root, messageId);
    return folder ? folder : FindFolderOf(deletedItems, messageId);
}

FakeMessage* FakeStore::Find(const std::wstring& messageId)
{
    FakeFolder* folder = FolderOf(messageId);
    if (!folder)
        return nullptr;
    return std::ranges::find(folder->messages, messageId, [](const auto& message) { return message->id; })
        ->get();
}

CRDOSession FakeStore::MakeSession()
{
    const Object session = FakeDispatch::Make(log, "Session");
    session->OnMethod(4, [](const FakeArguments&) { return _variant_t(); });
    session->OnGet(6,
                   [this](const FakeArguments&)
                   {
                       const Object stores = FakeDispatch::Make(log, "Stores");
                       stores->OnGet(4,
                                     [this](const FakeArguments&)
                                     {
                                         const Object store = FakeDispatch::Make(log, "Store");
                                         store->OnGet(9, Text(L"5354"));
                                         store->OnGet(104,
                                                      [this](const FakeArguments&) {
                                                          return hasRootFolder
                                                                     ? ObjectVariant(MakeFolderObject(root))
                                                                     : DispatchVariant(nullptr);
                                                      });
                                         return ObjectVariant(store);
                                     });
                       return ObjectVariant(stores);
                   });
    session->OnMethod(9,
                      [this](const FakeArguments& arguments)
                      {
                          const std::wstring id = TextOf(arguments[0].bstrVal);
                          FakeFolder* folder = FolderOf(id);
                          if (!folder)
                              return DispatchVariant(nullptr);
                          return ObjectVariant(MakeItem(*std::ranges::find(
                              folder->messages, id, [](const auto& message) { return message->id; })));
                      });
    return CRDOSession(ComPtr<IDispatch>(session.Get()));
}

CFolder FakeStore::MakeFolder(FakeFolder& folder)
{
    return CFolder(ComPtr<IDispatch>(MakeFolderObject(folder).Get()));
}

FakeStore::Object FakeStore::MakeFolderObject(FakeFolder& folder)
{
    const Object object = FakeDispatch::Make(log, "Folder");
    folderObjects.emplace_back(object.Get(), &folder);
    object->OnGet(0, Text(folder.name));
    object->OnGet(9, Text(folder.id));
    object->OnGet(11,
                  [this, &folder](const FakeArguments&) {
                      return folder.parent ? ObjectVariant(MakeFolderObject(*folder.parent))
                                           : DispatchVariant(nullptr);
                  });
    object->OnGet(17,
                  [this, &folder](const FakeArguments&)
                  {
                      return std::ranges::count(withoutItems, &folder) ? DispatchVariant(nullptr)
                                                                       : ObjectVariant(MakeItems(folder));
                  });
    object->OnGet(18, [this, &folder](const FakeArguments&) { return ObjectVariant(MakeFolders(folder)); });
    object->OnGet(22, Number(folder.itemType));
    return object;
}

FakeStore::Object FakeStore::MakeFolders(FakeFolder& folder)
{
    const Object object = FakeDispatch::Make(log, "Folders");
    object->OnGet(1, Number(static_cast<LONG>(folder.folders.size())));
    object->OnMethod(9,
                     [this, &folder](const FakeArguments& arguments) {
                         return ObjectVariant(
                             MakeFolderObject(*std::next(folder.folders.begin(), arguments[0].lVal - 1)));
                     });
    return object;
}

FakeStore::Object FakeStore::MakeItems(FakeFolder& folder)
{
    const Object object = FakeDispatch::Make(log, "Items");
    object->OnGet(1, [&folder](const FakeArguments&)
                  { return LongVariant(static_cast<LONG>(folder.messages.size())); });
    object->OnMethod(9,
                     [this, &folder](const FakeArguments& arguments) {
                         return ObjectVariant(
                             MakeItem(folder.messages.at(static_cast<std::size_t>(arguments[0].lVal - 1))));
                     });
    object->OnGet(13, [this, &folder](const FakeArguments&)
                  { return ObjectVariant(MakeFakeTable(log, folder)); });
    return object;
}

FakeStore::Object FakeStore::MakeItem(std::shared_ptr<FakeMessage> message)
{
    const Object object = FakeDispatch::Make(log, "Item");
    object->OnGet(201, Text(message->id));
    object->OnGet(0, Text(message->subject));
    object->OnGet(11, Text(message->body));
    object->OnGet(50, Text(message->senderEmail));
    object->OnGet(52, Text(message->senderName));
    object->OnGet(57, [message](const FakeArguments&) { return DateVariant(message->sent); });
    object->OnGet(3,
                  [message](const FakeArguments& arguments)
                  {
                      const bool present = arguments[0].lVal == 0x007D001E && !message->headers.empty();
                      return present ? TextVariant(message->headers) : _variant_t();
                  });
    object->OnGet(77,
                  [this, message](const FakeArguments&) { return ObjectVariant(MakeRecipients(message)); });
    object->OnGet(73,
                  [this, message](const FakeArguments&) { return ObjectVariant(MakeAttachments(message)); });
    AddActions(*object.Get(), message);
    return object;
}

void FakeStore::AddActions(FakeDispatch& item, std::shared_ptr<FakeMessage> message)
{
    item.OnPut(25,
               [message](const FakeArguments& arguments)
               {
                   message->flagStatus = arguments[0].lVal;
                   return _variant_t();
               });
    item.OnPut(24,
               [message](const FakeArguments& arguments)
               {
                   message->flagText = TextOf(arguments[0].bstrVal);
                   return _variant_t();
               });
    item.OnPut(21,
               [message](const FakeArguments& arguments)
               {
                   message->expiry = arguments[0].date;
                   return _variant_t();
               });
    item.OnMethod(6,
                  [message](const FakeArguments&)
                  {
                      ++message->saves;
                      return _variant_t();
                  });
    item.OnMethod(5,
                  [this, message](const FakeArguments& arguments)
                  {
                      if (FakeFolder* target = FolderOfObject(arguments[0].pdispVal))
                          target->AddMessage(*message);
                      return _variant_t();
                  });
    item.OnMethod(68,
                  [this, message](const FakeArguments& arguments)
                  {
                      Take(message, FolderOfObject(arguments[0].pdispVal));
                      return ObjectVariant(MakeItem(message));
                  });
    item.OnMethod(55,
                  [this, message](const FakeArguments& arguments)
                  {
                      Take(message, arguments[0].lVal == 1 ? &deletedItems : nullptr);
                      return _variant_t();
                  });
}

FakeStore::Object FakeStore::MakeRecipients(std::shared_ptr<FakeMessage> message)
{
    const Object object = FakeDispatch::Make(log, "Recipients");
    object->OnGet(80, Number(static_cast<LONG>(message->recipients.size())));
    object->OnGet(0,
                  [this, message](const FakeArguments& arguments)
                  {
                      const auto& [type, name] =
                          message->recipients.at(static_cast<std::size_t>(arguments[0].lVal - 1));
                      const Object recipient = FakeDispatch::Make(log, "Recipient");
                      recipient->OnGet(3093, Number(type));
                      recipient->OnGet(7, Text(name));
                      return ObjectVariant(recipient);
                  });
    return object;
}

FakeStore::Object FakeStore::MakeAttachments(std::shared_ptr<FakeMessage> message)
{
    const Object object = FakeDispatch::Make(log, "Attachments");
    object->OnGet(80, Number(static_cast<LONG>(message->attachments.size())));
    object->OnGet(0,
                  [this, message](const FakeArguments& arguments)
                  {
                      const Object attachment = FakeDispatch::Make(log, "Attachment");
                      attachment->OnGet(103, Text(message->attachments.at(
                                                 static_cast<std::size_t>(arguments[0].lVal - 1))));
                      return ObjectVariant(attachment);
                  });
    return object;
}

// Out of the folder that it lies in, and into `target` when there is one.
void FakeStore::Take(const std::shared_ptr<FakeMessage>& message, FakeFolder* target)
{
    if (FakeFolder* source = FolderOf(message->id))
        std::erase(source->messages, message);
    if (target)
        target->messages.push_back(message);
}

FakeFolder* FakeStore::FolderOfObject(IDispatch* object)
{
    // The newest entry: an address may have been used by an object that is gone.
    const auto found = std::find_if(folderObjects.rbegin(), folderObjects.rend(),
                                    [object](const auto& entry) { return entry.first == object; });
    return found == folderObjects.rend() ? nullptr : found->second;
}
