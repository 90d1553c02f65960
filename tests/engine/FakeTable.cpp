#include "tests/engine/FakeTable.h"

#include "win/SafeArray.h"
#include "win/Variant.h"

#include <windows.h>

#include <algorithm>

namespace
{
using Object = Microsoft::WRL::ComPtr<FakeDispatch>;

// One restriction as it was put together; `inner` are an AND's children or a sub-restriction's conditions.
struct Node
{
    LONG kind = 0;
    ULONG tag = 0;
    LONG relop = -1;
    LONG fuzzyLevel = -1;
    _variant_t value;
    std::vector<std::shared_ptr<Node>> inner;
};

struct Table
{
    const FakeFolder* folder;
    ULONG columnTag = 0;
    std::shared_ptr<Node> filter{};
    std::size_t row = 0;
};

bool EqualsIgnoringCase(const std::wstring& left, const std::wstring& right)
{
    return ::CompareStringOrdinal(left.c_str(), -1, right.c_str(), -1, TRUE) == CSTR_EQUAL;
}

std::wstring DisplayNames(const FakeMessage& message, LONG type)
{
    std::wstring names;
    for (const auto& [recipientType, name] : message.recipients)
        if (recipientType == type)
            names += (names.empty() ? L"" : L"; ") + name;
    return names;
}

std::wstring TextProperty(const FakeMessage& message, ULONG tag)
{
    switch (tag)
    {
    case 0x0037001F:
        return message.subject;
    case 0x1000001F:
        return message.body;
    case 0x0C1F001F:
        return message.senderEmail;
    case 0x0C1A001F:
        return message.senderName;
    case 0x007D001F:
        return message.headers;
    case 0x0E04001F:
        return DisplayNames(message, 1);
    case 0x0E03001F:
        return DisplayNames(message, 2);
    case 0x0E02001F:
        return DisplayNames(message, 3);
    default:
        return L"<no such property>";
    }
}

DATE DateProperty(const FakeMessage& message, ULONG tag)
{
    return tag == 0x00390040 ? message.sent : message.delivered;
}

bool MeetsProperty(const Node& node, const FakeMessage& message)
{
    if (node.value.vt == VT_BSTR)
        return node.relop == 4 && TextProperty(message, node.tag) == TextOf(node.value.bstrVal);
    const DATE date = DateProperty(message, node.tag);
    return node.value.vt == VT_DATE && (node.relop == 3 ? date >= node.value.date : date < node.value.date);
}

bool MeetsAttachments(const Node& node, const FakeMessage& message)
{
    return node.tag == 0x0E13000D &&
           std::ranges::all_of(node.inner,
                               [&](const auto& condition)
                               {
                                   return std::ranges::any_of(
                                       message.attachments,
                                       [&](const std::wstring& name)
                                       {
                                           return condition->tag == 0x3001001F &&
                                                  condition->fuzzyLevel == 0x10000 &&
                                                  EqualsIgnoringCase(name, TextOf(condition->value.bstrVal));
                                       });
                               });
}

bool Meets(const Node& node, const FakeMessage& message)
{
    switch (node.kind)
    {
    case 0:
        return std::ranges::all_of(node.inner, [&](const auto& child) { return Meets(*child, message); });
    case 3:
        return node.fuzzyLevel == 0x10000 &&
               EqualsIgnoringCase(TextProperty(message, node.tag), TextOf(node.value.bstrVal));
    case 4:
        return MeetsProperty(node, message);
    case 9:
        return MeetsAttachments(node, message);
    default:
        return false;
    }
}

_variant_t SetTag(const std::shared_ptr<Node>& node, const FakeArguments& arguments)
{
    node->tag = static_cast<ULONG>(arguments[0].lVal);
    return {};
}

Object MakeRestriction(CallLog& log, std::shared_ptr<Node> node);

FakeAnswer CreateInner(CallLog& log, std::shared_ptr<Node> node)
{
    return [&log, node](const FakeArguments& arguments)
    {
        auto inner = std::make_shared<Node>();
        inner->kind = arguments[0].lVal;
        node->inner.push_back(inner);
        return ObjectVariant(MakeRestriction(log, inner));
    };
}

Object MakeRestriction(CallLog& log, std::shared_ptr<Node> node)
{
    const auto tag = [node](const FakeArguments& arguments) { return SetTag(node, arguments); };
    if (node->kind == 0 || node->kind == 9)
    {
        const Object parent = FakeDispatch::Make(log, node->kind == 0 ? "And" : "Sub");
        parent->OnMethod(2, CreateInner(log, node));
        if (node->kind == 9)
            parent->OnPut(3, tag);
        return parent;
    }

    const Object condition = FakeDispatch::Make(log, node->kind == 4 ? "Property" : "Content");
    condition->OnPut(2, tag);
    condition->OnPut(3,
                     [node](const FakeArguments& arguments)
                     {
                         node->value = arguments[0];
                         return _variant_t();
                     });
    condition->OnPut(10,
                     [node](const FakeArguments& arguments)
                     {
                         (node->kind == 4 ? node->relop : node->fuzzyLevel) = arguments[0].lVal;
                         return _variant_t();
                     });
    return condition;
}

_variant_t FindFrom(Table& table, std::size_t row)
{
    const auto& messages = table.folder->messages;
    while (row < messages.size() && table.filter && !Meets(*table.filter, *messages[row]))
        ++row;
    table.row = row;
    return BoolVariant(row < messages.size());
}

// The row's one column: the id's bytes. On an Exchange column they stand behind the byte 0xEE.
_variant_t EntryIdValue(const std::wstring& hex, ULONG tag)
{
    std::vector<BYTE> bytes;
    if (tag == 0x66700102)
        bytes.push_back(0xEE);
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes.push_back(static_cast<BYTE>(std::stoul(hex.substr(i, 2), nullptr, 16)));

    _variant_t value;
    SAFEARRAYBOUND bound{static_cast<ULONG>(bytes.size()), 0};
    value.parray = ::SafeArrayCreate(VT_UI1, 1, &bound);
    value.vt = VT_ARRAY | VT_UI1;
    for (LONG i = 0; i < static_cast<LONG>(bytes.size()); ++i)
        ::SafeArrayPutElement(value.parray, &i, &bytes[static_cast<std::size_t>(i)]);
    return value;
}

_variant_t Row(const Table& table)
{
    _variant_t value = EntryIdValue(table.folder->messages[table.row]->id, table.columnTag);
    _variant_t row;
    SAFEARRAYBOUND bound{1, 0};
    row.parray = ::SafeArrayCreate(VT_VARIANT, 1, &bound);
    row.vt = VT_ARRAY | VT_VARIANT;
    LONG index = 0;
    ::SafeArrayPutElement(row.parray, &index, &value);
    return row;
}

Object MakeFilter(CallLog& log, std::shared_ptr<Table> table)
{
    const Object filter = FakeDispatch::Make(log, "Filter");
    filter->OnMethod(1,
                     [table](const FakeArguments&)
                     {
                         table->filter.reset();
                         return _variant_t();
                     });
    filter->OnMethod(2,
                     [&log, table](const FakeArguments& arguments)
                     {
                         table->filter = std::make_shared<Node>();
                         table->filter->kind = arguments[0].lVal;
                         return ObjectVariant(MakeRestriction(log, table->filter));
                     });
    filter->OnMethod(5, [table](const FakeArguments&) { return FindFrom(*table, 0); });
    filter->OnMethod(7, [table](const FakeArguments&) { return FindFrom(*table, table->row + 1); });
    return filter;
}
}    // namespace

Object MakeFakeTable(CallLog& log, const FakeFolder& folder)
{
    auto state = std::make_shared<Table>(Table{&folder});
    const Object table = FakeDispatch::Make(log, "Table");
    table->OnPut(3,
                 [state](const FakeArguments& arguments)
                 {
                     state->columnTag = static_cast<ULONG>(ArrayElement(arguments[0], 0).ullVal);
                     return _variant_t();
                 });
    table->OnMethod(7, [state](const FakeArguments&) { return Row(*state); });
    table->OnGet(9, [&log, state](const FakeArguments&) { return ObjectVariant(MakeFilter(log, state)); });
    return table;
}
