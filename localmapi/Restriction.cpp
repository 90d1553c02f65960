#include "localmapi/Restriction.h"

#include "localmapi/Arguments.h"
#include "localmapi/PropertyConversion.h"
#include "localmapi/ValueComparison.h"

#include <algorithm>

namespace
{
// More than any client nests, and far from what the stack bears.
constexpr int deepest = 256;
constexpr std::size_t batchSize = 512;

ULONG CheckedRelop(ULONG relop)
{
    if (relop > RELOP_NE)
        throw MapiError(MAPI_E_TOO_COMPLEX);
    return relop;
}

// A value is compared with a property of its own type; either form of a text will do.
StoredValue ValueFor(std::uint32_t tag, const SPropValue& property)
{
    if (PROP_TYPE(StoredTag(tag)) != PROP_TYPE(StoredTag(property.ulPropTag)))
        throw MapiError(MAPI_E_INVALID_TYPE);
    return StoredValueOf(property);
}

bool IsInteger(std::uint32_t tag)
{
    const ULONG type = PROP_TYPE(tag);
    return type == PT_LONG || type == PT_I2 || type == PT_BOOLEAN || type == PT_I8;
}

template <typename... Tests>
struct Overloaded : Tests...
{
    using Tests::operator()...;
};
template <typename... Tests>
Overloaded(Tests...) -> Overloaded<Tests...>;
}    // namespace

Restriction::Restriction(const SRestriction& restriction) : Restriction(restriction, 0) {}

Restriction::Restriction(const SRestriction& restriction, int depth)
    : root(std::make_unique<const Node>(Compile(restriction, depth)))
{
}

Restriction::Node Restriction::Compile(const SRestriction& restriction, int depth)
{
    if (depth > deepest)
        throw MapiError(MAPI_E_TOO_COMPLEX);
    const auto& res = restriction.res;
    switch (restriction.rt)
    {
    case RES_AND:
        return {And{CompileAll(res.resAnd.lpRes, res.resAnd.cRes, depth)}};
    case RES_OR:
        return {Or{CompileAll(res.resOr.lpRes, res.resOr.cRes, depth)}};
    case RES_NOT:
        return {Not{CompileAll(res.resNot.lpRes, 1, depth)}};
    case RES_CONTENT:
        return CompileContent(res.resContent);
    case RES_PROPERTY:
        return CompileProperty(res.resProperty);
    case RES_COMPAREPROPS:
        return CompileCompareProperties(res.resCompareProps);
    case RES_BITMASK:
        return CompileBitMask(res.resBitMask);
    case RES_SIZE:
        return {Size{CheckedRelop(res.resSize.relop), ColumnOf(res.resSize.ulPropTag), res.resSize.ulPropTag,
                     res.resSize.cb}};
    case RES_EXIST:
        return {Exist{ColumnOf(res.resExist.ulPropTag)}};
    case RES_SUBRESTRICTION:
        return {SubObject{res.resSub.ulSubObject, std::unique_ptr<const Restriction>(
                                                      new Restriction(Given(res.resSub.lpRes), depth + 1))}};
    case RES_COMMENT:
        // A comment says nothing of the rows; without an inner restriction all meet it.
        return {And{CompileAll(res.resComment.lpRes, res.resComment.lpRes ? 1 : 0, depth)}};
    default:
        throw MapiError(MAPI_E_TOO_COMPLEX);
    }
}

Restriction::Nodes Restriction::CompileAll(const SRestriction* restrictions, ULONG count, int depth)
{
    Nodes nodes;
    for (ULONG index = 0; index < count; ++index)
        nodes.push_back(Compile((&Given(restrictions))[index], depth + 1));
    return nodes;
}

Restriction::Node Restriction::CompileContent(const SContentRestriction& content)
{
    const ULONG type = PROP_TYPE(StoredTag(content.ulPropTag));
    if (type != PT_UNICODE && type != PT_BINARY)
        throw MapiError(MAPI_E_TOO_COMPLEX);
    return {Content{content.ulFuzzyLevel, ColumnOf(content.ulPropTag),
                    ValueFor(content.ulPropTag, Given(content.lpProp))}};
}

