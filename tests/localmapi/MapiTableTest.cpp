#include "localmapi/MapiTable.h"

#include "localmapi/ModuleCount.h"
#include "tests/localmapi/SampleTable.h"

#include <mapicode.h>
#include <mapiguid.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace
{
using Microsoft::WRL::ComPtr;

template <std::size_t count>
struct TagArray
{
    ULONG cValues = count;
    ULONG tags[count];

    SPropTagArray* get() { return reinterpret_cast<SPropTagArray*>(this); }
};

SRestriction SubjectIs(SPropValue& value, wchar_t* subject)
{
    value = {};
    value.ulPropTag = PR_SUBJECT_W;
    value.Value.lpszW = subject;
    SRestriction restriction = {};
    restriction.rt = RES_PROPERTY;
    restriction.res.resProperty = {RELOP_EQ, PR_SUBJECT_W, &value};
    return restriction;
}

class MapiTable : public testing::Test
{
protected:
    HRESULT Find(const wchar_t* subject, BOOKMARK origin, ULONG flags = 0)
    {
        std::wstring text = subject;
        SPropValue value;
        SRestriction restriction = SubjectIs(value, text.data());
        return table->FindRow(&restriction, origin, flags);
    }

    HRESULT Restrict(const wchar_t* subject)
    {
        std::wstring text = subject;
        SPropValue value;
        SRestriction restriction = SubjectIs(value, text.data());
        return table->Restrict(&restriction, 0);
    }

    HRESULT Sort(std::vector<SSortOrder> keys)
    {
        SizedSSortOrderSet(4, set) = {static_cast<ULONG>(keys.size()), 0, 0, {}};
        std::copy(keys.begin(), keys.end(), set.aSort);
        return table->SortTable(reinterpret_cast<SSortOrderSet*>(&set), 0);
    }

    ULONG Position()
    {
        ULONG row = 0;
        ULONG numerator = 0;
        ULONG denominator = 0;
        EXPECT_EQ(table->QueryPosition(&row, &numerator, &denominator), S_OK);
        return row;
    }

    ComPtr<IMAPITable> table = MakeSubjectTable({"a", "b", "c", "b", "d"});
};
}    // namespace

TEST_F(MapiTable, AnswersTheInterfaceItHasAndNoOther)
{
    ComPtr<IMAPITable> sameTable;
    ComPtr<IUnknown> property;

    EXPECT_EQ(table->QueryInterface(IID_IMAPITable, &sameTable), S_OK);
    EXPECT_EQ(table->QueryInterface(IID_IMAPIProp, &property), E_NOINTERFACE);
    EXPECT_EQ(sameTable, table);
}

TEST_F(MapiTable, LeavesTheModuleCountAsItWas)
{
    const long before = ModuleCount::Get();

    MakeSubjectTable({"x"});

    EXPECT_EQ(ModuleCount::Get(), before);
}

TEST_F(MapiTable, ReadsOnFromRowToRowUntilTheEnd)
{
    EXPECT_EQ(ReadSubjects(*table.Get(), 2), (Texts{L"a", L"b"}));
    EXPECT_EQ(ReadSubjects(*table.Get(), 2), (Texts{L"c", L"b"}));
    EXPECT_EQ(ReadSubjects(*table.Get(), 2), (Texts{L"d"}));
    EXPECT_EQ(ReadSubjects(*table.Get(), 2), Texts{});
}

TEST_F(MapiTable, StaysWhenToldNotToAdvance)
{
    EXPECT_EQ(ReadSubjects(*table.Get(), 2, TBL_NOADVANCE), (Texts{L"a", L"b"}));
    EXPECT_EQ(ReadSubjects(*table.Get(), 1), (Texts{L"a"}));
}

