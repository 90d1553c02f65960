#include "tests/quorvex/DispatchCaller.h"

#include "contracts/DispatchIds.h"

#include <mapidefs.h>
#include <mapitags.h>

#include <algorithm>
#include <iterator>
#include <limits>

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

// Larger than a server's buffers, smaller than what makes every call slow.
constexpr std::size_t hugeText = 300'000;

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
    EXPECT_NE(result, E_FAIL);
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
        Keep(request.isWild ? target.kind : request.result, answer);
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

RawVariant DispatchCaller::ArgumentFor(char type)
{
    constexpr long kinds[] = {RES_AND,      RES_OR,    RES_NOT,           RES_CONTENT,
                              RES_PROPERTY, RES_EXIST, RES_SUBRESTRICTION};
    constexpr long tags[] = {PR_SUBJECT_W,          PR_BODY_W,   PR_SENDER_NAME_W, PR_CLIENT_SUBMIT_TIME,
                             PR_MESSAGE_RECIPIENTS, PR_ENTRYID,  PR_MESSAGE_FLAGS, PR_MESSAGE_ATTACHMENTS,
                             PR_DISPLAY_NAME_W,     PR_HASATTACH};
    switch (type)
    {
    case 'i':
        return _variant_t(static_cast<long>(1 + Below(4)));
    case 'k':
        return _variant_t(kinds[Below(static_cast<int>(std::size(kinds)))]);
    case 't':
        return _variant_t(tags[Below(static_cast<int>(std::size(tags)))]);
    case 'n':
        return _variant_t(static_cast<long>(Below(4)));
    case 'b':
        return _variant_t(OneIn(2));
    case 'd':
        return _variant_t(40000.0 + Below(10000), VT_DATE);
    case 's':
        return _variant_t(AnyText().c_str());
    case 'e':
        return EntryIdText();
    case 'f':
        for (const Known& known : objects)
            if (known.kind == ObjectKind::folder && OneIn(3))
                return _variant_t(known.object.Get());
        return _variant_t(AnyObject().Get());
    case 'c':
        return AnyArray();
    default:
        return OneIn(3) ? AnyArgument() : RawVariant(_variant_t(AnyText().c_str()));
    }
}

_variant_t DispatchCaller::EntryIdText()
{
    if (entryIds.empty() || OneIn(4))
        return AnyText().c_str();
    std::wstring text = entryIds[Below(static_cast<int>(entryIds.size()))];
    if (OneIn(3) && !text.empty())
        text[Below(static_cast<int>(text.size()))] = L"0123456789ABCDEF"[Below(16)];
    if (OneIn(6))
        text.resize(Below(static_cast<int>(text.size()) + 1));
    return text.c_str();
}

// Also by reference, to nothing, and of types that no automation client has.
RawVariant DispatchCaller::AnyArgument()
{
    static VARIANT referred;
    static long referredNumber = 7;
    static BSTR noText = nullptr;
    static IDispatch* noObject = nullptr;
    VARIANT value;
    VariantInit(&value);
    switch (Below(22))
    {
    case 0:
        return value;
    case 1:
        value.vt = VT_NULL;
        break;
    case 2:
        return automation::Missing();
    case 3:
        value.vt = VT_BSTR;    // a null BSTR is an empty text
        break;
    case 4:
        value.vt = VT_DISPATCH;
        break;
    case 5:
        value.vt = VT_UNKNOWN;
        break;
    case 6:
        return _variant_t(AnyObject().Get());
    case 7:
        value.vt = static_cast<VARTYPE>(VT_BYREF | Below(32));    // to nothing
        break;
    case 8:
        referred.vt = static_cast<VARTYPE>(OneIn(2) ? VT_BYREF | VT_VARIANT : VT_BYREF | VT_I4);
        referred.byref = nullptr;
        value.vt = VT_BYREF | VT_VARIANT;
        value.pvarVal = &referred;
        break;
    case 9:
        value.vt = VT_BYREF | VT_I4;
        value.plVal = &referredNumber;
        break;
    case 10:
        value.vt = VT_BYREF | VT_BSTR;
        value.pbstrVal = &noText;
        break;
    case 11:
        value.vt = VT_BYREF | VT_DISPATCH;
        value.ppdispVal = &noObject;
        break;
    case 12:
        return AnyArray();
    case 13:
        value.vt = static_cast<VARTYPE>(VT_ARRAY | (OneIn(2) ? VT_UI1 : VT_VARIANT));    // no array
        break;
    case 14:
        value.vt = VT_ARRAY | VT_BYREF | VT_I4;
        break;
    case 15:
        value.vt = VT_R8;
        value.dblVal = OneIn(2) ? std::numeric_limits<double>::quiet_NaN() : 1e300;
        break;
    case 16:
        value.vt = VT_DATE;
        value.date = OneIn(2) ? -700000.0 : 1e9;
        break;
    case 17:
        value.vt = VT_I8;
        value.llVal = static_cast<LONGLONG>(engine()) << 32 | engine();
        break;
    case 18:
        return EntryIdText();
    case 19:
        value.vt = static_cast<VARTYPE>(Below(2) ? 0x0FFF : VT_CLSID);
        break;
    case 20:
        return _variant_t(AnyText().c_str());
    default:
        return _variant_t(AnyNumber());
    }
    return value;
}

// Arrays of any element, length, lower bound and number of dimensions; sometimes columns as they should be.
RawVariant DispatchCaller::AnyArray()
{
    constexpr VARTYPE elementTypes[] = {VT_I4,   VT_UI4,      VT_UI8, VT_UI1, VT_VARIANT,
                                        VT_BSTR, VT_DISPATCH, VT_R8,  VT_I2};
    const VARTYPE type = elementTypes[Below(static_cast<int>(std::size(elementTypes)))];
    SAFEARRAYBOUND bounds[3];
    for (SAFEARRAYBOUND& bound : bounds)
        bound = {static_cast<ULONG>(Below(4)), OneIn(3) ? -5 : Below(2)};
    const UINT dimensions = OneIn(4) ? 1 + Below(3) : 1;
    VARIANT value;
    VariantInit(&value);
    value.vt = static_cast<VARTYPE>(VT_ARRAY | (OneIn(4) ? VARTYPE{VT_INT} : type));
    value.parray = SafeArrayCreate(type, dimensions, bounds);
    if (value.parray && type == VT_UI4 && dimensions == 1)
        for (ULONG index = 0; index < bounds[0].cElements; ++index)
            static_cast<ULONG*>(value.parray->pvData)[index] =
                static_cast<ULONG>(ArgumentFor('t').Get().lVal);
    return value;
}

std::wstring DispatchCaller::AnyText()
{
    switch (Below(10))
    {
    case 0:
        return {};
    case 1:
        return std::wstring(hugeText, L'F');
    case 2:
        return std::wstring(L"a\0b", 3);
    case 3:
        return std::wstring(1, static_cast<wchar_t>(0xD800));    // half a character
    case 4:
        return std::to_wstring(AnyNumber());
    case 5:
        return std::wstring(static_cast<std::size_t>(Below(65)) * 2, L'0');
    default:
        return L"Number " + std::to_wstring(Below(6));
    }
}

long DispatchCaller::AnyNumber()
{
    constexpr long notable[] = {
        0, 1, -1, -2, -3, -4, -5, 9, 0x7FFFFFFF, static_cast<long>(0x80000000), 0x3001001F};
    return OneIn(2) ? notable[Below(static_cast<int>(std::size(notable)))] : static_cast<long>(engine());
}
