#include "tests/quorvex/DispatchCaller.h"

#include "contracts/DispatchIds.h"

#include <algorithm>
#include <iterator>
#include <sstream>

// What can be asked of one kind of object. Arguments, one letter each: i an index, k a restriction's kind, t
// a property tag, n a small number, b a boolean, d a date, s a text, v any value, f a folder, c columns, e an
// entry id.
struct DispatchCaller::Operation
{
    DISPID id;
    WORD flags;
    const char* arguments;
    ObjectKind result = ObjectKind::count;    // count: no object
};

// One Invoke. The VARIANTs are in the order in which DISPPARAMS wants them, the last argument first.
struct DispatchCaller::Request
{
    DISPID id = 0;
    WORD flags = DISPATCH_METHOD;
    std::vector<RawVariant> arguments = {};
    std::vector<DISPID> names = {};
    ObjectKind result = ObjectKind::count;
    bool wantsResult = true;
    bool wantsException = true;
    bool isWild = false;
};

namespace
{
constexpr std::size_t mostObjects = 60;
constexpr WORD method = DISPATCH_METHOD, get = DISPATCH_PROPERTYGET, put = DISPATCH_PROPERTYPUT;

bool IsItemDelete(ObjectKind kind, DISPID id)
{
    return kind == ObjectKind::mailItem && id == dispid::mailItem::deleteItem;
}

bool IsItemCopy(ObjectKind kind, DISPID id)
{
    return kind == ObjectKind::mailItem && id == dispid::mailItem::copyTo;
}

// What an automation client may be answered: success, a dispatch code about the call, or an exception.
void ExpectCleanAnswer(HRESULT result, const EXCEPINFO* exception, const VARIANT* value)
{
    EXPECT_TRUE(result == S_OK || FAILED(result)) << std::hex << result;
    EXPECT_NE(result, E_UNEXPECTED);
    EXPECT_TRUE(SUCCEEDED(result) || !value || value->vt == VT_EMPTY) << std::hex << result;
    if (!exception)
        return;
    EXPECT_EQ(result == DISP_E_EXCEPTION, FAILED(exception->scode)) << std::hex << result;
    if (result != DISP_E_EXCEPTION)
        return;
    EXPECT_NE(exception->scode, E_UNEXPECTED);
    EXPECT_GT(SysStringLen(exception->bstrDescription), 0u) << std::hex << exception->scode;
    EXPECT_STREQ(exception->bstrSource, L"QuorvexDll.RDOSession");
    EXPECT_EQ(exception->wCode, 0);
    EXPECT_EQ(exception->pfnDeferredFillIn, nullptr);
}

std::string Description(ObjectKind kind, DISPID id, WORD flags, const std::vector<VARIANT>& arguments)
{
    std::ostringstream text;
    text << "object kind " << static_cast<int>(kind) << ", id " << id << ", flags " << flags << ", types";
    for (const VARIANT& argument : arguments)
        text << " 0x" << std::hex << argument.vt;
    return text.str();
}

void FreeStrings(const EXCEPINFO& exception)
{
    for (const BSTR text : {exception.bstrSource, exception.bstrDescription, exception.bstrHelpFile})
        SysFreeString(text);
}
}    // namespace

const std::vector<DispatchCaller::Operation>& DispatchCaller::OperationsOf(ObjectKind kind)
{
    using K = ObjectKind;
    static const std::vector<Operation> operations[] = {
        {{dispid::session::stores, get, "", K::storeCollection},
         {dispid::session::getItemFromId, method, "esn", K::mailItem}},
        {{dispid::storeCollection::defaultStore, get, "", K::store}},
        {{dispid::store::entryId, get, ""}, {dispid::store::rootFolder, get, "", K::folder}},
        {{dispid::folder::name, get, ""},
         {dispid::folder::entryId, get, ""},
         {dispid::folder::parent, get, "", K::folder},
         {dispid::folder::items, get, "", K::itemCollection},
         {dispid::folder::folders, get, "", K::folderCollection},
         {dispid::folder::defaultItemType, get, ""}},
        {{dispid::folderCollection::count, get, ""},
         {dispid::folderCollection::item, method, "i", K::folder}},
        {{dispid::itemCollection::count, get, ""},
         {dispid::itemCollection::item, method, "i", K::mailItem},
         {dispid::itemCollection::table, get, "", K::itemTable}},
        {{dispid::itemTable::columns, put, "c"},
         {dispid::itemTable::getRow, method, ""},
         {dispid::itemTable::filter, get, "", K::tableFilter}},
        {{dispid::tableFilter::clear, method, ""},
         {dispid::tableFilter::setRestriction, method, "k", K::restriction},
         {dispid::tableFilter::findFirst, method, "b"},
         {dispid::tableFilter::findNext, method, "b"}},
        {{dispid::andRestriction::add, method, "k", K::restriction},
         {dispid::propertyRestriction::propTag, put, "t"},
         {dispid::propertyRestriction::value, put, "v"},
         {dispid::propertyRestriction::relop, put, "n"},
         {dispid::subRestriction::subObject, put, "t"}},
        {{dispid::mailItem::subject, get, ""},
         {dispid::mailItem::field, get, "t"},
         {dispid::mailItem::copyTo, method, "f"},
         {dispid::mailItem::save, method, ""},
         {dispid::mailItem::bodyText, get, ""},
         {dispid::mailItem::expiryTime, put, "d"},
         {dispid::mailItem::flagText, put, "s"},
         {dispid::mailItem::flagStatus, put, "n"},
         {dispid::mailItem::senderEmail, get, ""},
         {dispid::mailItem::senderName, get, ""},
         {dispid::mailItem::deleteItem, method, "n"},
         {dispid::mailItem::sentTime, get, ""},
         {dispid::mailItem::moveTo, method, "f", K::mailItem},
         {dispid::mailItem::attachments, get, "", K::attachmentCollection},
         {dispid::mailItem::recipients, get, "", K::recipientCollection},
         {dispid::mailItem::entryId, get, ""}},
        {{dispid::recipientCollection::count, get, ""},
         {dispid::recipientCollection::item, get, "i", K::recipient}},
        {{dispid::recipient::name, get, ""}, {dispid::recipient::type, get, ""}},
        {{dispid::attachmentCollection::count, get, ""},
         {dispid::attachmentCollection::item, get, "i", K::attachment}},
        {{dispid::attachment::fileName, get, ""}},
    };
    return operations[static_cast<std::size_t>(kind)];
}

