#include "quorvex/ItemTable.h"

#include "contracts/DispatchIds.h"
#include "quorvex/AutomationDate.h"
#include "quorvex/Module.h"
#include "quorvex/SafeArrays.h"
#include "quorvex/SessionContext.h"
#include "tests/quorvex/Automation.h"
#include "tests/quorvex/FolderFixture.h"

#include <windows.h>

#include <mapicode.h>

#include <cstdint>
#include <string>
#include <vector>

namespace
{
using Microsoft::WRL::ComPtr;
using namespace automation;

constexpr long entryIdTag = 0x0FFF0102;
constexpr long longTermEntryIdTag = 0x66700102;

// The caller's columns: an array declared as one of 64-bit integers, in a VARIANT that says otherwise.
_variant_t Columns(std::vector<long> tags)
{
    SafeArray array = MakeArray(VT_UI8, tags.size());
    for (LONG place = 0; place < static_cast<LONG>(tags.size()); ++place)
    {
        std::uint64_t element = 0xABCD'0000'0000'0000u | static_cast<std::uint32_t>(tags[place]);
        EXPECT_EQ(SafeArrayPutElement(array.get(), &place, &element), S_OK);
    }
    return ArrayVariant(std::move(array), VT_INT);
}

// As _variant_t cannot copy an array under the wrong type, the put is made by hand.
HRESULT PutColumns(IDispatch* table, VARIANT value)
{
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{&value, &put, 1, 1};
    return table->Invoke(dispid::itemTable::columns, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT,
                         &parameters, nullptr, nullptr, nullptr);
}

std::vector<_variant_t> ElementsOf(const _variant_t& array)
{
    std::vector<_variant_t> elements;
    EXPECT_EQ(array.vt, VT_ARRAY | VT_VARIANT);
    for (LONG place = 0; array.vt == (VT_ARRAY | VT_VARIANT) &&
                         SafeArrayGetElement(array.parray, &place, &elements.emplace_back()) == S_OK;
         ++place)
    {
    }
    if (!elements.empty())
        elements.pop_back();    // the one past the end
    return elements;
}

std::vector<std::uint8_t> BytesIn(const _variant_t& value)
{
    EXPECT_EQ(value.vt, VT_ARRAY | VT_UI1);
    return value.vt == (VT_ARRAY | VT_UI1) ? BytesOfArray(value.parray).value_or(std::vector<std::uint8_t>())
                                           : std::vector<std::uint8_t>();
}

class ItemTableTest : public FolderFixture
{
protected:
    ItemTableTest() : modulesBefore(Module::count) {}
    ~ItemTableTest() override
    {
        filter.Reset();
        table.Reset();
        EXPECT_EQ(Module::count, modulesBefore);
    }

    IDispatch* Table()
    {
        if (!table)
            table =
                MakeItemTable(nullptr, std::make_shared<FolderSnapshot>(fake::Make<fake::FakeFolder>(folder),
                                                                        std::make_shared<TextDigester>()));
        return table.Get();
    }
    IDispatch* Filter()
    {
        if (!filter)
            filter = ObjectOf(automation::Get(Table(), dispid::itemTable::filter));
        return filter.Get();
    }
    ComPtr<IDispatch> SetRestriction(long kind)
    {
        return ObjectOf(Call(Filter(), dispid::tableFilter::setRestriction, {kind}));
    }
    static ComPtr<IDispatch> AddTo(const ComPtr<IDispatch>& group, long kind)
    {
        return ObjectOf(Call(group.Get(), dispid::andRestriction::add, {kind}));
    }
    static void SetProperty(const ComPtr<IDispatch>& property, long tag, long relop, const _variant_t& value)
    {
        Put(property.Get(), dispid::propertyRestriction::propTag, tag);
        Put(property.Get(), dispid::propertyRestriction::relop, relop);
        Put(property.Get(), dispid::propertyRestriction::value, value);
    }
    bool Find(DISPID id)
    {
        const _variant_t found = Call(Filter(), id, {_variant_t(true)});
        EXPECT_EQ(found.vt, VT_BOOL);
        return found.boolVal == VARIANT_TRUE;
    }
    std::vector<_variant_t> Row() { return ElementsOf(Call(Table(), dispid::itemTable::getRow)); }