TEST_F(MapiTable, ReadsTheRowsBeforeThePositionForANegativeCount)
{
    table->SeekRow(BOOKMARK_END, 0, nullptr);

    EXPECT_EQ(ReadSubjects(*table.Get(), -2), (Texts{L"b", L"d"}));
    EXPECT_EQ(Position(), 3u);
    EXPECT_EQ(ReadSubjects(*table.Get(), -10), (Texts{L"a", L"b", L"c"}));
    EXPECT_EQ(Position(), 0u);
}

TEST_F(MapiTable, GivesExactlyTheColumnsAskedForInTheirOrder)
{
    table = MakeSampleTable({{"a", 12}});
    TagArray<3> columns{.tags = {PR_MESSAGE_SIZE, PR_SUBJECT_A, PR_SENDER_NAME_W}};

    ASSERT_EQ(table->SetColumns(columns.get(), 0), S_OK);
    const RowSet rows = QueryRows(*table.Get(), 1);

    ASSERT_TRUE(rows);
    ASSERT_EQ(rows->aRow[0].cValues, 3u);
    const SPropValue* const values = rows->aRow[0].lpProps;
    EXPECT_EQ(values[0].ulPropTag, PR_MESSAGE_SIZE);
    EXPECT_EQ(values[0].Value.l, 12);
    EXPECT_EQ(values[1].ulPropTag, PR_SUBJECT_A);
    EXPECT_STREQ(values[1].Value.lpszA, "a");
    EXPECT_EQ(values[2].ulPropTag, CHANGE_PROP_TYPE(PR_SENDER_NAME_W, PT_ERROR));
    EXPECT_EQ(values[2].Value.err, MAPI_E_NOT_FOUND);
}

TEST_F(MapiTable, FindsTheTypeOfAColumnLeftOpen)
{
    TagArray<1> columns{.tags = {CHANGE_PROP_TYPE(PR_SUBJECT_W, PT_UNSPECIFIED)}};

    ASSERT_EQ(table->SetColumns(columns.get(), 0), S_OK);
    const RowSet rows = QueryRows(*table.Get(), 1);

    ASSERT_TRUE(rows);
    EXPECT_EQ(rows->aRow[0].lpProps[0].ulPropTag, PR_SUBJECT_W);
}

TEST_F(MapiTable, TellsItsColumns)
{
    TagArray<1> columns{.tags = {PR_SENDER_NAME_W}};
    table->SetColumns(columns.get(), 0);
    SPropTagArray* set = nullptr;
    SPropTagArray* all = nullptr;

    ASSERT_EQ(table->QueryColumns(0, &set), S_OK);
    ASSERT_EQ(table->QueryColumns(TBL_ALL_COLUMNS, &all), S_OK);
    const MapiBuffer<SPropTagArray> setOwner(set);
    const MapiBuffer<SPropTagArray> allOwner(all);

    EXPECT_EQ(set->cValues, 1u);
    EXPECT_EQ(set->aulPropTag[0], PR_SENDER_NAME_W);
    EXPECT_EQ(all->cValues, 2u);
}

TEST_F(MapiTable, RefusesAnEmptyOrMissingSetOfColumns)
{
    TagArray<1> none{.cValues = 0, .tags = {}};

    EXPECT_EQ(table->SetColumns(none.get(), 0), MAPI_E_INVALID_PARAMETER);
    EXPECT_EQ(table->SetColumns(nullptr, 0), MAPI_E_INVALID_PARAMETER);
}

TEST_F(MapiTable, RefusesFlagsItDoesNotKnow)
{
    TagArray<1> columns{.tags = {PR_SUBJECT_W}};
    SRowSet* rows = nullptr;
    ULONG count = 0;

    EXPECT_EQ(table->SetColumns(columns.get(), 0x40), MAPI_E_UNKNOWN_FLAGS);
    EXPECT_EQ(table->QueryRows(1, 0x40, &rows), MAPI_E_UNKNOWN_FLAGS);
    EXPECT_EQ(table->GetRowCount(0x40, &count), MAPI_E_UNKNOWN_FLAGS);
}

