// What DispatchCaller hands to the calls that it makes.
#include "tests/quorvex/DispatchCaller.h"

#include <mapidefs.h>
#include <mapitags.h>

#include <iterator>
#include <limits>

namespace
{
// Larger than a server's buffers, smaller than what makes every call slow.
constexpr std::size_t hugeText = 300'000;
}    // namespace

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
