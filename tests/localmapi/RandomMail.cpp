#include "tests/localmapi/RandomMail.h"

#include <windows.h>

#include <mapicode.h>
#include <mapitags.h>

#include <algorithm>
#include <limits>
#include <span>

namespace
{
struct Field
{
    ULONG tag;
    bool mayBeAbsent;
};

constexpr Field messageFields[] = {
    {PR_SUBJECT_W, false},
    {PR_SENDER_NAME_W, true},
    {PR_BODY_W, true},
    {PR_TRANSPORT_MESSAGE_HEADERS_W, true},
    {PROP_TAG(PT_UNICODE, 0x1035), true},
    {PR_MESSAGE_FLAGS, false},
    {PR_MESSAGE_SIZE, false},
    {PR_IMPORTANCE, true},
    {PR_CLIENT_SUBMIT_TIME, true},
    {PR_MESSAGE_DELIVERY_TIME, true},
    {PROP_TAG(PT_LONG, 0x6610), true},
    {PROP_TAG(PT_DOUBLE, 0x6611), true},
    {PROP_TAG(PT_I8, 0x6612), true},
    {PROP_TAG(PT_BOOLEAN, 0x6613), true},
    {PROP_TAG(PT_BINARY, 0x6614), true},
    {PROP_TAG(PT_CLSID, 0x6615), true},
    {PROP_TAG(PT_I2, 0x6616), true},
    {PROP_TAG(PT_SYSTIME, 0x6617), true},
    {PROP_TAG(PT_DOUBLE, 0x6618), true},
    {PROP_TAG(PT_BINARY, 0x6619), true},
};
constexpr Field recipientFields[] = {{PR_RECIPIENT_TYPE, false},
                                     {PR_DISPLAY_NAME_W, false},
                                     {PR_ADDRTYPE_W, true},
                                     {PR_EMAIL_ADDRESS_W, true}};
constexpr Field attachmentFields[] = {{PR_ATTACH_LONG_FILENAME_W, true},
                                      {PR_DISPLAY_NAME_W, true},
                                      {PR_ATTACH_MIME_TAG_W, true},
                                      {PR_ATTACH_SIZE, false}};
// What restrictions ask for besides: what the store tells by other values, and what no row has.
constexpr ULONG furtherMessageTags[] = {PR_HASATTACH, RandomMail::numberTag, PROP_TAG(PT_LONG, 0x6630),
                                        PROP_TAG(PT_UNICODE, 0x6630), PROP_TAG(PT_BINARY, 0x6630)};
constexpr ULONG furtherRecipientTags[] = {PR_ROWID, PR_SUBJECT_W};
constexpr ULONG furtherAttachmentTags[] = {PR_ATTACH_NUM, PR_ATTACH_FILENAME_W, PR_SUBJECT_W};

// Characters of one, two, three and four bytes, with and without case and accents.
constexpr const char32_t* texts[] = {
    U"",       U"a",          U"A",       U"ab",           U"aB",           U"ba",      U"b",
    U"\u00E9", U"\u00C9b",    U"e",       U"e\u0301",      U"E\u0301b",     U"\u0436a", U"\u0416",
    U"\uFF21", U"\U0001F600", U"a\uFF21", U"a\U0001F600b", U"\u0301",       U"a; b",    U"\u4E2D\u6587",
    U"x'y",    U"a%b_",       U"aa",      U"\u0436\u0436", U"A\u00C9\u0416"};
constexpr std::int64_t longs[] = {-1, 0, 1, 2, 16, 17, 0x7FFFFFFF, -0x7FFFFFFF - 1};
constexpr std::int64_t shorts[] = {-1, 0, 1, 300, -0x8000};
constexpr std::int64_t larges[] = {-1,
                                   0,
                                   1,
                                   std::int64_t{1} << 40,
                                   (std::int64_t{1} << 40) + 1,
                                   std::numeric_limits<std::int64_t>::max(),
                                   std::numeric_limits<std::int64_t>::min()};
constexpr std::int64_t times[] = {0,
                                  1,
                                  133500000000000000,
                                  133500000000000001,
                                  133500000050000000,
                                  std::numeric_limits<std::int64_t>::max()};
constexpr double reals[] = {-1.5, 0.0, 2.0, 1e-300, 0.1, std::numeric_limits<double>::infinity()};
constexpr ULONG sizes[] = {0, 1, 2, 4, 6, 8, 16, 20, 0x7FFFFFFF, 0xFFFFFFFF};
constexpr ULONG masks[] = {0, 1, 16, 17, 0x80000000, 0xFFFFFFFF};
constexpr ULONG levels[] = {FL_FULLSTRING, FL_SUBSTRING, FL_PREFIX};
constexpr ULONG foldings[] = {0, FL_IGNORECASE, FL_IGNORENONSPACE, FL_IGNORECASE | FL_IGNORENONSPACE,
                              FL_LOOSE};

std::span<const Field> FieldsOfMessages()
{
    return messageFields;
}

bool IsAscii(const std::u32string& text)
{
    return std::ranges::all_of(text, [](char32_t character) { return character < 0x80; });
}
}    // namespace

