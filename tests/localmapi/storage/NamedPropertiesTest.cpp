#include "localmapi/storage/NamedProperties.h"

#include "localmapi/storage/StoreError.h"
#include "tests/localmapi/TemporaryStore.h"

#include <gtest/gtest.h>

namespace
{
class NamedPropertiesOfAStore : public testing::Test
{
protected:
    TemporaryStore store;
    std::shared_ptr<StoreFile> file = store.Open();
    const PropertyName byNumber{Blob(16, 1), std::int64_t{0x8502}};
    const PropertyName byText{Blob(16, 1), std::string("Keywords")};
};

TEST_F(NamedPropertiesOfAStore, GetAnIdOnceAndForAll)
{
    const std::uint32_t number = FindNamedProperty(*file, byNumber, true);
    const std::uint32_t text = FindNamedProperty(*file, byText, true);

    EXPECT_GE(number, 0x8000u);
    EXPECT_NE(number, text);
    EXPECT_EQ(FindNamedProperty(*store.Open(), byNumber, false), number);
    EXPECT_EQ(FindNamedProperty(*file, byText, true), text);
}

TEST_F(NamedPropertiesOfAStore, AreUnknownUntilSomebodyMakesThem)
{
    EXPECT_EQ(FindNamedProperty(*file, byText, false), 0u);
}

TEST_F(NamedPropertiesOfAStore, AreToldApartByTheirSet)
{
    const PropertyName otherSet{Blob(16, 2), std::string("Keywords")};

    EXPECT_NE(FindNamedProperty(*file, byText, true), FindNamedProperty(*file, otherSet, true));
}

TEST_F(NamedPropertiesOfAStore, AreListedWithTheirNames)
{
    FindNamedProperty(*file, byNumber, true);
    FindNamedProperty(*file, byText, true);

    const auto properties = ListNamedProperties(*file);

    ASSERT_EQ(properties.size(), 2u);
    EXPECT_EQ(properties[0].name.name, byNumber.name);
    EXPECT_EQ(properties[1].name.name, byText.name);
    EXPECT_EQ(properties[1].name.guid, byText.guid);
}

TEST_F(NamedPropertiesOfAStore, EndWhereTheIdsEnd)
{
    store.Run("INSERT INTO named_property (id, guid, name) VALUES (65532, zeroblob(16), 'last')");

    EXPECT_THROW(FindNamedProperty(*file, byText, true), StoreError);
    EXPECT_EQ(ListNamedProperties(*file).size(), 1u);
}
}    // namespace
