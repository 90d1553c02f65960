#include "store/RDOSession.h"
#include "tests/win/FakeDispatch.h"
#include "win/Variant.h"

#include <windows.h>

#include <mapidefs.h>

#include <functional>
#include <gtest/gtest.h>

namespace
{
using Microsoft::WRL::ComPtr;

// One operation of the automation contract: the call through its wrapper and the line that it leaves.
struct Operation
{
    const char* name;
    DISPID id;
    WORD kind;
    _variant_t answer;
    std::function<void(IDispatch*)> call;
    const char* line;
};

template <typename Driver, typename Member, typename... Arguments>
std::function<void(IDispatch*)> Call(Member member, Arguments... arguments)
{
    return [=](IDispatch* object) { (Driver(ComPtr<IDispatch>(object)).*member)(arguments...); };
}

constexpr WORD method = DISPATCH_METHOD;
constexpr WORD get = DISPATCH_PROPERTYGET;
constexpr WORD put = DISPATCH_PROPERTYPUT;

std::vector<Operation> AllOperations()
{
    const _variant_t none;
    const _variant_t object = DispatchVariant(nullptr);
    const _variant_t number = LongVariant(4);
    const _variant_t text = TextVariant(L"text");
    const _variant_t date = DateVariant(40000.25);
    const _variant_t truth = BoolVariant(true);
    const CFolder noFolder;
    return {
        {"SessionLogOn", 4, method, none, Call<CRDOSession>(&CRDOSession::LogOn),
         "Object 4 method(BSTR , I4 0, ERROR 0x80020004, ERROR 0x80020004, I4 0, ERROR 0x80020004)"},
        {"SessionStores", 6, get, object, Call<CRDOSession>(&CRDOSession::GetStores), "Object 6 get()"},
        {"SessionGetItemFromId", 9, method, object,
         Call<CRDOSession>(&CRDOSession::GetItemFromId, L"0AFF", TextVariant(L"5354"), LongVariant(16)),
         "Object 9 method(BSTR 0AFF, BSTR 5354, I4 16)"},
        {"StoreCollectionDefaultStore", 4, get, object,
         Call<CStoreCollection>(&CStoreCollection::GetDefaultStore), "Object 4 get()"},
        {"StoreEntryId", 9, get, text, Call<CStore>(&CStore::GetEntryId), "Object 9 get()"},
        {"StoreRootFolder", 104, get, object, Call<CStore>(&CStore::GetRootFolder), "Object 104 get()"},
        {"FolderName", 0, get, text, Call<CFolder>(&CFolder::GetName), "Object 0 get()"},
        {"FolderEntryId", 9, get, text, Call<CFolder>(&CFolder::GetEntryId), "Object 9 get()"},
        {"FolderParent", 11, get, object, Call<CFolder>(&CFolder::GetParent), "Object 11 get()"},
        {"FolderItems", 17, get, object, Call<CFolder>(&CFolder::GetItems), "Object 17 get()"},
        {"FolderFolders", 18, get, object, Call<CFolder>(&CFolder::GetFolders), "Object 18 get()"},
        {"FolderDefaultItemType", 22, get, number, Call<CFolder>(&CFolder::GetDefaultItemType),
         "Object 22 get()"},
        {"FolderCollectionCount", 1, get, number, Call<CFolderCollection>(&CFolderCollection::GetCount),
         "Object 1 get()"},
        {"FolderCollectionItem", 9, method, object, Call<CFolderCollection>(&CFolderCollection::GetItem, 2),
         "Object 9 method(I4 2)"},
        {"ItemCollectionCount", 1, get, number, Call<CItemCollection>(&CItemCollection::GetCount),
         "Object 1 get()"},
        {"ItemCollectionItem", 9, method, object, Call<CItemCollection>(&CItemCollection::GetItem, 1),
         "Object 9 method(I4 1)"},
        {"ItemCollectionTable", 13, get, object, Call<CItemCollection>(&CItemCollection::GetTable),
         "Object 13 get()"},
        {"ItemTableColumns", 3, put, none, Call<CItemTable>(&CItemTable::SetColumns, number),
         "Object 3 put(I4 4)"},
        {"ItemTableGetRow", 7, method, none, Call<CItemTable>(&CItemTable::GetRow), "Object 7 method()"},
        {"ItemTableFilter", 9, get, object, Call<CItemTable>(&CItemTable::GetFilter), "Object 9 get()"},
        {"TableFilterClear", 1, method, none, Call<CTableFilter>(&CTableFilter::Clear), "Object 1 method()"},
        {"TableFilterSetRestriction", 2, method, object,
         Call<CTableFilter>(&CTableFilter::SetRestriction<CAndRestriction>), "Object 2 method(I4 0)"},
        {"TableFilterFindFirst", 5, method, truth, Call<CTableFilter>(&CTableFilter::FindFirst),
         "Object 5 method(BOOL -1)"},
        {"TableFilterFindNext", 7, method, truth, Call<CTableFilter>(&CTableFilter::FindNext),
         "Object 7 method(BOOL -1)"},
        {"AndRestrictionAddProperty", 2, method, object,
         Call<CAndRestriction>(&CAndRestriction::Add<CPropertyRestriction>), "Object 2 method(I4 4)"},
        {"AndRestrictionAddContent", 2, method, object,
         Call<CAndRestriction>(&CAndRestriction::Add<CContentRestriction>), "Object 2 method(I4 3)"},
        {"AndRestrictionAddSub", 2, method, object,
         Call<CAndRestriction>(&CAndRestriction::Add<CSubRestriction>), "Object 2 method(I4 9)"},
        {"PropertyRestrictionPropTag", 2, put, none,
         Call<CPropertyRestriction>(&CPropertyRestriction::SetPropTag, 0x0037001F),
         "Object 2 put(I4 3604511)"},
        {"PropertyRestrictionRelop", 10, put, none,
         Call<CPropertyRestriction>(&CPropertyRestriction::SetRelop, 3), "Object 10 put(I4 3)"},
        {"PropertyRestrictionValue", 3, put, none,
         Call<CPropertyRestriction>(&CPropertyRestriction::SetValue, date),
         "Object 3 put(DATE 40000.250000)"},
        {"ContentRestrictionPropTag", 2, put, none,
         Call<CContentRestriction>(&CContentRestriction::SetPropTag, 0x80000001u),
         "Object 2 put(I4 -2147483647)"},
        {"ContentRestrictionFuzzyLevel", 10, put, none,
         Call<CContentRestriction>(&CContentRestriction::SetFuzzyLevel, 0x10000), "Object 10 put(I4 65536)"},
        {"ContentRestrictionValue", 3, put, none,
         Call<CContentRestriction>(&CContentRestriction::SetValue, text), "Object 3 put(BSTR text)"},
        {"SubRestrictionSubObject", 3, put, none,
         Call<CSubRestriction>(&CSubRestriction::SetSubObject, 0x0E13000D), "Object 3 put(I4 236126221)"},
        {"SubRestrictionSetInner", 2, method, object,
         Call<CSubRestriction>(&CSubRestriction::SetInner<CContentRestriction>), "Object 2 method(I4 3)"},
        {"MailItemEntryId", 201, get, text, Call<CMailItem>(&CMailItem::GetEntryId), "Object 201 get()"},
        {"MailItemBodyText", 11, get, text, Call<CMailItem>(&CMailItem::GetBodyText), "Object 11 get()"},
        {"MailItemSenderEmail", 50, get, text, Call<CMailItem>(&CMailItem::GetSenderEmail),
         "Object 50 get()"},
        {"MailItemSenderName", 52, get, text, Call<CMailItem>(&CMailItem::GetSenderName), "Object 52 get()"},
        {"MailItemSubject", 0, get, text, Call<CMailItem>(&CMailItem::GetSubject), "Object 0 get()"},
        {"MailItemSentTime", 57, get, date, Call<CMailItem>(&CMailItem::GetSentTime), "Object 57 get()"},
        {"MailItemField", 3, get, text, Call<CMailItem>(&CMailItem::GetField, 0x007D001E),
         "Object 3 get(I4 8192030)"},
        {"MailItemRecipients", 77, get, object, Call<CMailItem>(&CMailItem::GetRecipients),
         "Object 77 get()"},
        {"MailItemAttachments", 73, get, object, Call<CMailItem>(&CMailItem::GetAttachments),
         "Object 73 get()"},
        {"MailItemDelete", 55, method, none, Call<CMailItem>(&CMailItem::Delete, 1),
         "Object 55 method(I4 1)"},
        {"MailItemCopyTo", 5, method, none, Call<CMailItem>(&CMailItem::CopyTo, noFolder),
         "Object 5 method(DISPATCH null)"},
        {"MailItemMoveTo", 68, method, object, Call<CMailItem>(&CMailItem::MoveTo, noFolder),
         "Object 68 method(DISPATCH null)"},
        {"MailItemExpiryTime", 21, put, none, Call<CMailItem>(&CMailItem::SetExpiryTime, 40000.25),
         "Object 21 put(DATE 40000.250000)"},
        {"MailItemFlagText", 24, put, none, Call<CMailItem>(&CMailItem::SetFlagText, L"Duplicate Mail"),
         "Object 24 put(BSTR Duplicate Mail)"},
        {"MailItemFlagStatus", 25, put, none, Call<CMailItem>(&CMailItem::SetFlagStatus, 2),
         "Object 25 put(I4 2)"},
        {"MailItemSave", 6, method, none, Call<CMailItem>(&CMailItem::Save), "Object 6 method()"},
        {"RecipientCollectionCount", 80, get, number,
         Call<CRecipientCollection>(&CRecipientCollection::GetCount), "Object 80 get()"},
        {"RecipientCollectionItem", 0, get, object,
         Call<CRecipientCollection>(&CRecipientCollection::GetItem, 3), "Object 0 get(I4 3)"},
        {"RecipientType", 3093, get, number, Call<CRecipient>(&CRecipient::GetType), "Object 3093 get()"},
        {"RecipientName", 7, get, text, Call<CRecipient>(&CRecipient::GetName), "Object 7 get()"},
        {"AttachmentCollectionCount", 80, get, number,
         Call<CAttachmentCollection>(&CAttachmentCollection::GetCount), "Object 80 get()"},
        {"AttachmentCollectionItem", 0, get, object,
         Call<CAttachmentCollection>(&CAttachmentCollection::GetItem, 1), "Object 0 get(I4 1)"},
        {"AttachmentFileName", 103, get, text, Call<CAttachment>(&CAttachment::GetFileName),
         "Object 103 get()"},
    };
}

class StoreWrapper : public testing::TestWithParam<Operation>
{
protected:
    CallLog log;
    ComPtr<FakeDispatch> object = FakeDispatch::Make(log, "Object");

