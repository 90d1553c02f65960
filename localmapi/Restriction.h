#pragma once

#include "localmapi/TableSource.h"

#include <windows.h>

#include <mapidefs.h>

#include <variant>

// A client's SRestriction, checked and copied, so that it outlives the client's.
class Restriction
{
public:
    // Throws MapiError: MAPI_E_TOO_COMPLEX for a kind or depth the store does not evaluate (RELOP_RE among
    // them), MAPI_E_INVALID_TYPE where a value's type is not its tag's, MAPI_E_INVALID_PARAMETER for a
    // restriction that is malformed.
    explicit Restriction(const SRestriction& restriction);

    // Which of the rows meet the restriction, in the order given. The rows are read in batches, only the
    // properties the restriction names.
    std::vector<std::int64_t> Filter(TableSource& source, std::span<const std::int64_t> rowIds) const;

private:
    struct Node;
    using Nodes = std::vector<Node>;

    // Which of a row's values a node looks at: an index into `tags`.
    using Column = std::size_t;

    struct And
    {
        Nodes inner;
    };
    struct Or
    {
        Nodes inner;
    };
    struct Not
    {
        Nodes inner;    // one
    };
    struct Content
    {
        ULONG fuzzyLevel;
        Column column;
        StoredValue part;
    };
    struct Property
    {
        ULONG relop;
        Column column;
        StoredValue value;
    };
    struct CompareProperties
    {
        ULONG relop;
        Column left;
        Column right;
    };
    struct BitMask
    {
        bool wantsBits;    // BMR_NEZ
        Column column;
        ULONG mask;
    };
    struct Size
    {
        ULONG relop;
        Column column;
        std::uint32_t tag;
        std::size_t size;
    };
    struct Exist
    {
        Column column;
    };
    struct SubObject
    {
        std::uint32_t tag;
        std::unique_ptr<const Restriction> inner;
    };
    struct Node
    {
        std::variant<And, Or, Not, Content, Property, CompareProperties, BitMask, Size, Exist, SubObject>
            test;
    };

    // One row under test.
    struct Row
    {
        TableSource& source;
        std::int64_t id;
        std::span<const StoredValue> values;
    };

    Restriction(const SRestriction& restriction, int depth);

    Node Compile(const SRestriction& restriction, int depth);
    Nodes CompileAll(const SRestriction* restrictions, ULONG count, int depth);
    Node CompileContent(const SContentRestriction& content);
    Node CompileProperty(const SPropertyRestriction& property);
    Node CompileCompareProperties(const SComparePropsRestriction& properties);
    Node CompileBitMask(const SBitMaskRestriction& bitMask);
    Column ColumnOf(std::uint32_t tag);

    bool Meets(const Row& row, const Node& node) const;
    bool MeetsBySubObject(const Row& row, const SubObject& subObject) const;

    std::vector<std::uint32_t> tags;    // filled while compiling
    std::unique_ptr<const Node> root;
};
