#include "localmapi/PropertyConversion.h"

#include "localmapi/ComBoundary.h"
#include "localmapi/MapiMemory.h"

#include <mapicode.h>
#include <mapitags.h>

#include <gtest/gtest.h>

namespace
{
constexpr ULONG TagOf(ULONG type)
{
    return PROP_TAG(type, 0x6001);
}

// A property as a client gets it, with all that hangs on it.
MapiBuffer<SPropValue> Filled(ULONG tag, const StoredValue& value)
{
    auto property = MakeMapiBuffer<SPropValue>();
    FillPropValue(*property, tag, value, property.get());
    return property;
}

StoredValue RoundTrip(ULONG type, const StoredValue& value)
{
    return StoredValueOf(*Filled(TagOf(type), value));
}
}    // namespace

TEST(PropertyConversion, GivesTextInTheFormTheTagAsksFor)
{
    const StoredValue text = std::string("Gr\xc3\xbc\xc3\x9f"
                                         "e \xf0\x9f\x93\xa7");

    const auto wide = Filled(PR_SUBJECT_W, text);
    const auto narrow = Filled(PR_SUBJECT_A, std::string("Minutes"));

    EXPECT_EQ(wide->ulPropTag, PR_SUBJECT_W);
    EXPECT_STREQ(wide->Value.lpszW, L"Gr\u00fc\u00dfe \U0001F4E7");
    EXPECT_EQ(narrow->ulPropTag, PR_SUBJECT_A);
    EXPECT_STREQ(narrow->Value.lpszA, "Minutes");
}

TEST(PropertyConversion, GivesEveryNumberTypeItsOwnWidth)
{
    EXPECT_EQ(Filled(TagOf(PT_LONG), std::int64_t{-5})->Value.l, -5);
    EXPECT_EQ(Filled(TagOf(PT_I2), std::int64_t{-5})->Value.i, -5);
    EXPECT_EQ(Filled(TagOf(PT_BOOLEAN), std::int64_t{1})->Value.b, 1);
    EXPECT_EQ(Filled(TagOf(PT_I8), std::int64_t{1} << 40)->Value.li.QuadPart, 1LL << 40);
    EXPECT_EQ(Filled(TagOf(PT_DOUBLE), 2.5)->Value.dbl, 2.5);
    EXPECT_EQ(Filled(TagOf(PT_R4), 2.5)->Value.flt, 2.5f);
}

TEST(PropertyConversion, SplitsATimeIntoItsTwoHalves)
{
    const auto property = Filled(PR_CLIENT_SUBMIT_TIME, std::int64_t{0x01d0123489abcdef});

    EXPECT_EQ(property->Value.ft.dwHighDateTime, 0x01d01234u);
    EXPECT_EQ(property->Value.ft.dwLowDateTime, 0x89abcdefu);
}

TEST(PropertyConversion, MarksAnAbsentValueAsNotFound)
{
    const auto property = Filled(PR_SUBJECT_W, {});

    EXPECT_EQ(property->ulPropTag, CHANGE_PROP_TYPE(PR_SUBJECT_W, PT_ERROR));
    EXPECT_EQ(property->Value.err, MAPI_E_NOT_FOUND);
}

TEST(PropertyConversion, MarksAValueThatCannotBeOfTheTagsType)
{
    const auto property = Filled(TagOf(PT_LONG), std::string("seven"));

    EXPECT_EQ(property->ulPropTag, TagOf(PT_ERROR));
    EXPECT_EQ(property->Value.err, MAPI_E_INVALID_TYPE);
}

TEST(PropertyConversion, GivesAnUnspecifiedTypeTheValuesOwn)
{
    constexpr ULONG open = TagOf(PT_UNSPECIFIED);

    EXPECT_EQ(Filled(open, std::string("x"))->ulPropTag, TagOf(PT_UNICODE));
    EXPECT_EQ(Filled(open, std::int64_t{7})->ulPropTag, TagOf(PT_LONG));
    EXPECT_EQ(Filled(open, std::int64_t{1} << 40)->ulPropTag, TagOf(PT_I8));
    EXPECT_EQ(Filled(open, 0.5)->ulPropTag, TagOf(PT_DOUBLE));
    EXPECT_EQ(Filled(open, Blob{1})->ulPropTag, TagOf(PT_BINARY));
    EXPECT_EQ(Filled(open, {})->ulPropTag, TagOf(PT_ERROR));
}

TEST(PropertyConversion, KeepsEveryValueThroughMapiAndBack)
{
    const StoredValue text = std::string("na\xc3\xafve");
    const StoredValue number = std::int64_t{-123456};
    const StoredValue time = std::int64_t{0x01d0123489abcdef};
    const StoredValue real = -0.125;
    const StoredValue guid = Blob{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};

    EXPECT_EQ(RoundTrip(PT_UNICODE, text), text);
    EXPECT_EQ(RoundTrip(PT_LONG, number), number);
    EXPECT_EQ(RoundTrip(PT_I8, number), number);
    EXPECT_EQ(RoundTrip(PT_SYSTIME, time), time);
    EXPECT_EQ(RoundTrip(PT_DOUBLE, real), real);
    EXPECT_EQ(RoundTrip(PT_APPTIME, real), real);
    EXPECT_EQ(RoundTrip(PT_CLSID, guid), guid);
    EXPECT_EQ(RoundTrip(PT_BINARY, guid), guid);
    EXPECT_EQ(RoundTrip(PT_BINARY, Blob()), StoredValue(Blob()));
    EXPECT_EQ(RoundTrip(PT_UNICODE, std::string()), StoredValue(std::string()));
}

TEST(PropertyConversion, TakesNarrowTextAsTheSameText)
{
    char text[] = "Minutes";
    SPropValue property = {};
    property.ulPropTag = PR_SUBJECT_A;
    property.Value.lpszA = text;

    EXPECT_EQ(StoredValueOf(property), StoredValue(std::string("Minutes")));
    EXPECT_EQ(StoredTag(PR_SUBJECT_A), PR_SUBJECT_W);
}

TEST(PropertyConversion, RefusesTypesTheStoreDoesNotKeep)
{
    SPropValue property = {};
    property.ulPropTag = TagOf(PT_MV_UNICODE);

    EXPECT_THROW(StoredValueOf(property), MapiError);
}

TEST(PropertyConversion, RefusesAValueWithoutItsBytes)
{
    SPropValue text = {};
    text.ulPropTag = PR_SUBJECT_W;
    SPropValue binary = {};
    binary.ulPropTag = TagOf(PT_BINARY);
    binary.Value.bin.cb = 4;

    EXPECT_THROW(StoredValueOf(text), MapiError);
    EXPECT_THROW(StoredValueOf(binary), MapiError);
}