std::vector<ModelMessage> RandomMail::Messages()
{
    const int count = OneIn(16) ? 500 + Below(100) : Below(40);
    std::vector<ModelMessage> messages;
    std::int64_t id = 0;
    const bool hasGaps = OneIn(2);
    for (int number = 0; number < count; ++number)
    {
        id += hasGaps ? 1 + Below(OneIn(8) ? 1000 : 3) : 1;
        messages.push_back(Message());
        messages.back().id = id;
        messages.back().values.emplace(numberTag, std::int64_t{number});
    }
    return messages;
}

ModelMessage RandomMail::Message()
{
    ModelMessage message;
    message.values = Row(Table::messages);
    const std::int64_t flags = std::get<std::int64_t>(message.values.at(PR_MESSAGE_FLAGS));
    message.values.emplace(PR_HASATTACH, std::int64_t{(flags & 16) != 0});
    for (int count = Below(3); count > 0; --count)
    {
        message.recipients.push_back(Row(Table::recipients));
        message.recipients.back().emplace(PR_ROWID, static_cast<std::int64_t>(message.recipients.size()) - 1);
    }
    for (int count = Below(3); count > 0; --count)
    {
        ModelRow attachment = Row(Table::attachments);
        attachment.emplace(PR_ATTACH_NUM, static_cast<std::int64_t>(message.attachments.size()));
        const auto name = attachment.find(PR_ATTACH_LONG_FILENAME_W);
        if (name != attachment.end())
            attachment.emplace(PR_ATTACH_FILENAME_W, name->second);
        message.attachments.push_back(std::move(attachment));
    }
    return message;
}

ModelRow RandomMail::Row(Table table)
{
    const std::span<const Field> fields = table == Table::messages ? FieldsOfMessages()
                                          : table == Table::recipients
                                              ? std::span<const Field>(recipientFields)
                                              : attachmentFields;
    ModelRow row;
    for (const Field& field : fields)
        if (!field.mayBeAbsent || OneIn(2))
            row.emplace(field.tag, Value(PROP_TYPE(field.tag)));
    return row;
}

ModelValue RandomMail::Value(ULONG type)
{
    switch (type)
    {
    case PT_UNICODE:
        return Text();
    case PT_I2:
        return OneOf(shorts);
    case PT_LONG:
        return OneOf(longs);
    case PT_BOOLEAN:
        return std::int64_t{Below(2)};
    case PT_SYSTIME:
        return OneOf(times);
    case PT_DOUBLE:
        return OneOf(reals);
    case PT_BINARY:
    case PT_CLSID:
    {
        ModelBytes bytes(type == PT_CLSID ? sizeof(GUID) : static_cast<std::size_t>(Below(4)));
        for (std::uint8_t& byte : bytes)
            byte = static_cast<std::uint8_t>(OneIn(4) ? 0xFF : OneIn(2));
        return bytes;
    }
    default:
        return OneOf(larges);
    }
}

std::u32string RandomMail::Text()
{
    std::u32string text = OneOf(texts);
    if (OneIn(4))
        text += OneOf(texts);
    if (OneIn(40))
        text = std::u32string(static_cast<std::size_t>(Below(3000)), U'a') + text;
    return text;
}

