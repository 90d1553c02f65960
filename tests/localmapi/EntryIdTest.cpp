#include "localmapi/EntryId.h"

#include "localmapi/ComBoundary.h"

#include <mapicode.h>

#include <gtest/gtest.h>

#include <functional>

namespace
{
const StoreUid home = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
const StoreUid elsewhere = {9, 9, 9};

HRESULT RefusalOf(const std::function<void()>& decode)
{
    try
    {
        decode();
        return S_OK;
    }
    catch (const MapiError& error)
    {
        return error.result;
    }
}

HRESULT RefusalOf(const Blob& bytes)
{
    return RefusalOf([&] { DecodeEntryId(static_cast<ULONG>(bytes.size()), bytes.data()); });
}
}    // namespace

TEST(EntryIdCoding, LaysOutFlagsUidKindAndIdInThatOrder)
{
    const Blob bytes = EncodeEntryId({home, EntryKind::Message, 0x0102030405060708});

    EXPECT_EQ(bytes, (Blob{0,  0,  0,  0,  1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12,
                           13, 14, 15, 16, 5, 0, 0, 0, 8, 7, 6, 5, 4, 3,  2,  1}));
}

TEST(EntryIdCoding, GivesBackWhatWasEncoded)
{
    const Blob bytes = EncodeEntryId({home, EntryKind::Folder, 77, true});

    const EntryId decoded = DecodeEntryId(static_cast<ULONG>(bytes.size()), bytes.data());

    EXPECT_EQ(decoded.storeUid, home);
    EXPECT_EQ(decoded.kind, EntryKind::Folder);
    EXPECT_EQ(decoded.id, 77);
    EXPECT_TRUE(decoded.shortTerm);
}

TEST(EntryIdCoding, TellsTheTwoFormsApartInTheFlagsAlone)
{
    const Blob longTerm = EncodeEntryId({home, EntryKind::Message, 5, false});
    const Blob shortTerm = EncodeEntryId({home, EntryKind::Message, 5, true});

    EXPECT_EQ(Blob(longTerm.begin(), longTerm.begin() + 4), (Blob{0, 0, 0, 0}));
    EXPECT_EQ(Blob(shortTerm.begin(), shortTerm.begin() + 4), (Blob{MAPI_SHORTTERM, 0, 0, 0}));
    EXPECT_EQ(Blob(longTerm.begin() + 4, longTerm.end()), Blob(shortTerm.begin() + 4, shortTerm.end()));
}

TEST(EntryIdCoding, NamesTheSameObjectInEitherForm)
{
    const EntryId entryId{home, EntryKind::Message, 5};

    EXPECT_TRUE(entryId.NamesSameObject({home, EntryKind::Message, 5, true}));
    EXPECT_FALSE(entryId.NamesSameObject({home, EntryKind::Message, 6}));
    EXPECT_FALSE(entryId.NamesSameObject({home, EntryKind::Folder, 5}));
    EXPECT_FALSE(entryId.NamesSameObject({elsewhere, EntryKind::Message, 5}));
}

TEST(EntryIdCoding, RefusesEveryOtherLength)
{
    const Blob whole = EncodeEntryId({home, EntryKind::Message, 5});
    Blob longer = whole;
    longer.push_back(0);

    EXPECT_EQ(RefusalOf(whole), S_OK);
    EXPECT_EQ(RefusalOf(longer), MAPI_E_INVALID_ENTRYID);
    for (std::ptrdiff_t size = 0; size < 32; ++size)
        EXPECT_EQ(RefusalOf(Blob(whole.begin(), whole.begin() + size)), MAPI_E_INVALID_ENTRYID) << size;
}

TEST(EntryIdCoding, RefusesAKindOfObjectThatNoStoreHas)
{
    Blob bytes = EncodeEntryId({home, EntryKind::Message, 5});
    bytes[20] = MAPI_MAILUSER;

    EXPECT_EQ(RefusalOf(bytes), MAPI_E_INVALID_ENTRYID);
}

TEST(EntryIdCoding, RefusesFlagsThatWereNeverGivenOut)
{
    for (const std::size_t place : {0, 1, 2, 3})
    {
        Blob bytes = EncodeEntryId({home, EntryKind::Message, 5});
        bytes[place] = MAPI_THISSESSION;

        EXPECT_EQ(RefusalOf(bytes), MAPI_E_INVALID_ENTRYID) << place;
    }
}

TEST(EntryIdCoding, RefusesNull)
{
    EXPECT_EQ(RefusalOf([] { DecodeEntryId(32, nullptr); }), MAPI_E_INVALID_ENTRYID);
}

TEST(EntryIdCoding, DoesNotKnowAnotherStoresEntryIds)
{
    const Blob bytes = EncodeEntryId({elsewhere, EntryKind::Message, 5});

    EXPECT_EQ(RefusalOf([&] { DecodeEntryIdOf(home, 32, bytes.data()); }), MAPI_E_UNKNOWN_ENTRYID);
    EXPECT_EQ(RefusalOf([&] { DecodeEntryIdOf(elsewhere, 32, bytes.data()); }), S_OK);
}

TEST(EntryIdCoding, RefusesAnotherKindThanTheOneAskedFor)
{
    const Blob bytes = EncodeEntryId({home, EntryKind::Message, 5});

    EXPECT_EQ(RefusalOf([&] { DecodeEntryIdOf(home, EntryKind::Folder, 32, bytes.data()); }),
              MAPI_E_INVALID_ENTRYID);
    EXPECT_EQ(RefusalOf([&] { DecodeEntryIdOf(home, EntryKind::Message, 32, bytes.data()); }), S_OK);
}
