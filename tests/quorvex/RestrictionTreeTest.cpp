#include "quorvex/RestrictionTree.h"

#include "quorvex/AutomationDate.h"
#include "quorvex/MapiError.h"
#include "quorvex/SafeArrays.h"

#include <windows.h>

#include <mapicode.h>
#include <mapitags.h>

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>

namespace
{
std::shared_ptr<RestrictionNode> PropertyNode(ULONG tag, const _variant_t& value)
{
    auto node = MakeNode(RES_PROPERTY, nullptr);
    node->tag = tag;
    TakeValue(*node, value);
    return node;
}

HRESULT FailureOf(const RestrictionNode& node)
{
    try
    {
        ToRestriction(node);
        return S_OK;
    }
    catch (const MapiError& error)
    {
        EXPECT_FALSE(error.Description().empty());
        return error.Code();
    }
}
}    // namespace

TEST(RestrictionTree, ReadsAStringTagInItsUnicodeForm)
{
    const Restriction restriction = ToRestriction(*PropertyNode(PR_SUBJECT_A, L"Minutes"));

    EXPECT_EQ(restriction.tag, PR_SUBJECT_W);
    EXPECT_EQ(restriction.value, RestrictionValue(std::wstring(L"Minutes")));
}

TEST(RestrictionTree, TakesNoValueForEmptyText)
{
    EXPECT_EQ(ToRestriction(*PropertyNode(PR_SUBJECT_W, _variant_t())).value,
              RestrictionValue(std::wstring()));
}

TEST(RestrictionTree, TakesADateForTheInstantThatItIsHere)
{
    constexpr DATE noon = 45000.5;
    const FILETIME utc = UtcFromLocalDate(noon);

    const Restriction restriction =
        ToRestriction(*PropertyNode(PR_CLIENT_SUBMIT_TIME, _variant_t(noon, VT_DATE)));

    EXPECT_EQ(restriction.value, RestrictionValue(static_cast<std::int64_t>(
                                     std::uint64_t{utc.dwHighDateTime} << 32 | utc.dwLowDateTime)));
}

TEST(RestrictionTree, ConvertsValuesAsAutomationDoes)
{
    EXPECT_EQ(ToRestriction(*PropertyNode(PR_IMPORTANCE, L"-2")).value, RestrictionValue(std::int64_t{-2}));
    EXPECT_EQ(ToRestriction(*PropertyNode(PR_HASATTACH, _variant_t(true))).value,
              RestrictionValue(std::int64_t{1}));
    EXPECT_EQ(ToRestriction(*PropertyNode(PR_SUBJECT_W, 17L)).value, RestrictionValue(std::wstring(L"17")));
}

TEST(RestrictionTree, TakesBinaryAsBytesOrAsHexadecimalText)
{
    SafeArray array = MakeArray(VT_UI1, 2);
    LONG place = 1;
    std::uint8_t byte = 0xFE;
    ASSERT_EQ(SafeArrayPutElement(array.get(), &place, &byte), S_OK);
    const RestrictionValue expected(std::vector<std::uint8_t>{0, 0xFE});

    EXPECT_EQ(ToRestriction(*PropertyNode(PR_SEARCH_KEY, ArrayVariant(std::move(array), VT_UI1))).value,
              expected);
    EXPECT_EQ(ToRestriction(*PropertyNode(PR_SEARCH_KEY, L"00fe")).value, expected);
}

TEST(RestrictionTree, RefusesAValueThatDoesNotSuitItsProperty)
{
    EXPECT_EQ(FailureOf(*PropertyNode(PR_CLIENT_SUBMIT_TIME, L"not a date")), E_INVALIDARG);
    EXPECT_EQ(FailureOf(*PropertyNode(PR_SEARCH_KEY, L"0")), E_INVALIDARG);
}

TEST(RestrictionTree, RefusesWhatCannotBeCompared)
{
    auto pattern = PropertyNode(PR_SUBJECT_W, L"M.*");
    pattern->relop = RELOP_RE;
    auto content = MakeNode(RES_CONTENT, nullptr);
    content->tag = PR_IMPORTANCE;
    auto sub = MakeNode(RES_SUBRESTRICTION, nullptr);
    sub->tag = PR_SUBJECT_W;

    EXPECT_EQ(FailureOf(*pattern), E_INVALIDARG);
    EXPECT_EQ(FailureOf(*content), E_INVALIDARG);
    EXPECT_EQ(FailureOf(*sub), E_INVALIDARG);
    EXPECT_EQ(FailureOf(*PropertyNode(0, L"no tag")), E_INVALIDARG);
    EXPECT_EQ(FailureOf(*PropertyNode(PR_MESSAGE_ATTACHMENTS, L"an object")), E_INVALIDARG);
}

TEST(RestrictionTree, KnowsNoOtherKinds)
{
    for (const ULONG kind :
         std::initializer_list<ULONG>{RES_COMPAREPROPS, RES_BITMASK, RES_SIZE, RES_COMMENT, 99})
        EXPECT_THROW(MakeNode(kind, nullptr), MapiError) << kind;
}

TEST(RestrictionTree, RefusesToGrowTooDeep)
{
    auto node = MakeNode(RES_AND, nullptr);

    const auto grow = [&]
    {
        for (int level = 0; level < 100'000; ++level)
            node = MakeNode(RES_AND, node.get());
    };

    EXPECT_THROW(grow(), MapiError);
}
