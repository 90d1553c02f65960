#include "tests/engine/ScanFixture.h"

namespace
{
// How many calls a search makes over folders with so many messages each, no two of them alike.
std::size_t CallsOfSearch(const std::vector<int>& messageCounts)
{
    class Search : public ScanFixture
    {
        void TestBody() override {}

    public:
        std::size_t Calls(const std::vector<int>& counts)
        {
            int number = 0;
            for (const int count : counts)
            {
                FakeFolder& folder = store.root.AddFolder(L"Folder " + std::to_wstring(number));
                for (int i = 0; i < count; ++i)
                    folder.AddMessage({.subject = L"Subject " + std::to_wstring(number++)});
            }
            RunSearch();
            return store.log.lines.size();
        }
    };
    return Search().Calls(messageCounts);
}

// What a store is asked is what a search costs, however fast it answers.
TEST(CallsOfASearch, AreAFixedNumberForEachMessage)
{
    // The message and six of its values; of its folder four values, the table, its filter with three
    // conditions of four calls each, the columns, the search; and the message itself as the one row found.
    constexpr std::size_t itsValues = 7;
    constexpr std::size_t itsFolder = 4 + 4 + 3 * 4 + 1 + 1;
    constexpr std::size_t itsRow = 2;

    for (const int count : {1, 2, 10, 40})
        EXPECT_EQ(CallsOfSearch({count + 1}) - CallsOfSearch({count}), itsValues + itsFolder + itsRow)
            << count;
}

TEST(CallsOfASearch, AreAFixedNumberForEachMessageAndLaterFolder)
{
    constexpr std::size_t laterFolder = 4 + 4 + 3 * 4 + 1 + 1;

    const std::size_t inTheLast = CallsOfSearch({3, 3, 3, 4}) - CallsOfSearch({3, 3, 3, 3});
    const std::size_t inTheFirst = CallsOfSearch({4, 3, 3, 3}) - CallsOfSearch({3, 3, 3, 3});

    EXPECT_EQ(inTheFirst - inTheLast, 3 * laterFolder);
}
}    // namespace
