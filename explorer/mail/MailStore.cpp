#include "explorer/mail/MailStore.h"

#include "win/OleException.h"

#include <windows.h>

#include <mapitags.h>

#include <span>

using Microsoft::WRL::ComPtr;

namespace
{
constexpr ULONG wholeStream = 0;
constexpr LONG foldersAtOnce = 500;

// The entry id of the profile's default store; empty when it has none.
EntryId FindDefaultStore(IMAPISession& session)
{
    ComPtr<IMAPITable> stores;
    CheckMapi(session.GetMsgStoresTable(0, &stores), L"list the stores of the profile");
    SizedSPropTagArray(2, columns) = {2, {PR_ENTRYID, PR_DEFAULT_STORE}};
    CheckMapi(stores->SetColumns(reinterpret_cast<SPropTagArray*>(&columns), 0),
              L"list the stores of the profile");
    for (;;)
    {
        RowSet rows;
        CheckMapi(stores->QueryRows(1, 0, Out(rows)), L"list the stores of the profile");
        if (!rows || rows->cRows == 0)
            return {};
        const SRow& row = rows->aRow[0];
        const bool isDefault =
            row.cValues > 1 && row.lpProps[1].ulPropTag == PR_DEFAULT_STORE && row.lpProps[1].Value.b;
        if (isDefault)
            return MapiValues(row.lpProps, row.cValues).Id(0);
    }
}

MapiBuffer<SPropValue> ReadProps(IMAPIProp& object, SPropTagArray* tags, ULONG& count, const wchar_t* step)
{
    MapiBuffer<SPropValue> values;
    CheckMapi(object.GetProps(tags, MAPI_UNICODE, &count, Out(values)), step);
    return values;
}

// A text too long for GetProps, as a stream of UTF-16.
std::wstring ReadStream(IMAPIProp& object, ULONG tag)
{
    ComPtr<IStream> stream;
    if (FAILED(object.OpenProperty(tag, &IID_IStream, wholeStream, 0,
                                   reinterpret_cast<IUnknown**>(stream.GetAddressOf()))))
        return {};    // the message has no such text
    std::wstring text;
    wchar_t buffer[4096];
    for (ULONG read = 0; SUCCEEDED(stream->Read(buffer, sizeof buffer, &read)) && read > 0;)
        text.append(buffer, read / sizeof(wchar_t));
    return text.substr(0, text.find(L'\0'));
}
}    // namespace

MailStore::MailStore()
{
    constexpr FLAGS flags = MAPI_EXTENDED | MAPI_USE_DEFAULT | MAPI_UNICODE | MAPI_NO_MAIL;
    CheckMapi(Mapi().logonEx(0, nullptr, nullptr, flags, &session), L"log on to the mail system");
    const EntryId id = FindDefaultStore(*session.Get());
    if (id.empty())
        throw COleDispatchException(MAPI_E_NOT_FOUND, 0, L"The profile has no default store", L"");
    CheckMapi(session->OpenMsgStore(0, static_cast<ULONG>(id.size()), AsEntryId(id), nullptr, MDB_NO_DIALOG,
                                    &store),
              L"open the mail store");

    SizedSPropTagArray(1, tags) = {1, {PR_DISPLAY_NAME_W}};
    ULONG count = 0;
    const auto values =
        ReadProps(*store.Get(), reinterpret_cast<SPropTagArray*>(&tags), count, L"read the store's name");
    name = MapiValues(values.get(), count).Text(0);
}

template <typename Interface>
ComPtr<Interface> MailStore::OpenEntry(const EntryId& id, ULONG type, const wchar_t* step) const
{
    ComPtr<IUnknown> object;
    ULONG openedType = 0;
    CheckMapi(
        store->OpenEntry(static_cast<ULONG>(id.size()), AsEntryId(id), nullptr, 0, &openedType, &object),
        step);
    if (openedType != type)
        CheckMapi(MAPI_E_INVALID_ENTRYID, step);
    // Without an interface id an entry is opened as the one that stands for its type.
    ComPtr<Interface> opened;
    opened.Attach(static_cast<Interface*>(object.Detach()));
    return opened;
}

std::vector<MailFolder> MailStore::ReadFolders() const
{
    SizedSPropTagArray(1, topTags) = {1, {PR_IPM_SUBTREE_ENTRYID}};
    ULONG count = 0;
    const auto top =
        ReadProps(*store.Get(), reinterpret_cast<SPropTagArray*>(&topTags), count, L"find the top folder");
    const auto root =
        OpenEntry<IMAPIFolder>(MapiValues(top.get(), count).Id(0), MAPI_FOLDER, L"open the top folder");
    ComPtr<IMAPITable> hierarchy;
    CheckMapi(root->GetHierarchyTable(CONVENIENT_DEPTH | MAPI_UNICODE, &hierarchy), L"list the folders");
    SizedSPropTagArray(4, columns) = {4, {PR_ENTRYID, PR_DISPLAY_NAME_W, PR_DEPTH, PR_CONTENT_UNREAD}};
    CheckMapi(hierarchy->SetColumns(reinterpret_cast<SPropTagArray*>(&columns), 0), L"list the folders");

    std::vector<MailFolder> folders;
    LONG topDepth = -1;
    for (;;)
    {
        RowSet rows;
        CheckMapi(hierarchy->QueryRows(foldersAtOnce, 0, Out(rows)), L"list the folders");
        if (!rows || rows->cRows == 0)
            return folders;
        for (const SRow& row : std::span(rows->aRow, rows->cRows))
        {
            const MapiValues values(row.lpProps, row.cValues);
            const LONG depth = values.Number(2).value_or(0);
            if (topDepth < 0)
                topDepth = depth;
            folders.push_back({values.Id(0), values.Text(1), depth - topDepth, values.Number(3).value_or(0)});
        }
    }
}

MessageTable MailStore::OpenMessages(const EntryId& folder) const
{
    const auto opened = OpenEntry<IMAPIFolder>(folder, MAPI_FOLDER, L"open the folder");
    ComPtr<IMAPITable> contents;
    CheckMapi(opened->GetContentsTable(MAPI_UNICODE, &contents), L"list the messages of the folder");
    return MessageTable(std::move(contents));
}

std::wstring MailStore::ReadText(const EntryId& message) const
{
    const auto opened = OpenEntry<IMessage>(message, MAPI_MESSAGE, L"open the message");
    SizedSPropTagArray(1, tags) = {1, {PR_BODY_W}};
    ULONG count = 0;
    const auto values =
        ReadProps(*opened.Get(), reinterpret_cast<SPropTagArray*>(&tags), count, L"read the message");
    if (count == 1 && values->ulPropTag == PR_BODY_W)
        return MapiValues(values.get(), count).Text(0);
    return ReadStream(*opened.Get(), PR_BODY_W);
}