ULONG RandomMail::Tag(Table table)
{
    switch (table)
    {
    case Table::messages:
        return OneIn(6) ? OneOf(furtherMessageTags) : OneOf(messageFields).tag;
    case Table::recipients:
        return OneIn(4) ? OneOf(furtherRecipientTags) : OneOf(recipientFields).tag;
    default:
        return OneIn(4) ? OneOf(furtherAttachmentTags) : OneOf(attachmentFields).tag;
    }
}

// Of the same type, the same or another one.
ULONG RandomMail::TagLike(Table table, ULONG tag)
{
    for (int tries = 0; tries < 8; ++tries)
    {
        const ULONG other = Tag(table);
        if (PROP_TYPE(other) == PROP_TYPE(tag))
            return other;
    }
    return tag;
}

// Texts in either form, where the narrow one can hold them.
SPropValue RandomMail::Property(Restrictions& make, ULONG tag, const ModelValue& value)
{
    if (const auto* const text = std::get_if<std::u32string>(&value))
    {
        if (IsAscii(*text) && OneIn(4))
            return make.Narrow(CHANGE_PROP_TYPE(tag, PT_STRING8), std::string(text->begin(), text->end()));
        return make.Text(tag, WideOf(*text).c_str());
    }
    if (const auto* const bytes = std::get_if<ModelBytes>(&value))
        return make.Bytes(tag, *bytes);
    if (const auto* const real = std::get_if<double>(&value))
        return Restrictions::Real(tag, OneIn(8) ? std::numeric_limits<double>::quiet_NaN() : *real);
    return Restrictions::Integer(tag, std::get<std::int64_t>(value));
}

SRestriction RandomMail::Restriction(Restrictions& make, int depth)
{
    return Condition(make, depth, Table::messages);
}

SRestriction RandomMail::Condition(Restrictions& make, int depth, Table table)
{
    if (depth > 0 && OneIn(2))
        return Compound(make, depth, table);
    const ULONG relop = static_cast<ULONG>(Below(6));
    const ULONG tag = Tag(table);
    switch (Below(7))
    {
    case 0:
        return make.Exist(tag);
    case 1:
        return make.Size(relop, tag, OneOf(sizes));
    case 2:
        return make.Compare(relop, tag, TagLike(table, tag));
    case 3:
        return BitMask(make, table);
    case 4:
        return Content(make, table);
    default:
        return Comparison(make, table);
    }
}

SRestriction RandomMail::Comparison(Restrictions& make, Table table)
{
    const ULONG tag = Tag(table);
    const SPropValue value = Property(make, tag, Value(PROP_TYPE(tag)));
    return make.Property(static_cast<ULONG>(Below(6)), OneIn(2) ? tag : value.ulPropTag, value);
}

SRestriction RandomMail::Content(Restrictions& make, Table table)
{
    ULONG tag = Tag(table);
    while (PROP_TYPE(tag) != PT_UNICODE && PROP_TYPE(tag) != PT_BINARY)
        tag = Tag(table);
    const SPropValue part = Property(make, tag, Value(PROP_TYPE(tag)));
    return make.Content(OneOf(levels) | OneOf(foldings), OneIn(2) ? tag : part.ulPropTag, part);
}

SRestriction RandomMail::BitMask(Restrictions& make, Table table)
{
    ULONG tag = Tag(table);
    while (PROP_TYPE(tag) != PT_LONG && PROP_TYPE(tag) != PT_I2 && PROP_TYPE(tag) != PT_BOOLEAN &&
           PROP_TYPE(tag) != PT_I8)
        tag = Tag(table);
    return make.BitMask(OneIn(2) ? BMR_NEZ : BMR_EQZ, tag, OneOf(masks));
}

SRestriction RandomMail::Compound(Restrictions& make, int depth, Table table)
{
    switch (Below(6))
    {
    case 0:
        return make.Not(Condition(make, depth - 1, table));
    case 1:
        return make.Comment(OneIn(4) ? std::vector<SRestriction>{}
                                     : std::vector{Condition(make, depth - 1, table)});
    case 2:
        return Sub(make, depth);
    case 3:
        return make.Any(Conditions(make, depth, table));
    default:
        return make.All(Conditions(make, depth, table));
    }
}