    // The messages that the filter finds, by their entry ids, the way the engine walks them.
    std::vector<fake::Bytes> Found()
    {
        std::vector<fake::Bytes> found;
        for (bool more = Find(dispid::tableFilter::findFirst); more;
             more = Find(dispid::tableFilter::findNext))
            found.push_back(BytesIn(Row().at(0)));
        return found;
    }

    const long modulesBefore;
    ComPtr<IDispatch> table;
    ComPtr<IDispatch> filter;
};
}    // namespace

TEST_F(ItemTableTest, WalksTheMessagesThatMeetTheRestriction)
{
    const fake::Bytes first = Add({{PR_SUBJECT_W, std::wstring(L"Minutes")}}).entryId;
    Add({{PR_SUBJECT_W, std::wstring(L"Agenda")}});
    const fake::Bytes third = Add({{PR_SUBJECT_W, std::wstring(L"Minutes")}}).entryId;

    Call(Filter(), dispid::tableFilter::clear);
    const ComPtr<IDispatch> root = SetRestriction(RES_AND);
    SetProperty(AddTo(root, RES_PROPERTY), 0x0037001F, RELOP_EQ, L"Minutes");
    const _variant_t columns = Columns({entryIdTag});
    EXPECT_EQ(PutColumns(Table(), columns), S_OK);

    EXPECT_EQ(Found(), (std::vector<fake::Bytes>{first, third}));
}

TEST_F(ItemTableTest, TakesTheValuesOfARestrictionInAnyOrder)
{
    const fake::Bytes only = Add({{PR_DISPLAY_TO_W, std::wstring(L"ANN; Bob")}}).entryId;
    Add({{PR_DISPLAY_TO_W, std::wstring(L"Bob; Ann")}});
    const ComPtr<IDispatch> content = AddTo(SetRestriction(RES_AND), RES_CONTENT);

    Put(content.Get(), dispid::contentRestriction::value, L"ann; bob");
    Put(content.Get(), dispid::contentRestriction::fuzzyLevel, 0x00010000L);
    Put(content.Get(), dispid::contentRestriction::propTag, 0x0E04001FL);

    EXPECT_EQ(Found(), std::vector<fake::Bytes>{only});
}

TEST_F(ItemTableTest, AddsAnInnerRestrictionWithEveryCall)
{
    const auto named = [](const wchar_t* name) {
        return fake::Properties{{PR_DISPLAY_NAME_W, std::wstring(name)}};
    };
    fake::Message& both = Add({});
    both.attachments = {named(L"one"), named(L"two")};
    Add({}).attachments = {named(L"two")};
    const ComPtr<IDispatch> sub = AddTo(SetRestriction(RES_AND), RES_SUBRESTRICTION);
    Put(sub.Get(), dispid::subRestriction::subObject, 0x0E13000DL);

    for (const wchar_t* name : {L"one", L"two"})
    {
        const ComPtr<IDispatch> inner =
            ObjectOf(Call(sub.Get(), dispid::subRestriction::setInner, {static_cast<long>(RES_CONTENT)}));
        Put(inner.Get(), dispid::contentRestriction::fuzzyLevel, 0x00010000L);
        Put(inner.Get(), dispid::contentRestriction::propTag, 0x3001001FL);
        Put(inner.Get(), dispid::contentRestriction::value, name);
    }

    EXPECT_EQ(Found(), std::vector<fake::Bytes>{both.entryId});
}

TEST_F(ItemTableTest, ComparesLocalDatesWithUtcTimes)
{
    const DATE sent = 45000.25;
    const FILETIME utc = UtcFromLocalDate(sent);
    const auto ticks = static_cast<std::int64_t>(std::uint64_t{utc.dwHighDateTime} << 32 | utc.dwLowDateTime);
    const fake::Bytes atOnce = Add({{PR_CLIENT_SUBMIT_TIME, fake::FileTime{ticks}}}).entryId;
    Add({{PR_CLIENT_SUBMIT_TIME, fake::FileTime{ticks - 1}}});
    const ComPtr<IDispatch> root = SetRestriction(RES_AND);

    SetProperty(AddTo(root, RES_PROPERTY), 0x00390040, RELOP_GE, _variant_t(sent, VT_DATE));

    EXPECT_EQ(Found(), std::vector<fake::Bytes>{atOnce});
}

TEST_F(ItemTableTest, FindsEveryMessageAfterClear)
{
    Add({});
    Add({});
    SetProperty(AddTo(SetRestriction(RES_AND), RES_PROPERTY), 0x0037001F, RELOP_EQ, L"nowhere");
    ASSERT_EQ(Found().size(), 0u);

    Call(Filter(), dispid::tableFilter::clear);

    EXPECT_EQ(Found().size(), 2u);
}

