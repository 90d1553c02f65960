#include "localmapi/MessageParts.h"

#include "localmapi/Arguments.h"
#include "localmapi/MapiMemory.h"
#include "localmapi/PropertyConversion.h"
#include "localmapi/SubObjectTables.h"
#include "localmapi/storage/PropertyTag.h"

#include <wrl/client.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <set>

namespace
{
using Values = std::map<std::uint32_t, StoredValue>;

Values ValuesOf(const ADRENTRY& entry)
{
    Values values;
    for (const SPropValue& property : std::span(entry.rgPropVals, entry.cValues))
    {
        // Of a recipient the store keeps what its table shows; a client may well know more.
        if (!(PROP_TYPE(property.ulPropTag) & MV_FLAG) && PROP_TYPE(property.ulPropTag) != PT_OBJECT)
            values.insert_or_assign(StoredTag(property.ulPropTag), StoredValueOf(property));
    }
    return values;
}

std::string TextOr(const Values& values, std::uint32_t tag, const std::string& otherwise)
{
    const auto found = values.find(tag);
    const auto* text = found == values.end() ? nullptr : std::get_if<std::string>(&found->second);
    return text ? *text : otherwise;
}

StoredValue ValueOr(const Values& values, std::uint32_t tag, const StoredValue& otherwise)
{
    const auto found = values.find(tag);
    return found == values.end() ? otherwise : found->second;
}

// The recipient that `values` describe; what they leave out stays as `before` has it.
Recipient RecipientOf(const Values& values, const Recipient& before)
{
    Recipient recipient;
    const StoredValue type = ValueOr(values, tag::recipientType, before.type);
    if (!std::holds_alternative<std::int64_t>(type))
        throw MapiError(MAPI_E_INVALID_PARAMETER);
    recipient.type = std::get<std::int64_t>(type);
    recipient.addressType = ValueOr(values, tag::addressType, before.addressType);
    recipient.address = ValueOr(values, tag::emailAddress, before.address);
    const std::string address = TextOr(values, tag::emailAddress, "");
    recipient.name = TextOr(values, tag::displayName, before.name.empty() ? address : before.name);
    return recipient;
}

std::optional<std::size_t> RowOf(const Values& values, const std::vector<Recipient>& recipients)
{
    const auto found = values.find(tag::rowId);
    const auto* row = found == values.end() ? nullptr : std::get_if<std::int64_t>(&found->second);
    if (!row || *row < 0 || *row >= static_cast<std::int64_t>(recipients.size()))
        return std::nullopt;
    return static_cast<std::size_t>(*row);
}

void RemoveRows(std::vector<Recipient>& recipients, const std::set<std::size_t>& rows)
{
    for (auto row = rows.rbegin(); row != rows.rend(); ++row)
        recipients.erase(recipients.begin() + static_cast<std::ptrdiff_t>(*row));
}

// Fills a MAPI buffer with all values that are there.
ULONG FillValues(const Values& values, MapiBuffer<SPropValue>& buffer)
{
    buffer = MakeMapiBuffer<SPropValue>(values.size() * sizeof(SPropValue));
    ULONG count = 0;
    for (const auto& [tag, value] : values)
    {
        if (!std::holds_alternative<std::monostate>(value))
            FillPropValue(buffer.get()[count++], tag, value, buffer.get());
    }
    return count;
}

void CopyRecipients(const std::vector<Recipient>& recipients, IMessage& target)
{
    if (recipients.empty())
        return;
    auto list = MakeMapiBuffer<ADRLIST>(CbNewADRLIST(recipients.size()));
    std::vector<MapiBuffer<SPropValue>> rows(recipients.size());
    for (const Recipient& recipient : recipients)
    {
        MapiBuffer<SPropValue>& row = rows[list->cEntries];
        const Values values{{tag::recipientType, recipient.type},
                            {tag::displayName, recipient.name},
                            {tag::addressType, recipient.addressType},
                            {tag::emailAddress, recipient.address}};
        const ULONG count = FillValues(values, row);
        list->aEntries[list->cEntries++] = {0, count, row.get()};
    }
    ThrowIfFailed(target.ModifyRecipients(MODRECIP_ADD, list.get()));
}

void CopyAttachment(const Values& values, IMessage& target)
{
    ULONG number = 0;
    Microsoft::WRL::ComPtr<IAttach> attach;
    ThrowIfFailed(target.CreateAttach(nullptr, 0, &number, &attach));
    MapiBuffer<SPropValue> buffer;
    const ULONG count = FillValues(values, buffer);
    // The target numbers and measures its attachments itself: those values come back as problems.
    ThrowIfFailed(attach->SetProps(count, buffer.get(), nullptr));
    ThrowIfFailed(attach->SaveChanges(0));
}

bool Contains(std::span<const std::uint32_t> tags, std::uint32_t tag)
{
    return std::ranges::find(tags, tag) != tags.end();
}
}    // namespace

std::vector<Recipient> ModifiedRecipients(std::vector<Recipient> recipients, ULONG flags, const ADRLIST& list)
{
    if (flags == 0)
        recipients.clear();
    std::set<std::size_t> removed;
    for (const ADRENTRY& entry : std::span(list.aEntries, list.cEntries))
    {
        const Values values = ValuesOf(entry);
        const auto row =
            flags & (MODRECIP_MODIFY | MODRECIP_REMOVE) ? RowOf(values, recipients) : std::nullopt;
        if (flags & MODRECIP_REMOVE)
            removed.insert(row ? *row : throw MapiError(MAPI_E_NOT_FOUND));
        else if (row)
            recipients[*row] = RecipientOf(values, recipients[*row]);
        else
            recipients.push_back(RecipientOf(values, {}));
    }
    RemoveRows(recipients, removed);
    return recipients;
}

void CopyMessageParts(MessageDraft& draft, IMessage& target, std::span<const std::uint32_t> excludedTags)
{
    if (!Contains(excludedTags, tag::messageRecipients))
        CopyRecipients(draft.Recipients(), target);
    if (Contains(excludedTags, tag::messageAttachments))
        return;
    for (const auto& [number, attachment] : draft.Attachments())
    {
        Values values = AttachmentValues(number, attachment);
        values[tag::attachDataBin] = draft.AttachmentData(number);
        CopyAttachment(values, target);
    }
}