TEST_F(MapiTable, RefusesNullPointersWithoutFalling)
{
    EXPECT_EQ(table->QueryRows(1, 0, nullptr), MAPI_E_INVALID_PARAMETER);
    EXPECT_EQ(table->QueryColumns(0, nullptr), MAPI_E_INVALID_PARAMETER);
    EXPECT_EQ(table->GetRowCount(0, nullptr), MAPI_E_INVALID_PARAMETER);
    EXPECT_EQ(table->QueryPosition(nullptr, nullptr, nullptr), MAPI_E_INVALID_PARAMETER);
    EXPECT_EQ(table->FindRow(nullptr, BOOKMARK_BEGINNING, 0), MAPI_E_INVALID_PARAMETER);
    EXPECT_EQ(table->SortTable(nullptr, 0), MAPI_E_INVALID_PARAMETER);
    EXPECT_EQ(table->CreateBookmark(nullptr), MAPI_E_INVALID_PARAMETER);
}

TEST_F(MapiTable, CountsItsRows)
{
    ULONG all = 0;
    ULONG restricted = 0;

    table->GetRowCount(0, &all);
    Restrict(L"b");
    table->GetRowCount(0, &restricted);

    EXPECT_EQ(all, 5u);
    EXPECT_EQ(restricted, 2u);
}

TEST_F(MapiTable, SeeksNoFurtherThanItsEnds)
{
    LONG forward = 0;
    LONG backward = 0;

    table->SeekRow(BOOKMARK_BEGINNING, 100, &forward);
    const ULONG end = Position();
    table->SeekRow(BOOKMARK_CURRENT, -100, &backward);

    EXPECT_EQ(forward, 5);
    EXPECT_EQ(end, 5u);
    EXPECT_EQ(backward, -5);
    EXPECT_EQ(Position(), 0u);
}

TEST_F(MapiTable, SeeksToAFraction)
{
    ASSERT_EQ(table->SeekRowApprox(2, 5), S_OK);
    EXPECT_EQ(Position(), 2u);
    ASSERT_EQ(table->SeekRowApprox(9, 5), S_OK);
    EXPECT_EQ(Position(), 5u);
    EXPECT_EQ(table->SeekRowApprox(1, 0), MAPI_E_INVALID_PARAMETER);
}

TEST_F(MapiTable, ComesBackToABookmark)
{
    BOOKMARK bookmark = 0;
    table->SeekRow(BOOKMARK_BEGINNING, 2, nullptr);
    ASSERT_EQ(table->CreateBookmark(&bookmark), S_OK);
    table->SeekRow(BOOKMARK_END, 0, nullptr);

    ASSERT_EQ(table->SeekRow(bookmark, 0, nullptr), S_OK);

    EXPECT_EQ(ReadSubjects(*table.Get(), 1), (Texts{L"c"}));
}

TEST_F(MapiTable, KnowsNoBookmarkThatIsFreedOrOfAnotherRestriction)
{
    BOOKMARK freed = 0;
    BOOKMARK discarded = 0;
    table->CreateBookmark(&freed);
    table->CreateBookmark(&discarded);

    EXPECT_EQ(table->FreeBookmark(freed), S_OK);
    table->Restrict(nullptr, 0);

    EXPECT_EQ(table->SeekRow(freed, 0, nullptr), MAPI_E_INVALID_BOOKMARK);
    EXPECT_EQ(table->SeekRow(discarded, 0, nullptr), MAPI_E_INVALID_BOOKMARK);
    EXPECT_EQ(table->FreeBookmark(freed), MAPI_E_INVALID_BOOKMARK);
    EXPECT_EQ(table->FreeBookmark(BOOKMARK_END), S_OK);
}

