// Random rows, random restrictions: a table has to show the rows that a plain walk finds. TQODR_FUZZ_SEED=N
// makes those of that seed again.
#include "tests/localmapi/Restrictions.h"
#include "tests/localmapi/SampleTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <random>

namespace
{
constexpr int restrictionsASeed = 400;
constexpr ULONG attachmentName = PR_ATTACH_LONG_FILENAME_W;
// What a row has besides its subject and size, or has not.
constexpr ULONG optionalTag = PR_IMPORTANCE;

// One row as the walk sees it: the sample itself, or one of its attachments.
struct WalkedRow
{
    const SampleRow* sample = nullptr;
    const std::string* attachment = nullptr;
};

const std::string* TextIn(const WalkedRow& row, ULONG tag)
{
    if (row.attachment)
        return tag == attachmentName ? row.attachment : nullptr;
    return tag == PR_SUBJECT_W ? &row.sample->subject : nullptr;
}

std::optional<std::int64_t> NumberIn(const WalkedRow& row, ULONG tag)
{
    if (row.attachment)
        return std::nullopt;
    if (tag == PR_MESSAGE_SIZE)
        return row.sample->size;
    const auto more = row.sample->more.find(tag);
    if (more == row.sample->more.end())
        return std::nullopt;
    return std::get<std::int64_t>(more->second);
}

template <class T>
bool Holds(const T& left, ULONG relop, const T& right)
{
    const bool holds[] = {left<right, left <= right, left> right, left >= right, left == right,
                          left != right};
    return holds[relop];
}

// The values here are ASCII, where every way of folding agrees.
std::string Plain(const wchar_t* text, bool folded)
{
    std::string plain;
    for (; *text; ++text)
        plain += static_cast<char>(folded && *text >= L'A' && *text <= L'Z' ? *text + 32 : *text);
    return plain;
}

std::string Folded(const std::string& text, bool folded)
{
    return Plain(std::wstring(text.begin(), text.end()).c_str(), folded);
}

bool MeetsContent(const WalkedRow& row, const SContentRestriction& content)
{
    const std::string* const found = TextIn(row, content.ulPropTag);
    if (!found)
        return false;
    const bool folded = (content.ulFuzzyLevel & (FL_IGNORECASE | FL_LOOSE)) != 0;
    const std::string text = Folded(*found, folded);
    const std::string part = Plain(content.lpProp->Value.lpszW, folded);
    switch (content.ulFuzzyLevel & 0xFFFF)
    {
    case FL_PREFIX:
        return text.substr(0, part.size()) == part;
    case FL_SUBSTRING:
        return text.find(part) != std::string::npos;
    default:
        return text == part;
    }
}

bool MeetsProperty(const WalkedRow& row, const SPropertyRestriction& property)
{
    if (PROP_TYPE(property.ulPropTag) == PT_UNICODE)
    {
        const std::string* const text = TextIn(row, property.ulPropTag);
        return text && Holds(*text, property.relop, Plain(property.lpProp->Value.lpszW, false));
    }
    const auto number = NumberIn(row, property.ulPropTag);
    return number && Holds(*number, property.relop, std::int64_t{property.lpProp->Value.l});
}

bool Exists(const WalkedRow& row, ULONG tag)
{
    return PROP_TYPE(tag) == PT_UNICODE ? TextIn(row, tag) != nullptr : NumberIn(row, tag).has_value();
}

bool MeetsSize(const WalkedRow& row, const SSizeRestriction& size)
{
    const std::string* const text = TextIn(row, size.ulPropTag);
    if (PROP_TYPE(size.ulPropTag) == PT_UNICODE)
        return text && Holds<std::size_t>((text->size() + 1) * sizeof(wchar_t), size.relop, size.cb);
    return NumberIn(row, size.ulPropTag) && Holds<std::size_t>(sizeof(LONG), size.relop, size.cb);
}

bool Meets(const WalkedRow& row, const SRestriction& restriction);

bool MeetsSubObject(const WalkedRow& row, const SSubRestriction& sub)
{
    return !row.attachment && sub.ulSubObject == PR_MESSAGE_ATTACHMENTS &&
           std::ranges::any_of(row.sample->attachmentNames,
                               [&](const std::string& name) {
                                   return Meets({row.sample, &name}, *sub.lpRes);
                               });
}

bool MeetsBits(const WalkedRow& row, const SBitMaskRestriction& bits)
{
    const auto number = NumberIn(row, bits.ulPropTag);
    return number && ((*number & bits.ulMask) != 0) == (bits.relBMR == BMR_NEZ);
}

bool MeetsComparison(const WalkedRow& row, const SComparePropsRestriction& compared)
{
    const auto left = NumberIn(row, compared.ulPropTag1);
    const auto right = NumberIn(row, compared.ulPropTag2);
    return left && right && Holds(*left, compared.relop, *right);
}

bool Meets(const WalkedRow& row, const SRestriction& restriction)
{
    const auto& res = restriction.res;
    const auto meets = [&](const SRestriction& inner) { return Meets(row, inner); };
    switch (restriction.rt)
    {
    case RES_AND:
        return std::all_of(res.resAnd.lpRes, res.resAnd.lpRes + res.resAnd.cRes, meets);
    case RES_OR:
        return std::any_of(res.resOr.lpRes, res.resOr.lpRes + res.resOr.cRes, meets);
    case RES_NOT:
        return !meets(*res.resNot.lpRes);
    case RES_CONTENT:
        return MeetsContent(row, res.resContent);
    case RES_PROPERTY:
        return MeetsProperty(row, res.resProperty);
    case RES_EXIST:
        return Exists(row, res.resExist.ulPropTag);
    case RES_SIZE:
        return MeetsSize(row, res.resSize);
    case RES_BITMASK:
        return MeetsBits(row, res.resBitMask);
    case RES_COMPAREPROPS:
        return MeetsComparison(row, res.resCompareProps);
    default:
        return MeetsSubObject(row, res.resSub);
    }
}

class RandomTable
{
public:
    explicit RandomTable(unsigned seed) : engine(seed) {}