SRestriction RandomMail::Sub(Restrictions& make, int depth)
{
    if (OneIn(8))
        return make.Sub(PROP_TAG(PT_OBJECT, 0x6640), Condition(make, depth - 1, Table::messages));
    const bool onRecipients = OneIn(2);
    return make.Sub(onRecipients ? PR_MESSAGE_RECIPIENTS : PR_MESSAGE_ATTACHMENTS,
                    Condition(make, depth - 1, onRecipients ? Table::recipients : Table::attachments));
}

std::vector<SRestriction> RandomMail::Conditions(Restrictions& make, int depth, Table table)
{
    std::vector<SRestriction> conditions;
    for (int count = Below(4); count > 0; --count)
        conditions.push_back(Condition(make, depth - 1, table));
    return conditions;
}

RandomMail::Refused RandomMail::MalformedLeaf(Restrictions& make)
{
    const SPropValue number = Restrictions::Number(PR_MESSAGE_SIZE, 1);
    SRestriction hollow = Restrictions::Of(OneIn(2) ? RES_AND : RES_OR);
    hollow.res.resAnd.cRes = 2;
    SRestriction deep = make.Exist(PR_SUBJECT_W);
    for (int depth = 0; depth < 300; ++depth)
        deep = make.Not(deep);
    SPropValue unsupported = Restrictions::Number(PROP_TAG(PT_MV_LONG, 0x6650), 1);
    SPropValue noBytes = make.Bytes(PROP_TAG(PT_BINARY, 0x6614), {});
    noBytes.Value.bin = {3, nullptr};
    const Refused leaves[] = {
        {Restrictions::Of(99), MAPI_E_TOO_COMPLEX},
        {Restrictions::Of(RES_NOT), MAPI_E_INVALID_PARAMETER},
        {Restrictions::Of(RES_SUBRESTRICTION), MAPI_E_INVALID_PARAMETER},
        {Restrictions::Of(RES_PROPERTY), MAPI_E_INVALID_PARAMETER},
        {hollow, MAPI_E_INVALID_PARAMETER},
        {deep, MAPI_E_TOO_COMPLEX},
        {make.Property(RELOP_RE, PR_MESSAGE_SIZE, number), MAPI_E_TOO_COMPLEX},
        {make.Size(0xFFFFFFFF, PR_MESSAGE_SIZE, 1), MAPI_E_TOO_COMPLEX},
        {make.Compare(99, PR_MESSAGE_SIZE, PR_MESSAGE_FLAGS), MAPI_E_TOO_COMPLEX},
        {make.Compare(RELOP_EQ, PR_MESSAGE_SIZE, PR_SUBJECT_W), MAPI_E_INVALID_TYPE},
        {make.Property(RELOP_EQ, PR_SUBJECT_W, number), MAPI_E_INVALID_TYPE},
        {make.Property(RELOP_EQ, unsupported.ulPropTag, unsupported), MAPI_E_TYPE_NO_SUPPORT},
        {make.Property(RELOP_EQ, noBytes.ulPropTag, noBytes), MAPI_E_INVALID_PARAMETER},
        {make.Content(FL_SUBSTRING, PR_MESSAGE_SIZE, number), MAPI_E_TOO_COMPLEX},
        {make.BitMask(BMR_NEZ, PR_SUBJECT_W, 1), MAPI_E_INVALID_TYPE},
    };
    return OneOf(leaves);
}

RandomMail::Refused RandomMail::Malformed(Restrictions& make, int depth)
{
    Refused refused = MalformedLeaf(make);
    for (; depth > 0; --depth)
    {
        std::vector<SRestriction> conditions = Conditions(make, 2, Table::messages);
        conditions.insert(conditions.begin() + Below(static_cast<int>(conditions.size()) + 1),
                          refused.restriction);
        refused.restriction = OneIn(3)   ? make.Not(refused.restriction)
                              : OneIn(3) ? make.Sub(PR_MESSAGE_RECIPIENTS, refused.restriction)
                              : OneIn(2) ? make.Any(std::move(conditions))
                                         : make.All(std::move(conditions));
    }
    return refused;
}
