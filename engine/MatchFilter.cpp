#include "engine/MatchFilter.h"

#include "store/ItemTable.h"
#include "store/Restrictions.h"
#include "win/OleException.h"
#include "win/SafeArray.h"
#include "win/Variant.h"

#include <windows.h>

#include <mapidefs.h>
#include <mapitags.h>

#include <span>

namespace
{
// The long-term entry id as an Exchange table gives it.
constexpr ULONG longTermEntryIdFromTable = PROP_TAG(PT_BINARY, 0x6670);

void AddProperty(const CAndRestriction& root, ULONG propTag, ULONG relop, const _variant_t& value)
{
    const auto restriction = root.Add<CPropertyRestriction>();
    restriction.SetPropTag(propTag);
    restriction.SetRelop(relop);
    restriction.SetValue(value);
}

// The store expects this order: level, tag, value.
void ConfigureContent(const CContentRestriction& restriction, ULONG propTag, const std::wstring& text)
{
    restriction.SetFuzzyLevel(FL_FULLSTRING | FL_IGNORECASE);
    restriction.SetPropTag(propTag);
    restriction.SetValue(TextVariant(text));
}

// What every run compares. An empty subject is compared too, an empty body or address is not.
void AddTexts(const CAndRestriction& root, const std::wstring& subject, const std::wstring& body,
              const std::wstring& senderEmail)
{
    AddProperty(root, PR_SUBJECT_W, RELOP_EQ, TextVariant(subject));
    if (!body.empty())
        AddProperty(root, PR_BODY_W, RELOP_EQ, TextVariant(body));
    if (!senderEmail.empty())
        AddProperty(root, PR_SENDER_EMAIL_ADDRESS_W, RELOP_EQ, TextVariant(senderEmail));
}

// MAPI's display strings: the names in the message's order, "; " between two.
std::wstring JoinNames(std::span<const std::wstring> names)
{
    std::wstring joined;
    for (const std::wstring& name : names)
    {
        if (&name != names.data())
            joined += L"; ";
        joined += name;
    }
    return joined;
}

void AddNames(const CAndRestriction& root, ULONG propTag, std::span<const std::wstring> names)
{
    if (!names.empty())
        ConfigureContent(root.Add<CContentRestriction>(), propTag, JoinNames(names));
}

void AddRecipientNames(const CAndRestriction& root, const ScanState& state)
{
    AddNames(root, PR_DISPLAY_TO_W, state.toNames);
    AddNames(root, PR_DISPLAY_CC_W, state.ccNames);
    AddNames(root, PR_DISPLAY_BCC_W, state.bccNames);
}

void AddAttachmentNames(const CAndRestriction& root, std::span<const std::wstring> names)
{
    if (names.empty())
        return;
    const auto attachments = root.Add<CSubRestriction>();
    attachments.SetSubObject(PR_MESSAGE_ATTACHMENTS);
    for (const std::wstring& name : names)
        ConfigureContent(attachments.SetInner<CContentRestriction>(), PR_DISPLAY_NAME_W, name);
}

void AddTimes(const CAndRestriction& root, const ScanState& state, const _variant_t& sendTime)
{
    if (state.useSendTime && state.sendTimeRangeSet)
    {
        AddProperty(root, PR_CLIENT_SUBMIT_TIME, RELOP_GE, sendTime);
        AddProperty(root, PR_CLIENT_SUBMIT_TIME, RELOP_LT, state.sendTimeUpper);
    }
    if (state.useTimeSpan)
        AddProperty(root, PR_MESSAGE_DELIVERY_TIME, RELOP_GE, state.cutoffDate);
}

// What is neither a text nor empty goes into the search, for the store to refuse: leaving it out would find
// messages that do not agree.
bool IsEmpty(const _variant_t& value)
{
    return value.vt == VT_EMPTY || value.vt == VT_NULL ||
           (value.vt == VT_BSTR && ::SysStringLen(value.bstrVal) == 0);
}

// One column: the entry id by which the action phase finds the message again. The contract declares the array
// as of 64-bit and the variant around it as of 32-bit integers. Without memory for the array the variant goes
// without one.
void SetEntryIdColumn(const CItemTable& table, bool exchangeProfile)
{
    SAFEARRAYBOUND bound{1, 0};
    const SafeArray array(::SafeArrayCreate(VT_UI8, 1, &bound));
    ULONGLONG propTag = exchangeProfile ? longTermEntryIdFromTable : PR_ENTRYID;
    LONG index = 0;
    if (array)
        ::SafeArrayPutElement(array.get(), &index, &propTag);

    VARIANT columns{};
    columns.vt = VT_ARRAY | VT_INT;
    columns.parray = array.get();
    table.SetColumns(columns);
}

void AppendHex(std::wstring& hex, BYTE byte)
{
    constexpr wchar_t digits[] = L"0123456789ABCDEF";
    hex += digits[byte >> 4];
    hex += digits[byte & 0x0F];
}

LONG RecordMatches(ScanState& state, const CItemTable& table, const CTableFilter& filter)
{
    LONG count = 0;
    for (bool found = filter.FindFirst(); found; found = filter.FindNext())
    {
        std::wstring id = EntryIdToHex(ArrayElement(table.GetRow(), 0));
        if (state.firstMatchPending)
        {
            state.firstMatchPending = 0;
            continue;
        }
        state.duplicateIds.Append(std::move(id));
        ++count;
    }
    return count;
}
}    // namespace

LONG FindDuplicatesOfItem(ScanState& state, const std::wstring& subject, const CItemCollection& items,
                          const std::wstring& body, const std::wstring& senderEmail,
                          const std::wstring& senderName, const _variant_t& transportHeaders,
                          const _variant_t& sendTime)
{
    try
    {
        const CItemTable table = items.GetTable();
        const CTableFilter filter = table.GetFilter();
        filter.Clear();
        const auto root = filter.SetRestriction<CAndRestriction>();

        AddTexts(root, subject, body, senderEmail);
        if (state.useSenderName)
            AddProperty(root, PR_SENDER_NAME_W, RELOP_EQ, TextVariant(senderName));
        if (state.useRecipientName)
            AddRecipientNames(root, state);
        if (state.useInternetHeader && !IsEmpty(transportHeaders))
            AddProperty(root, PR_TRANSPORT_MESSAGE_HEADERS_W, RELOP_EQ, transportHeaders);
        if (state.useAttachments)
            AddAttachmentNames(root, state.attachmentNames);
        AddTimes(root, state, sendTime);
        SetEntryIdColumn(table, state.exchangeProfile);

        const LONG count = RecordMatches(state, table, filter);
        state.duplicateCount += count;
        return count;
    }
    catch (const COleException&)
    {
        // A folder that cannot be searched is one without duplicates: the run goes on with the next.
        return 0;
    }
}

std::wstring EntryIdToHex(const VARIANT& entryId)
{
    const ULONG length = ArrayLength(entryId);
    std::wstring hex;
    hex.reserve(std::size_t{length} * 2);
    if (const auto bytes = ArrayBytes(entryId))
    {
        for (const BYTE byte : *bytes)
            AppendHex(hex, byte);
        return hex;
    }
    for (ULONG i = 0; i < length; ++i)
        if (const _variant_t element = ArrayElement(entryId, i); element.vt == VT_UI1)
            AppendHex(hex, element.bVal);
    return hex;
}