    std::vector<SampleRow> Rows()
    {
        std::vector<SampleRow> rows(static_cast<std::size_t>(Below(12)));
        for (SampleRow& row : rows)
        {
            row.subject = Text();
            row.size = Below(5) - 2;
            if (OneIn(2))
                row.more.emplace(optionalTag, std::int64_t{Below(4) - 1});
            for (int count = Below(3); count > 0; --count)
                row.attachmentNames.push_back(Text());
        }
        return rows;
    }

    SRestriction Condition(Restrictions& make, int depth, bool onAttachments)
    {
        const ULONG textTag = onAttachments ? attachmentName : PR_SUBJECT_W;
        const ULONG numberTag = OneIn(2) ? PR_MESSAGE_SIZE : optionalTag;
        const ULONG relop = static_cast<ULONG>(Below(6));
        const std::string text = Text();
        const SPropValue value = make.Text(textTag, std::wstring(text.begin(), text.end()).c_str());
        switch (Below(depth > 0 ? 11 : 7))
        {
        case 0:
            return make.Property(relop, textTag, value);
        case 1:
            return make.Property(relop, numberTag, Restrictions::Number(numberTag, Below(5) - 2));
        case 2:
            return make.Size(relop, OneIn(2) ? textTag : numberTag, static_cast<ULONG>(Below(7)));
        case 3:
            return make.BitMask(OneIn(2) ? BMR_NEZ : BMR_EQZ, numberTag, static_cast<ULONG>(Below(4)));
        case 4:
            return make.Exist(OneIn(2) ? textTag : numberTag);
        case 5:
            return make.Compare(relop, PR_MESSAGE_SIZE, optionalTag);
        case 6:
            return make.Content(static_cast<ULONG>(Below(3)) | (OneIn(2) ? FL_IGNORECASE : 0), textTag,
                                value);
        case 7:
            return make.Not(Condition(make, depth - 1, onAttachments));
        case 8:
            return make.Sub(OneIn(4) ? PR_MESSAGE_RECIPIENTS : PR_MESSAGE_ATTACHMENTS,
                            Condition(make, depth - 1, true));
        case 9:
            return make.Any(Conditions(make, depth, onAttachments));
        default:
            return make.All(Conditions(make, depth, onAttachments));
        }
    }

private:
    std::vector<SRestriction> Conditions(Restrictions& make, int depth, bool onAttachments)
    {
        std::vector<SRestriction> conditions;
        for (int count = Below(4); count > 0; --count)
            conditions.push_back(Condition(make, depth - 1, onAttachments));
        return conditions;
    }

    // Few, so that texts meet.
    std::string Text()
    {
        constexpr const char* texts[] = {"", "a", "A", "ab", "Ab", "ba", "b"};
        return texts[Below(static_cast<int>(std::size(texts)))];
    }

    int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(engine); }
    bool OneIn(int count) { return Below(count) == 0; }

    std::mt19937 engine;
};

std::vector<unsigned> Seeds()
{
    if (const char* seed = std::getenv("TQODR_FUZZ_SEED"))
        return {static_cast<unsigned>(std::strtoul(seed, nullptr, 10))};
    return {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
}

class RestrictionProperty : public testing::TestWithParam<unsigned>
{
};
}    // namespace

TEST_P(RestrictionProperty, ShowsExactlyTheRowsOfAPlainWalk)
{
    RandomTable random(GetParam());
    std::size_t rowsFound = 0;
    for (int count = 0; count < restrictionsASeed; ++count)
    {
        const std::vector<SampleRow> rows = random.Rows();
        Restrictions make;
        SRestriction restriction = random.Condition(make, 4, false);
        Texts expected;
        for (const SampleRow& row : rows)
            if (Meets({&row}, restriction))
                expected.emplace_back(row.subject.begin(), row.subject.end());

        const auto table = MakeSampleTable(rows);
        ASSERT_EQ(table->Restrict(&restriction, 0), S_OK) << "restriction " << count;

        ASSERT_EQ(ReadSubjects(*table.Get()), expected) << "restriction " << count;
        rowsFound += expected.size();
    }
    EXPECT_GT(rowsFound, 200u);    // else the restrictions were of no use
}

INSTANTIATE_TEST_SUITE_P(RandomTables, RestrictionProperty, testing::ValuesIn(Seeds()));