TEST_F(ItemTableTest, SearchesForWhatTheRestrictionSaysAtTheTime)
{
    Add({{PR_SUBJECT_W, std::wstring(L"Minutes")}});
    const ComPtr<IDispatch> property = SetRestriction(RES_PROPERTY);
    SetProperty(property, 0x0037001F, RELOP_EQ, L"Agenda");
    ASSERT_FALSE(Find(dispid::tableFilter::findFirst));

    Put(property.Get(), dispid::propertyRestriction::value, L"Minutes");

    EXPECT_TRUE(Find(dispid::tableFilter::findFirst));
    EXPECT_FALSE(Find(dispid::tableFilter::findNext));
}

TEST_F(ItemTableTest, StandsOnTheFirstRowBeforeAnySearch)
{
    const fake::Bytes first = Add({}).entryId;
    Add({});

    EXPECT_EQ(BytesIn(Row().at(0)), first);
}

TEST_F(ItemTableTest, HasNoRowInAnEmptyFolder)
{
    const Outcome outcome = Invoke(Table(), dispid::itemTable::getRow, DISPATCH_METHOD);

    EXPECT_EQ(outcome.result, DISP_E_EXCEPTION);
    EXPECT_FALSE(outcome.description.empty());
}

TEST_F(ItemTableTest, GivesOneElementForEachColumn)
{
    const DATE sent = 45000.25;
    const FILETIME utc = UtcFromLocalDate(sent);
    fake::Message& message =
        Add({{PR_SUBJECT_W, std::wstring(L"Minutes")},
             {PR_IMPORTANCE, 2},
             {PR_CLIENT_SUBMIT_TIME, fake::FileTime{static_cast<std::int64_t>(
                                         std::uint64_t{utc.dwHighDateTime} << 32 | utc.dwLowDateTime)}}});
    const _variant_t columns = Columns({0x0037001E, entryIdTag, 0x00170003, 0x00390040, 0x1000001F});
    ASSERT_EQ(PutColumns(Table(), columns), S_OK);

    const std::vector<_variant_t> row = Row();

    ASSERT_EQ(row.size(), 5u);
    EXPECT_EQ(TextOf(row[0]), L"Minutes");
    EXPECT_EQ(BytesIn(row[1]), message.entryId);
    EXPECT_EQ(LongOf(row[2]), 2);
    ASSERT_EQ(row[3].vt, VT_DATE);
    EXPECT_DOUBLE_EQ(row[3].date, sent);
    EXPECT_EQ(row[4].vt, VT_EMPTY);
}

TEST_F(ItemTableTest, GivesLongTermIdsWhereTheStoreHasThem)
{
    const fake::Bytes longTerm{0, 0, 0, 0, 0xFF, 0x0A};
    Add({{longTermEntryIdTag, longTerm}});
    const _variant_t columns = Columns({longTermEntryIdTag});
    ASSERT_EQ(PutColumns(Table(), columns), S_OK);

    EXPECT_EQ(BytesIn(Row().at(0)), longTerm);
}

TEST_F(ItemTableTest, KeepsItsColumnsWhenGivenNoArray)
{
    Add({{PR_SUBJECT_W, std::wstring(L"Minutes")}});
    const _variant_t columns = Columns({0x0037001F});
    ASSERT_EQ(PutColumns(Table(), columns), S_OK);
    VARIANT none;
    none.vt = VT_ARRAY | VT_INT;
    none.parray = nullptr;

    EXPECT_EQ(PutColumns(Table(), none), S_OK);

    EXPECT_EQ(TextOf(Row().at(0)), L"Minutes");
}

TEST_F(ItemTableTest, ReadsColumnsFromEveryTypeOfInteger)
{
    Add({{PR_SUBJECT_W, std::wstring(L"Minutes")}});
    const auto tag = static_cast<long>(PR_SUBJECT_W);
    for (const VARTYPE type : {VT_I4, VT_UI4, VT_INT, VT_UINT, VT_I8})
    {
        SafeArray array = MakeArray(type, 1);
        LONG place = 0;
        std::int64_t element = tag;
        ASSERT_EQ(SafeArrayPutElement(array.get(), &place, &element), S_OK);
        Put(Table(), dispid::itemTable::columns, ArrayVariant(std::move(array), type));

        EXPECT_EQ(TextOf(Row().at(0)), L"Minutes") << type;
    }

    Put(Table(), dispid::itemTable::columns, VariantsAsArray(std::vector{_variant_t(tag)}));
    EXPECT_EQ(TextOf(Row().at(0)), L"Minutes");
}

