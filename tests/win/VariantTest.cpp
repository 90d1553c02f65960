#include "win/Variant.h"

#include "tests/win/FakeDispatch.h"
#include "win/SafeArray.h"

#include <windows.h>

#include <oleauto.h>

#include <gtest/gtest.h>

namespace
{
// An array variant that owns its array.
_variant_t ArrayVariant(VARTYPE elementType, SafeArray array)
{
    _variant_t variant;
    variant.vt = VT_ARRAY | elementType;
    variant.parray = array.release();
    return variant;
}

_variant_t ArrayOfBytes(LONG lowerBound, std::initializer_list<BYTE> bytes)
{
    SAFEARRAYBOUND bound{static_cast<ULONG>(bytes.size()), lowerBound};
    SafeArray array(::SafeArrayCreate(VT_UI1, 1, &bound));
    LONG index = lowerBound;
    for (BYTE value : bytes)
    {
        ::SafeArrayPutElement(array.get(), &index, &value);
        ++index;
    }
    return ArrayVariant(VT_UI1, std::move(array));
}

TEST(Variant, CarriesAnIntegerAsALong)
{
    EXPECT_EQ(LongVariant(-3).vt, VT_I4);
    EXPECT_EQ(LongVariant(-3).lVal, -3);
}

TEST(Variant, CarriesTruthAsMinusOne)
{
    EXPECT_EQ(BoolVariant(true).vt, VT_BOOL);
    EXPECT_EQ(BoolVariant(true).boolVal, -1);
}

TEST(Variant, CarriesADate)
{
    EXPECT_EQ(DateVariant(1.5).vt, VT_DATE);
    EXPECT_EQ(DateVariant(1.5).date, 1.5);
}

TEST(Variant, LeavesOutAnArgumentAsAnErrorNotAsAnEmptyVariant)
{
    EXPECT_EQ(MissingVariant().vt, VT_ERROR);
    EXPECT_EQ(static_cast<ULONG>(MissingVariant().scode), 0x80020004u);
}

TEST(Variant, HoldsAReferenceToItsObject)
{
    CallLog log;
    auto object = FakeDispatch::Make(log, "Object");

    _variant_t variant = DispatchVariant(object.Get());
    object.Reset();
    const int alive = log.liveObjects;
    variant.Clear();

    EXPECT_EQ(alive, 1);
    EXPECT_EQ(log.liveObjects, 0);
}

TEST(Variant, CountsArrayElementsFromTheLowerBound)
{
    const _variant_t array = ArrayOfBytes(5, {0x0A, 0xFF});

    EXPECT_EQ(ArrayLength(array), 2u);
    EXPECT_EQ(ArrayElement(array, 1).vt, VT_UI1);
    EXPECT_EQ(ArrayElement(array, 1).bVal, 0xFF);
}

TEST(Variant, LendsTheBytesOfAnArrayOfBytesAndOfNothingElse)
{
    const _variant_t array = ArrayOfBytes(5, {0x0A, 0xFF});
    SAFEARRAYBOUND bound{1, 0};
    SafeArray numbers(::SafeArrayCreate(VT_I4, 1, &bound));

    const auto bytes = ArrayBytes(array);

    ASSERT_TRUE(bytes.has_value());
    EXPECT_EQ(std::vector<BYTE>(bytes->begin(), bytes->end()), (std::vector<BYTE>{0x0A, 0xFF}));
    EXPECT_EQ(ArrayBytes(ArrayOfBytes(0, {}))->size(), 0u);
    EXPECT_FALSE(ArrayBytes(ArrayVariant(VT_I4, std::move(numbers))).has_value());
    EXPECT_FALSE(ArrayBytes(TextVariant(L"text")).has_value());
}

TEST(Variant, TakesTheVariantOutOfAnArrayOfVariants)
{
    SAFEARRAYBOUND bound{1, 0};
    SafeArray array(::SafeArrayCreate(VT_VARIANT, 1, &bound));
    LONG index = 0;
    _variant_t text = TextVariant(L"inside");
    ::SafeArrayPutElement(array.get(), &index, &text);

    const _variant_t element = ArrayElement(ArrayVariant(VT_VARIANT, std::move(array)), 0);

    EXPECT_EQ(TextOf(element.bstrVal), L"inside");
}

TEST(Variant, HasNoElementBehindTheLast)
{
    EXPECT_EQ(ArrayElement(ArrayOfBytes(0, {1}), 1).vt, VT_EMPTY);
}

TEST(Variant, HasNoElementsWhenItIsNoArray)
{
    EXPECT_EQ(ArrayLength(TextVariant(L"text")), 0u);
    EXPECT_EQ(ArrayElement(TextVariant(L"text"), 0).vt, VT_EMPTY);
}

TEST(Variant, TakesNothingOutOfAnArrayWhoseElementsAVariantCannotHoldBesideItsType)
{
    SAFEARRAYBOUND bound{1, 0};

    EXPECT_EQ(
        ArrayElement(ArrayVariant(VT_DECIMAL, SafeArray(::SafeArrayCreate(VT_DECIMAL, 1, &bound))), 0).vt,
        VT_EMPTY);
}
}    // namespace