Restriction::Node Restriction::CompileProperty(const SPropertyRestriction& property)
{
    return {Property{CheckedRelop(property.relop), ColumnOf(property.ulPropTag),
                     ValueFor(property.ulPropTag, Given(property.lpProp))}};
}

Restriction::Node Restriction::CompileCompareProperties(const SComparePropsRestriction& properties)
{
    if (PROP_TYPE(StoredTag(properties.ulPropTag1)) != PROP_TYPE(StoredTag(properties.ulPropTag2)))
        throw MapiError(MAPI_E_INVALID_TYPE);
    return {CompareProperties{CheckedRelop(properties.relop), ColumnOf(properties.ulPropTag1),
                              ColumnOf(properties.ulPropTag2)}};
}

Restriction::Node Restriction::CompileBitMask(const SBitMaskRestriction& bitMask)
{
    if (!IsInteger(bitMask.ulPropTag))
        throw MapiError(MAPI_E_INVALID_TYPE);
    return {BitMask{bitMask.relBMR == BMR_NEZ, ColumnOf(bitMask.ulPropTag), bitMask.ulMask}};
}

Restriction::Column Restriction::ColumnOf(std::uint32_t tag)
{
    const std::uint32_t stored = StoredTag(tag);
    const auto found = std::find(tags.begin(), tags.end(), stored);
    if (found != tags.end())
        return static_cast<Column>(found - tags.begin());
    tags.push_back(stored);
    return tags.size() - 1;
}

std::vector<std::int64_t> Restriction::Filter(TableSource& source, std::span<const std::int64_t> rowIds) const
{
    std::vector<std::int64_t> meeting;
    for (std::size_t start = 0; start < rowIds.size(); start += batchSize)
    {
        const auto batch = rowIds.subspan(start, std::min(batchSize, rowIds.size() - start));
        const std::vector<StoredValue> values =
            tags.empty() ? std::vector<StoredValue>() : source.ReadRows(batch, tags);
        for (std::size_t row = 0; row < batch.size(); ++row)
        {
            const std::span rowValues = std::span(values).subspan(row * tags.size(), tags.size());
            if (Meets({source, batch[row], rowValues}, *root))
                meeting.push_back(batch[row]);
        }
    }
    return meeting;
}

bool Restriction::Meets(const Row& row, const Node& node) const
{
    const auto meets = [&](const Node& inner) { return Meets(row, inner); };
    const auto valueOf = [&](Column column) -> const StoredValue& { return row.values[column]; };
    return std::visit(
        Overloaded{
            [&](const And& test) { return std::all_of(test.inner.begin(), test.inner.end(), meets); },
            [&](const Or& test) { return std::any_of(test.inner.begin(), test.inner.end(), meets); },
            [&](const Not& test) { return !meets(test.inner.front()); },
            [&](const Content& test)
            { return MatchesContent(valueOf(test.column), test.part, test.fuzzyLevel); },
            [&](const Property& test)
            { return StandsInRelation(valueOf(test.column), test.relop, test.value); },
            [&](const CompareProperties& test)
            { return StandsInRelation(valueOf(test.left), test.relop, valueOf(test.right)); },
            [&](const BitMask& test)
            {
                const auto* const number = std::get_if<std::int64_t>(&valueOf(test.column));
                return number && ((*number & test.mask) != 0) == test.wantsBits;
            },
            [&](const Size& test)
            {
                const StoredValue& value = valueOf(test.column);
                const auto size = static_cast<std::int64_t>(SizeOfValue(value, test.tag));
                return !std::holds_alternative<std::monostate>(value) &&
                       StandsInRelation(size, test.relop, static_cast<std::int64_t>(test.size));
            },
            [&](const Exist& test) { return !std::holds_alternative<std::monostate>(valueOf(test.column)); },
            [&](const SubObject& test) { return MeetsBySubObject(row, test); },
        },
        node.test);
}

bool Restriction::MeetsBySubObject(const Row& row, const SubObject& subObject) const
{
    const std::unique_ptr<TableSource> subTable = row.source.OpenSubTable(row.id, subObject.tag);
    return subTable && !subObject.inner->Filter(*subTable, subTable->ReadRowIds()).empty();
}