TEST_F(ItemTableTest, RefusesColumnsThatAreNoTags)
{
    const auto put = [&](const _variant_t& value)
    { return Invoke(Table(), dispid::itemTable::columns, DISPATCH_PROPERTYPUT, {value}).result; };

    EXPECT_EQ(put(entryIdTag), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(put(ArrayVariant(MakeArray(VT_UI1, 4), VT_UI1)), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(put(ArrayVariant(MakeArray(VT_BSTR, 2), VT_BSTR)), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(put(ArrayVariant(MakeArray(VT_R8, 2), VT_R8)), DISP_E_TYPEMISMATCH);
}

TEST_F(ItemTableTest, TakesNoObjectForTheValueOfACondition)
{
    const auto condition = SetRestriction(RES_PROPERTY);

    const Outcome outcome = Invoke(condition.Get(), dispid::propertyRestriction::value, DISPATCH_PROPERTYPUT,
                                   {_variant_t(condition.Get())});

    EXPECT_EQ(outcome.code, E_INVALIDARG);
}

TEST_F(ItemTableTest, TellsThatAValueDoesNotSuitItsProperty)
{
    SetProperty(SetRestriction(RES_PROPERTY), 0x00390040, RELOP_GE, L"not a date");

    const Outcome outcome =
        Invoke(Filter(), dispid::tableFilter::findFirst, DISPATCH_METHOD, {_variant_t(true)});

    EXPECT_EQ(outcome.result, DISP_E_EXCEPTION);
    EXPECT_EQ(outcome.code, E_INVALIDARG);
    EXPECT_FALSE(outcome.description.empty());
}

TEST_F(ItemTableTest, RefusesAKindOfRestrictionThatThereIsNot)
{
    const Outcome outcome = Invoke(Filter(), dispid::tableFilter::setRestriction, DISPATCH_METHOD, {99L});

    EXPECT_EQ(outcome.result, DISP_E_EXCEPTION);
    EXPECT_EQ(outcome.code, E_INVALIDARG);
    EXPECT_NE(outcome.description.find(L"AND (0)"), std::wstring::npos);
}

TEST_F(ItemTableTest, TellsWhatTheStoreRefused)
{
    Add({});
    folder->table.open = MAPI_E_NETWORK_ERROR;
    folder->habits.lastError = L"The cable is out.";

    const Outcome outcome =
        Invoke(Filter(), dispid::tableFilter::findFirst, DISPATCH_METHOD, {_variant_t(true)});

    EXPECT_EQ(outcome.result, DISP_E_EXCEPTION);
    EXPECT_EQ(outcome.code, MAPI_E_NETWORK_ERROR);
    EXPECT_NE(outcome.description.find(L"The cable is out."), std::wstring::npos);
}

TEST_F(ItemTableTest, TellsThatTheRowsMessageIsGone)
{
    Add({});
    const _variant_t columns = Columns({0x0037001F});
    ASSERT_EQ(PutColumns(Table(), columns), S_OK);
    Row();
    folder->messages.clear();

    const Outcome outcome = Invoke(Table(), dispid::itemTable::getRow, DISPATCH_METHOD);

    EXPECT_EQ(outcome.result, DISP_E_EXCEPTION);
    EXPECT_EQ(outcome.code, MAPI_E_NOT_FOUND);
    EXPECT_FALSE(outcome.description.empty());
}

TEST_F(ItemTableTest, WalksBackwardsWhenAskedTo)
{
    const fake::Bytes first = Add({}).entryId;
    const fake::Bytes second = Add({}).entryId;

    EXPECT_TRUE(bool(Call(Filter(), dispid::tableFilter::findFirst, {_variant_t(false)})));
    EXPECT_EQ(BytesIn(Row().at(0)), second);
    EXPECT_TRUE(bool(Call(Filter(), dispid::tableFilter::findNext, {_variant_t(false)})));
    EXPECT_EQ(BytesIn(Row().at(0)), first);
    EXPECT_FALSE(bool(Call(Filter(), dispid::tableFilter::findNext, {_variant_t(false)})));
}