DispatchCaller::DispatchCaller(std::uint32_t seed, ComPtr<IDispatch> session)
    : engine(seed),
      objects{{ObjectKind::session, std::move(session)}}
{
}

void DispatchCaller::Call(int calls)
{
    for (int call = 0; call < calls && !testing::Test::HasFailure(); ++call)
        CallOnce();
}

void DispatchCaller::CallOnce()
{
    const Known target = objects[Below(static_cast<int>(objects.size()))];
    Request request = OneIn(2) ? WildRequest() : ReasonableRequest(target);
    std::vector<VARIANT> arguments;
    for (const RawVariant& argument : request.arguments)
        arguments.push_back(argument.Get());
    DISPPARAMS parameters{arguments.data(), request.names.data(), static_cast<UINT>(arguments.size()),
                          static_cast<UINT>(request.names.size())};
    if (request.isWild && OneIn(50))
        parameters.rgvarg = nullptr;
    if (request.isWild && OneIn(50))
        parameters.rgdispidNamedArgs = nullptr;
    VARIANT value;
    value.vt = VT_ILLEGAL;    // what a caller has not cleared
    EXCEPINFO exception{};
    UINT badArgument = 0;
    const IID iid = request.isWild && OneIn(50) ? IID_IUnknown : IID_NULL;

    const HRESULT result = target.object->Invoke(
        request.id, iid, LOCALE_USER_DEFAULT, request.flags,
        request.isWild && OneIn(50) ? nullptr : &parameters, request.wantsResult ? &value : nullptr,
        request.wantsException ? &exception : nullptr, OneIn(2) ? &badArgument : nullptr);

    ExpectCleanAnswer(result, request.wantsException ? &exception : nullptr,
                      request.wantsResult ? &value : nullptr);
    FreeStrings(exception);
    if (testing::Test::HasFailure())
        ADD_FAILURE() << "in a call of " << Description(target.kind, request.id, request.flags, arguments);
    if (!request.wantsException)
        SetErrorInfo(0, nullptr);
    succeeded += result == S_OK;
    if (IsItemDelete(target.kind, request.id) && (request.flags & method) && result == S_OK)
        ++deletedForGood;
    if (IsItemCopy(target.kind, request.id) && (request.flags & method) && result == S_OK)
        ++copied;
    if (!request.wantsResult)
        return;
    const _variant_t answer(value, false);
    if (result == S_OK)
        Keep(request.result, answer);
}

void DispatchCaller::Keep(ObjectKind kind, const _variant_t& result)
{
    if (result.vt == VT_BSTR && result.bstrVal)
        entryIds.emplace_back(result.bstrVal, SysStringLen(result.bstrVal));
    if (entryIds.size() > 20)
        entryIds.erase(entryIds.begin());
    // An object that a wild call yields is of a kind that the caller cannot know.
    if (result.vt != VT_DISPATCH || !result.pdispVal || kind == ObjectKind::count)
        return;
    if (objects.size() >= mostObjects)
        objects.erase(objects.begin() + 1 + Below(static_cast<int>(objects.size()) - 1));
    objects.push_back({kind, ComPtr<IDispatch>(result.pdispVal)});
}

DispatchCaller::Request DispatchCaller::ReasonableRequest(const Known& target)
{
    const std::vector<Operation>& operations = OperationsOf(target.kind);
    const Operation& operation = operations[Below(static_cast<int>(operations.size()))];
    Request request{.id = operation.id, .flags = operation.flags, .result = operation.result};
    const std::string types = operation.arguments;
    for (auto type = types.rbegin(); type != types.rend(); ++type)
        request.arguments.push_back(OneIn(12) ? AnyArgument() : ArgumentFor(*type));
    if (operation.flags == put)
        request.names = {DISPID_PROPERTYPUT};
    request.wantsException = !OneIn(6);
    return request;
}

DispatchCaller::Request DispatchCaller::WildRequest()
{
    constexpr WORD manyFlags[] = {method,       get,     put, DISPATCH_PROPERTYPUTREF,
                                  method | get, put | 8, 0,   0xFFFF};
    const std::vector<Operation>& operations =
        OperationsOf(static_cast<ObjectKind>(Below(static_cast<int>(ObjectKind::count))));
    Request request;
    request.isWild = true;
    request.id = OneIn(4) ? AnyNumber() : operations[Below(static_cast<int>(operations.size()))].id;
    request.flags = manyFlags[Below(static_cast<int>(std::size(manyFlags)))];
    for (int count = Below(OneIn(4) ? 8 : 3); count > 0; --count)
        request.arguments.push_back(AnyArgument());
    for (int count = OneIn(2) ? 0 : Below(3); count > 0; --count)
        request.names.push_back(OneIn(2) ? DISPID_PROPERTYPUT : AnyNumber());
    request.wantsResult = !OneIn(4);
    request.wantsException = !OneIn(4);
    return request;
}
