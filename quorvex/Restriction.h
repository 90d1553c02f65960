#pragma once

#include <windows.h>

#include <mapidefs.h>

#include <compare>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

// A text that its copies share: bodies are long, and each is looked for in many folders.
class SharedText
{
public:
    SharedText(std::wstring characters) : text(std::make_shared<const std::wstring>(std::move(characters))) {}

    const std::wstring& operator*() const noexcept { return *text; }
    bool operator==(const SharedText& other) const noexcept { return *text == *other.text; }

private:
    std::shared_ptr<const std::wstring> text;
};

// Nothing; text; an integer, a boolean (0 or 1) or a time (FILETIME ticks, UTC) as a number; binary.
using RestrictionValue = std::variant<std::monostate, SharedText, std::int64_t, std::vector<std::uint8_t>>;

// What the messages of a search have to meet: MAPI's restrictions as plain data. Text tags are in their
// PT_UNICODE form, and `value` is of the kind that the tag's type asks for.
struct Restriction
{
    ULONG kind = RES_AND;                   // RES_AND, RES_OR, RES_NOT, RES_CONTENT, RES_PROPERTY, RES_EXIST,
                                            // RES_SUBRESTRICTION
    ULONG tag = 0;                          // of the property; of the table for RES_SUBRESTRICTION
    ULONG relop = RELOP_EQ;                 // RES_PROPERTY: RELOP_LT to RELOP_NE
    ULONG fuzzyLevel = FL_FULLSTRING;       // RES_CONTENT
    RestrictionValue value{};               // RES_PROPERTY and RES_CONTENT
    std::vector<Restriction> children{};    // of RES_AND and RES_OR; RES_NOT: not all of them are met;
                                            // RES_SUBRESTRICTION: each is met by some row of that table
};

// A text or binary value by which messages can be found: a property, as it is or without regard to case.
struct ColumnKey
{
    ULONG tag;
    bool ignoresCase;

    auto operator<=>(const ColumnKey&) const = default;
};

// The column that a condition wants one certain value in; nothing when it is another kind of condition.
std::optional<ColumnKey> EqualityColumn(const Restriction& condition);

bool IsTextTag(ULONG tag) noexcept;
bool IsNumberTag(ULONG tag) noexcept;    // integers, booleans and times
bool IsBinaryTag(ULONG tag) noexcept;

// A value of one of the number types as a number; nothing for any other.
std::optional<std::int64_t> NumberOf(const SPropValue& value) noexcept;
