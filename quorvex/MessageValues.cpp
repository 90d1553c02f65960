#include "quorvex/MessageValues.h"

#include "quorvex/AttachmentName.h"
#include "quorvex/MapiError.h"
#include "quorvex/PropVariant.h"
#include "quorvex/PropertyReader.h"
#include "quorvex/TableReader.h"

#include <mapiguid.h>
#include <mapitags.h>

#include <algorithm>

namespace
{
using Microsoft::WRL::ComPtr;

class AttachmentValues : public ObjectValues
{
public:
    AttachmentValues(ComPtr<IMAPIProp> attachment, std::wstring shownName)
        : ObjectValues(std::move(attachment)),
          name(std::move(shownName))
    {
    }

    std::wstring Text(ULONG tag) override
    {
        return tag == PR_DISPLAY_NAME_W ? name : ObjectValues::Text(tag);
    }

private:
    std::wstring name;
};

// A recipient is no object that can be opened: its table row is all there is.
class RecipientValues : public RowValues
{
public:
    RecipientValues(std::span<const ULONG> rowTags, TableRow tableRow) : tags(rowTags), row(tableRow) {}

    std::wstring Text(ULONG tag) override
    {
        const SPropValue* value = Find(tag);
        return value ? TextOf(*value) : std::wstring();
    }
    std::optional<std::int64_t> Number(ULONG tag) override
    {
        const SPropValue* value = Find(tag);
        return value ? NumberOf(*value) : std::nullopt;
    }
    std::optional<std::vector<std::uint8_t>> Binary(ULONG tag) override
    {
        const SPropValue* value = Find(tag);
        if (!value)
            return std::nullopt;
        const auto bytes = BytesOf(value->Value.bin);
        return std::vector<std::uint8_t>(bytes.begin(), bytes.end());
    }
    bool Exists(ULONG tag) override { return Find(tag) != nullptr; }
    bool SomeSubObjectMeets(ULONG, const Restriction&) override { return false; }

private:
    const SPropValue* Find(ULONG tag) const
    {
        const auto place = std::ranges::find(tags, tag);
        return place == tags.end() ? nullptr : row[static_cast<std::size_t>(place - tags.begin())];
    }

    std::span<const ULONG> tags;
    TableRow row;
};

ComPtr<IAttach> OpenAttachment(IMessage* message, ULONG number)
{
    ComPtr<IAttach> attachment;
    CheckMapi(message->OpenAttach(number, nullptr, 0, attachment.GetAddressOf()), message,
              L"open an attachment");
    return attachment;
}

bool SeeAttachment(const ComPtr<IAttach>& attachment, const std::function<bool(RowValues&)>& see)
{
    const std::wstring fileName = AttachmentFileName(attachment.Get());
    AttachmentValues byFileName(attachment, fileName);
    if (see(byFileName))
        return true;
    const std::wstring displayName = ReadText(attachment.Get(), PR_DISPLAY_NAME_W);
    if (displayName.empty() || displayName == fileName)
        return false;
    AttachmentValues byDisplayName(attachment, displayName);
    return see(byDisplayName);
}

bool AnyAttachment(IMessage* message, const std::function<bool(RowValues&)>& see)
{
    ComPtr<IMAPITable> table;
    CheckMapi(message->GetAttachmentTable(MAPI_UNICODE, table.GetAddressOf()), message,
              L"list the attachments");
    std::vector<ULONG> numbers;
    constexpr ULONG numberTag = PR_ATTACH_NUM;
    ReadRows(table.Get(), {&numberTag, 1}, 1,
             [&](TableRow row)
             {
                 if (row[0])
                     numbers.push_back(static_cast<ULONG>(row[0]->Value.l));
             });
    return std::ranges::any_of(numbers, [&](ULONG number)
                               { return SeeAttachment(OpenAttachment(message, number), see); });
}

bool AnyRecipient(IMessage* message, std::span<const ULONG> tags, const std::function<bool(RowValues&)>& see)
{
    ComPtr<IMAPITable> table;
    CheckMapi(message->GetRecipientTable(MAPI_UNICODE, table.GetAddressOf()), message,
              L"list the recipients");
    std::vector<ULONG> columns{PR_ROWID};
    columns.insert(columns.end(), tags.begin(), tags.end());
    bool seen = false;
    ReadRows(table.Get(), columns, 1,
             [&](TableRow row)
             {
                 RecipientValues values(columns, row);
                 seen = seen || see(values);
             });
    return seen;
}

void CollectTags(const Restriction& condition, std::vector<ULONG>& tags)
{
    if (condition.kind == RES_PROPERTY || condition.kind == RES_CONTENT || condition.kind == RES_EXIST)
        tags.push_back(condition.tag);
    for (const Restriction& child : condition.children)
        CollectTags(child, tags);
}

// The tags that a condition asks for.
std::vector<ULONG> TagsOf(const Restriction& condition)
{
    std::vector<ULONG> tags;
    CollectTags(condition, tags);
    return tags;
}
}    // namespace

std::wstring ObjectValues::Text(ULONG tag)
{
    return ReadText(object.Get(), tag);
}

std::optional<std::int64_t> ObjectValues::Number(ULONG tag)
{
    const PropertyValues values(object.Get(), {&tag, 1});
    const SPropValue* value = values.Find(0);
    return value ? NumberOf(*value) : std::nullopt;
}

std::optional<std::vector<std::uint8_t>> ObjectValues::Binary(ULONG tag)
{
    return ReadBinary(object.Get(), tag);
}

bool ObjectValues::Exists(ULONG tag)
{
    const PropertyValues values(object.Get(), {&tag, 1});
    // What is too long for GetProps is found by reading it.
    return values.IsTooLong(0) ? values.Variant(0).vt != VT_EMPTY : values.Find(0) != nullptr;
}

bool MessageValues::SomeSubObjectMeets(ULONG table, const Restriction& condition)
{
    return AnySubObject(message.Get(), table, TagsOf(condition),
                        [&](RowValues& values) { return Meets(condition, values); });
}

bool AnySubObject(IMessage* message, ULONG table, std::span<const ULONG> tags,
                  const std::function<bool(RowValues&)>& see)
{
    switch (PROP_ID(table))
    {
    case PROP_ID(PR_MESSAGE_ATTACHMENTS):
        return AnyAttachment(message, see);
    case PROP_ID(PR_MESSAGE_RECIPIENTS):
        return AnyRecipient(message, tags, see);
    default:
        throw MapiError(E_INVALIDARG, L"A sub-restriction applies to PR_MESSAGE_ATTACHMENTS or "
                                      L"PR_MESSAGE_RECIPIENTS, to no other property.");
    }
}
