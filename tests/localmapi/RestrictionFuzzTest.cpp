// Random mail in a store, random restrictions on its folder's table, against a plain walk over the same mail.
#include "tests/FuzzSeeds.h"
#include "tests/localmapi/PlainWalk.h"
#include "tests/localmapi/RandomMail.h"
#include "tests/localmapi/StoreObjects.h"

#include <algorithm>
#include <cstdio>

namespace
{
constexpr int restrictionsASeed = 100;
constexpr int deepest = 4;
constexpr std::size_t mostRowsToSeek = 40;

using Numbers = std::vector<LONG>;

class RestrictionFuzz : public StoreObjects
{
protected:
    // Puts the seed's mail into the Inbox and opens a table of it.
    void Begin(std::uint32_t seed)
    {
        random = RandomMail(seed);
        messages = random.Messages();
        file.Run(SqlFor(folder_id::inbox, messages));
        table.Reset();
        ASSERT_EQ(OpenFolder(folder_id::inbox)->GetContentsTable(0, &table), S_OK);
    }

    Numbers Walk(const SRestriction& restriction) const
    {
        Numbers numbers;
        for (std::size_t number = 0; number < messages.size(); ++number)
            if (Meets(messages[number], restriction))
                numbers.push_back(static_cast<LONG>(number));
        return numbers;
    }

    Numbers Rows() { return ReadLongColumn(*table.Get(), RandomMail::numberTag); }

    // The last message first, or in the folder's order.
    void Sort(bool backwards)
    {
        SizedSSortOrderSet(1, order) = {
            backwards ? 1u : 0u, 0, 0, {{RandomMail::numberTag, TABLE_SORT_DESCEND}}};
        ASSERT_EQ(table->SortTable(reinterpret_cast<SSortOrderSet*>(&order), 0), S_OK);
    }

    // The places of the rows that FindRow finds, from the first row on.
    std::vector<ULONG> FindAll(SRestriction& restriction)
    {
        std::vector<ULONG> places;
        EXPECT_EQ(table->SeekRow(BOOKMARK_BEGINNING, 0, nullptr), S_OK);
        while (table->FindRow(&restriction, BOOKMARK_CURRENT, 0) == S_OK)
        {
            ULONG numerator = 0;
            ULONG denominator = 0;
            table->QueryPosition(&places.emplace_back(), &numerator, &denominator);
            table->SeekRow(BOOKMARK_CURRENT, 1, nullptr);
        }
        return places;
    }

    // Where the rows that meet `restriction` stand among `rows`.
    std::vector<ULONG> PlacesAmong(const Numbers& rows, const SRestriction& restriction) const
    {
        std::vector<ULONG> places;
        for (std::size_t place = 0; place < rows.size(); ++place)
            if (Meets(messages[static_cast<std::size_t>(rows[place])], restriction))
                places.push_back(static_cast<ULONG>(place));
        return places;
    }

    // One restriction on the table, and another that is sought in what it leaves.
    void CompareOnce()
    {
        Restrictions make;
        SRestriction restriction = random.Restriction(make, deepest);
        Numbers expected = Walk(restriction);
        const bool backwards = random.OneIn(4);
        if (backwards)
            std::ranges::reverse(expected);
        Sort(backwards);

        ASSERT_EQ(table->Restrict(&restriction, 0), S_OK);

        ASSERT_EQ(Rows(), expected);
        rowsFound += expected.size();
        if (expected.size() > mostRowsToSeek)
            return;
        SRestriction sought = random.Restriction(make, 2);
        ASSERT_EQ(FindAll(sought), PlacesAmong(expected, sought));
    }

    RandomMail random{0};
    std::vector<ModelMessage> messages;
    ComPtr<IMAPITable> table;
    std::size_t rowsFound = 0;
};

TEST_F(RestrictionFuzz, ShowsAndFindsExactlyTheRowsOfAPlainWalk)
{
    FuzzSeeds seeds;
    int restrictions = 0;
    do
    {
        SCOPED_TRACE(seeds.Name());
        Begin(seeds.Current());
        for (int count = 0; count < restrictionsASeed && !HasFailure(); ++count, ++restrictions)
        {
            SCOPED_TRACE("restriction " + std::to_string(count));
            CompareOnce();
        }
    } while (!HasFailure() && seeds.Next());

    std::printf("%d restrictions, %zu rows found\n", restrictions, rowsFound);
    EXPECT_GT(rowsFound, static_cast<std::size_t>(restrictions) / 2);    // else they were of no use
    table.Reset();
}

TEST_F(RestrictionFuzz, RefusesWhatIsMalformedAndKeepsItsRows)
{
    for (std::uint32_t seed = 1; seed <= 20; ++seed)
    {
        SCOPED_TRACE(seed);
        Begin(seed);
        Restrictions make;
        SRestriction restriction = random.Restriction(make, deepest);
        ASSERT_EQ(table->Restrict(&restriction, 0), S_OK);
        for (int count = 0; count < 20; ++count)
        {
            auto malformed = random.Malformed(make, count % 5);
            EXPECT_EQ(table->Restrict(&malformed.restriction, 0), malformed.result);
            EXPECT_EQ(table->FindRow(&malformed.restriction, BOOKMARK_BEGINNING, 0), malformed.result);
        }

        EXPECT_EQ(Rows(), Walk(restriction));
    }
    table.Reset();
}
}    // namespace