    void Answer()
    {
        const FakeAnswer answer = [](const FakeArguments&) { return GetParam().answer; };
        if (GetParam().kind == method)
            object->OnMethod(GetParam().id, answer);
        else if (GetParam().kind == get)
            object->OnGet(GetParam().id, answer);
        else
            object->OnPut(GetParam().id, answer);
    }
};

TEST_P(StoreWrapper, MakesExactlyItsOneCall)
{
    Answer();

    GetParam().call(object.Get());

    EXPECT_EQ(log.lines, std::vector<std::string>{GetParam().line});
    EXPECT_TRUE(log.refused.empty());
}

TEST_P(StoreWrapper, ThrowsWhatTheStoreSaysAboutARefusal)
{
    log.failAt = 1;
    log.failure = CallLog::Failure::withInfo;

    EXPECT_THROW(GetParam().call(object.Get()), COleDispatchException);
}

TEST_P(StoreWrapper, ThrowsThePlainCodeOfARefusalWithoutWords)
{
    log.failAt = 1;

    EXPECT_THROW(GetParam().call(object.Get()), COleException);
    EXPECT_EQ(log.lines.size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Contract, StoreWrapper, testing::ValuesIn(AllOperations()),
                         [](const auto& operation) { return operation.param.name; });

TEST(StoreValues, AreHandedOverAsTheStoreGaveThem)
{
    CallLog log;
    auto object = FakeDispatch::Make(log, "Object");
    object->OnGet(0, [](const FakeArguments&) { return TextVariant(L"Gr\u00FC\u00DFe \u4F60\u597D"); });
    object->OnGet(57, [](const FakeArguments&) { return DateVariant(40000.75); });
    object->OnMethod(5, [](const FakeArguments&) { return BoolVariant(false); });

    EXPECT_EQ(CMailItem(ComPtr<IDispatch>(object.Get())).GetSubject(), L"Gr\u00FC\u00DFe \u4F60\u597D");
    EXPECT_EQ(CMailItem(ComPtr<IDispatch>(object.Get())).GetSentTime(), 40000.75);
    EXPECT_FALSE(CTableFilter(ComPtr<IDispatch>(object.Get())).FindFirst());
}

TEST(StoreValues, KeepTheDestinationFolderAliveOnlyForTheCall)
{
    CallLog log;
    auto item = FakeDispatch::Make(log, "Item");
    item->OnMethod(68, [](const FakeArguments&) { return DispatchVariant(nullptr); });
    auto folder = FakeDispatch::Make(log, "Folder");

    CMailItem(ComPtr<IDispatch>(item.Get())).MoveTo(CFolder(ComPtr<IDispatch>(folder.Get())));
    folder.Reset();

    EXPECT_EQ(log.lines.back(), "Item 68 method(DISPATCH)");
    EXPECT_EQ(log.liveObjects, 1);
}
}    // namespace