TEST_F(MapiTable, FindsRowsForwardFromTheOriginOn)
{
    EXPECT_EQ(Find(L"b", BOOKMARK_BEGINNING), S_OK);
    EXPECT_EQ(Position(), 1u);
    EXPECT_EQ(Find(L"b", BOOKMARK_CURRENT), S_OK);
    EXPECT_EQ(Position(), 1u);
    table->SeekRow(BOOKMARK_CURRENT, 1, nullptr);
    EXPECT_EQ(Find(L"b", BOOKMARK_CURRENT), S_OK);
    EXPECT_EQ(Position(), 3u);
}

TEST_F(MapiTable, FindsRowsBackwardTheNearestFirst)
{
    EXPECT_EQ(Find(L"b", BOOKMARK_END, DIR_BACKWARD), S_OK);
    EXPECT_EQ(Position(), 3u);
    table->SeekRow(BOOKMARK_CURRENT, -1, nullptr);
    EXPECT_EQ(Find(L"b", BOOKMARK_CURRENT, DIR_BACKWARD), S_OK);
    EXPECT_EQ(Position(), 1u);
}

TEST_F(MapiTable, FindsARowFarBeyondOneBatch)
{
    std::vector<std::string> subjects(5000, "x");
    subjects[3333] = "needle";
    table = MakeSubjectTable(subjects);

    EXPECT_EQ(Find(L"needle", BOOKMARK_BEGINNING), S_OK);
    EXPECT_EQ(Position(), 3333u);
    EXPECT_EQ(Find(L"needle", BOOKMARK_END, DIR_BACKWARD), S_OK);
    EXPECT_EQ(Position(), 3333u);
}

TEST_F(MapiTable, StaysWhereItWasWhenNoRowIsFound)
{
    table->SeekRow(BOOKMARK_BEGINNING, 2, nullptr);

    EXPECT_EQ(Find(L"a", BOOKMARK_CURRENT), MAPI_E_NOT_FOUND);
    EXPECT_EQ(Find(L"nowhere", BOOKMARK_END, DIR_BACKWARD), MAPI_E_NOT_FOUND);

    EXPECT_EQ(Position(), 2u);
}

TEST_F(MapiTable, StartsOverWhenItIsRestricted)
{
    ReadSubjects(*table.Get(), 3);

    ASSERT_EQ(Restrict(L"b"), S_OK);
    const Texts restricted = ReadSubjects(*table.Get());
    ASSERT_EQ(table->Restrict(nullptr, 0), S_OK);

    EXPECT_EQ(restricted, (Texts{L"b", L"b"}));
    EXPECT_EQ(ReadSubjects(*table.Get()).size(), 5u);
}

TEST_F(MapiTable, SortsTextsWithoutRegardToCase)
{
    table = MakeSubjectTable({"beta", "Alpha", "alpha", "Gamma", "BETA"});

    ASSERT_EQ(Sort({{PR_SUBJECT_W, TABLE_SORT_ASCEND}}), S_OK);

    // Rows that compare equal keep the order they had.
    EXPECT_EQ(ReadSubjects(*table.Get()), (Texts{L"Alpha", L"alpha", L"beta", L"BETA", L"Gamma"}));
}

TEST_F(MapiTable, SortsBySeveralKeysEachItsOwnWay)
{
    table = MakeSampleTable({{"a", 1}, {"b", 2}, {"c", 1}, {"d", 2}});

    ASSERT_EQ(Sort({{PR_MESSAGE_SIZE, TABLE_SORT_DESCEND}, {PR_SUBJECT_W, TABLE_SORT_ASCEND}}), S_OK);

    EXPECT_EQ(ReadSubjects(*table.Get()), (Texts{L"b", L"d", L"a", L"c"}));
}

