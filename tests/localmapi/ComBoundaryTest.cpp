#include "localmapi/ComBoundary.h"

#include "localmapi/MapiMemory.h"
#include "localmapi/storage/StoreError.h"

#include <mapicode.h>

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

namespace
{
class MapiBoundary : public testing::Test
{
protected:
    std::wstring LastText(HRESULT result)
    {
        MAPIERROR* error = nullptr;
        EXPECT_EQ(lastError.Get(result, MAPI_UNICODE, &error), S_OK);
        const MapiBuffer<MAPIERROR> owner(error);
        return error ? std::wstring(reinterpret_cast<const wchar_t*>(error->lpszError)) : L"<none>";
    }

    LastError lastError;
};
}    // namespace

TEST_F(MapiBoundary, PassesSuccessesOn)
{
    EXPECT_EQ(ComBoundary(lastError, [] {}), S_OK);
    EXPECT_EQ(ComBoundary(lastError, [] { return MAPI_W_ERRORS_RETURNED; }), MAPI_W_ERRORS_RETURNED);
}

TEST_F(MapiBoundary, TurnsEveryFailureIntoItsResult)
{
    const auto throwing = [](auto error) { return ComBoundary([&] { throw error; }); };

    EXPECT_EQ(throwing(MapiError(MAPI_E_NOT_FOUND)), MAPI_E_NOT_FOUND);
    EXPECT_EQ(throwing(std::bad_alloc()), MAPI_E_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(throwing(std::runtime_error("odd")), MAPI_E_CALL_FAILED);
    EXPECT_EQ(throwing(7), MAPI_E_CALL_FAILED);
    EXPECT_EQ(throwing(StoreError(StoreFault::FileMissing, "")), MAPI_E_NOT_FOUND);
    EXPECT_EQ(throwing(StoreError(StoreFault::NotAStore, "")), MAPI_E_CORRUPT_STORE);
    EXPECT_EQ(throwing(StoreError(StoreFault::DiskFull, "")), MAPI_E_NOT_ENOUGH_DISK);
    EXPECT_EQ(throwing(StoreError(StoreFault::Busy, "")), MAPI_E_BUSY);
    EXPECT_EQ(throwing(StoreError(StoreFault::ReadOnly, "")), MAPI_E_NO_ACCESS);
    EXPECT_EQ(throwing(StoreError(StoreFault::NameTaken, "")), MAPI_E_COLLISION);
    EXPECT_EQ(throwing(StoreError(StoreFault::Other, "")), MAPI_E_DISK_ERROR);
}

TEST_F(MapiBoundary, TellsTheTextOfTheLastFailure)
{
    ComBoundary(lastError, [] { throw MapiError(MAPI_E_NOT_FOUND, L"first"); });
    ComBoundary(lastError,
                []
                {
                    throw StoreError(StoreFault::NotAStore, "Gr\xc3\xbc\xc3\x9f"
                                                            "e");
                });

    EXPECT_EQ(LastText(MAPI_E_CORRUPT_STORE), L"Gr\u00fc\u00dfe");
}

TEST_F(MapiBoundary, TellsNoTextForAnotherResultThanTheLast)
{
    ComBoundary(lastError, [] { throw MapiError(MAPI_E_NOT_FOUND, L"text"); });

    EXPECT_EQ(LastText(MAPI_E_NO_ACCESS), L"<none>");
    EXPECT_EQ(LastText(MAPI_E_NOT_FOUND), L"text");
}

TEST_F(MapiBoundary, GivesNarrowTextUnlessUnicodeIsAskedFor)
{
    ComBoundary(lastError, [] { throw MapiError(MAPI_E_NOT_FOUND, L"text"); });
    MAPIERROR* error = nullptr;

    ASSERT_EQ(lastError.Get(MAPI_E_NOT_FOUND, 0, &error), S_OK);
    const MapiBuffer<MAPIERROR> owner(error);

    ASSERT_TRUE(error);
    EXPECT_STREQ(reinterpret_cast<const char*>(error->lpszError), "text");
    EXPECT_STREQ(reinterpret_cast<const char*>(error->lpszComponent), "LocalMapi");
}

TEST_F(MapiBoundary, RefusesANullPlaceForTheError)
{
    EXPECT_EQ(lastError.Get(MAPI_E_NOT_FOUND, 0, nullptr), MAPI_E_INVALID_PARAMETER);
}
