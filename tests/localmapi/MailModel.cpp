#include "tests/localmapi/MailModel.h"

#include "localmapi/TextConversion.h"

#include <windows.h>

#include <mapitags.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <optional>
#include <span>

namespace
{
struct Column
{
    ULONG tag;
    const char* name;
};

constexpr Column messageColumns[] = {{PR_SUBJECT_W, "subject"},
                                     {PR_SENDER_NAME_W, "sender_name"},
                                     {PR_MESSAGE_FLAGS, "message_flags"},
                                     {PR_MESSAGE_SIZE, "message_size"},
                                     {PR_IMPORTANCE, "importance"},
                                     {PR_CLIENT_SUBMIT_TIME, "client_submit_time"},
                                     {PR_MESSAGE_DELIVERY_TIME, "delivery_time"}};
constexpr Column textColumns[] = {{PR_TRANSPORT_MESSAGE_HEADERS_W, "headers"}, {PR_BODY_W, "body"}};
constexpr Column recipientColumns[] = {{PR_ROWID, "row_id"},
                                       {PR_RECIPIENT_TYPE, "type"},
                                       {PR_DISPLAY_NAME_W, "name"},
                                       {PR_ADDRTYPE_W, "address_type"},
                                       {PR_EMAIL_ADDRESS_W, "address"}};
constexpr Column attachmentColumns[] = {{PR_ATTACH_NUM, "number"},
                                        {PR_ATTACH_LONG_FILENAME_W, "file_name"},
                                        {PR_DISPLAY_NAME_W, "display_name"},
                                        {PR_ATTACH_MIME_TAG_W, "mime_tag"},
                                        {PR_ATTACH_SIZE, "size"}};

std::string Hex(const void* data, std::size_t size)
{
    std::string hex;
    char digits[3];
    for (const std::uint8_t byte : std::span(static_cast<const std::uint8_t*>(data), size))
    {
        std::snprintf(digits, sizeof digits, "%02X", byte);
        hex += digits;
    }
    return "x'" + hex + "'";
}

struct LiteralWriter
{
    std::string operator()(std::int64_t number) const
    {
        // SQL has no literal of the smallest number.
        return number == std::numeric_limits<std::int64_t>::min() ? "(-9223372036854775807 - 1)"
                                                                  : std::to_string(number);
    }
    std::string operator()(double real) const
    {
        if (std::isinf(real))
            return real < 0 ? "-9e999" : "9e999";
        char digits[40];
        std::snprintf(digits, sizeof digits, "CAST(%.17g AS REAL)", real);
        return digits;
    }
    std::string operator()(const std::u32string& text) const
    {
        const std::string utf8 = Utf8FromWide(WideOf(text).c_str());
        return "CAST(" + Hex(utf8.data(), utf8.size()) + " AS TEXT)";
    }
    std::string operator()(const ModelBytes& bytes) const { return Hex(bytes.data(), bytes.size()); }
};

std::string LiteralOf(const ModelValue& value)
{
    return std::visit(LiteralWriter(), value);
}

// A row with those of the values that have a column.
class RowWriter
{
public:
    RowWriter& Put(const char* column, const std::string& literal)
    {
        names += (names.empty() ? "" : ", ") + std::string(column);
        literals += (literals.empty() ? "" : ", ") + literal;
        return *this;
    }

    RowWriter& Put(std::span<const Column> columns, const ModelRow& values)
    {
        for (const Column& column : columns)
        {
            const auto found = values.find(column.tag);
            if (found != values.end())
                Put(column.name, LiteralOf(found->second));
        }
        return *this;
    }

    std::string InsertInto(const char* table) const
    {
        return "INSERT INTO " + std::string(table) + " (" + names + ") VALUES (" + literals + ");";
    }

private:
    std::string names;
    std::string literals;
};

bool HasColumn(ULONG tag)
{
    // Told by the message's flags.
    if (tag == PR_HASATTACH)
        return true;
    for (const std::span<const Column> columns : {std::span<const Column>(messageColumns), {textColumns}})
        for (const Column& column : columns)
            if (column.tag == tag)
                return true;
    return false;
}

std::string SqlFor(std::int64_t folderId, const ModelMessage& message)
{
    const std::string id = std::to_string(message.id);
    std::string sql = RowWriter()
                          .Put("id", id)
                          .Put("folder_id", std::to_string(folderId))
                          .Put("message_class", "'IPM.Note'")
                          .Put("display_to", "''")
                          .Put("display_cc", "''")
                          .Put("display_bcc", "''")
                          .Put(messageColumns, message.values)
                          .InsertInto("message");
    sql += RowWriter().Put("message_id", id).Put(textColumns, message.values).InsertInto("message_text");
    for (const auto& [tag, value] : message.values)
        if (!HasColumn(tag))
            sql += RowWriter()
                       .Put("message_id", id)
                       .Put("tag", std::to_string(tag))
                       .Put("value", LiteralOf(value))
                       .InsertInto("message_property");
    for (const ModelRow& recipient : message.recipients)
        sql += RowWriter().Put("message_id", id).Put(recipientColumns, recipient).InsertInto("recipient");
    for (const ModelRow& attachment : message.attachments)
        sql += RowWriter()
                   .Put("message_id", id)
                   .Put("method", "1")
                   .Put(attachmentColumns, attachment)
                   .InsertInto("attachment");
    return sql;
}
}    // namespace

std::string SqlFor(std::int64_t folderId, const std::vector<ModelMessage>& messages)
{
    std::string sql = "BEGIN;";
    for (const char* table : {"message", "message_text", "message_property", "recipient", "attachment"})
        sql += "DELETE FROM " + std::string(table) + ";";
    for (const ModelMessage& message : messages)
        sql += SqlFor(folderId, message);
    return sql + "COMMIT;";
}

std::wstring WideOf(const std::u32string& text)
{
    std::wstring wide;
    for (const char32_t character : text)
    {
        if (character < 0x10000)
        {
            wide += static_cast<wchar_t>(character);
            continue;
        }
        wide += static_cast<wchar_t>(0xD800 + ((character - 0x10000) >> 10));
        wide += static_cast<wchar_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
    }
    return wide;
}

std::u32string CharactersOf(const std::wstring& text)
{
    std::u32string characters;
    for (std::size_t at = 0; at < text.size(); ++at)
    {
        char32_t character = text[at];
        if (IS_HIGH_SURROGATE(text[at]) && at + 1 < text.size())
            character = 0x10000 + ((character - 0xD800) << 10) + (text[++at] - 0xDC00);
        characters += character;
    }
    return characters;
}