TEST_F(MapiTable, SortsAbsentValuesFirst)
{
    table = MakeSampleTable({{"a", 1, {{PR_IMPORTANCE, std::int64_t{2}}}},
                             {"b", 1},
                             {"c", 1, {{PR_IMPORTANCE, std::int64_t{1}}}}});

    ASSERT_EQ(Sort({{PR_IMPORTANCE, TABLE_SORT_ASCEND}}), S_OK);

    EXPECT_EQ(ReadSubjects(*table.Get()), (Texts{L"b", L"c", L"a"}));
}

TEST_F(MapiTable, TellsItsSortOrderAndGoesBackToItsOwn)
{
    Sort({{PR_SUBJECT_W, TABLE_SORT_DESCEND}});
    SSortOrderSet* order = nullptr;

    ASSERT_EQ(table->QuerySortOrder(&order), S_OK);
    const MapiBuffer<SSortOrderSet> owner(order);
    ASSERT_EQ(Sort({}), S_OK);

    ASSERT_EQ(order->cSorts, 1u);
    EXPECT_EQ(order->aSort[0].ulPropTag, PR_SUBJECT_W);
    EXPECT_EQ(order->aSort[0].ulOrder, TABLE_SORT_DESCEND);
    EXPECT_EQ(ReadSubjects(*table.Get()), (Texts{L"a", L"b", L"c", L"b", L"d"}));
}

TEST_F(MapiTable, RefusesCategories)
{
    SizedSSortOrderSet(1, set) = {1, 1, 0, {{PR_SUBJECT_W, TABLE_SORT_ASCEND}}};

    EXPECT_EQ(table->SortTable(reinterpret_cast<SSortOrderSet*>(&set), 0), MAPI_E_TOO_COMPLEX);
}

TEST_F(MapiTable, KeepsRestrictionAndOrderTogether)
{
    table = MakeSampleTable({{"b", 3}, {"a", 9}, {"b", 1}});
    TagArray<1> columns{.tags = {PR_MESSAGE_SIZE}};
    table->SetColumns(columns.get(), 0);

    Sort({{PR_MESSAGE_SIZE, TABLE_SORT_ASCEND}});
    Restrict(L"b");
    const RowSet rows = QueryRows(*table.Get(), 10);

    ASSERT_TRUE(rows);
    ASSERT_EQ(rows->cRows, 2u);
    EXPECT_EQ(rows->aRow[0].lpProps[0].Value.l, 1);
    EXPECT_EQ(rows->aRow[1].lpProps[0].Value.l, 3);
}

TEST_F(MapiTable, IsAlwaysCompleteAndASnapshot)
{
    ULONG status = 1;
    ULONG type = 1;

    EXPECT_EQ(table->GetStatus(&status, &type), S_OK);
    EXPECT_EQ(table->Abort(), S_OK);

    EXPECT_EQ(status, static_cast<ULONG>(TBLSTAT_COMPLETE));
    EXPECT_EQ(type, TBLTYPE_SNAPSHOT);
}

TEST_F(MapiTable, OffersNoNotificationsNorCategories)
{
    ULONG connection = 0;
    SRowSet* rows = reinterpret_cast<SRowSet*>(this);
    ULONG more = 0;

    EXPECT_EQ(table->Advise(0, nullptr, &connection), MAPI_E_NO_SUPPORT);
    EXPECT_EQ(table->ExpandRow(0, nullptr, 1, 0, &rows, &more), MAPI_E_NO_SUPPORT);
    EXPECT_EQ(rows, nullptr);
}

TEST_F(MapiTable, GivesEveryRowOnceHoweverManyThreadsRead)
{
    table = MakeSubjectTable(std::vector<std::string>(4000, "x"));
    std::atomic<std::size_t> read = 0;
    std::vector<std::thread> threads;

    for (int count = 0; count < 4; ++count)
        threads.emplace_back(
            [&]
            {
                for (std::size_t rows = 1; rows > 0; read += rows)
                    rows = ReadSubjects(*table.Get(), 7).size();
            });
    for (std::thread& thread : threads)
        thread.join();

    EXPECT_EQ(read, 4000u);
}
