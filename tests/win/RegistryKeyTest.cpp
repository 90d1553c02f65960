#include "win/RegistryKey.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace
{
using namespace std::literals;

const std::wstring testKey = L"Software\\RegistryKeyTest";

class RegistryKeyTest : public testing::Test
{
protected:
    void SetUp() override
    {
        HKEY created = nullptr;
        ASSERT_EQ(::RegCreateKeyW(HKEY_CURRENT_USER, testKey.c_str(), &created), ERROR_SUCCESS);
        ::RegCloseKey(created);
        key = RegistryKey::Open(HKEY_CURRENT_USER, testKey, KEY_ALL_ACCESS);
        ASSERT_TRUE(key);
    }

    ~RegistryKeyTest() override { ::RegDeleteTreeW(HKEY_CURRENT_USER, testKey.c_str()); }

    // The data goes in as it is, with the zeros that it holds and no others, less `cut` bytes.
    void Set(DWORD type, std::wstring_view data, DWORD cut = 0) const
    {
        // The system itself adds a zero that it finds behind the data.
        const std::wstring guarded = std::wstring(data) + L'#';
        const auto size = static_cast<DWORD>(data.size() * sizeof(wchar_t)) - cut;
        ::RegSetValueExW(key.get(), L"Path", 0, type, reinterpret_cast<const BYTE*>(guarded.data()), size);
    }

    std::wstring Query(DWORD size = 260) const { return key.QueryString(L"Path", size); }

    RegistryKey key;
};

TEST_F(RegistryKeyTest, IsEmptyWhenThereIsNoSuchKey)
{
    EXPECT_FALSE(RegistryKey::Open(HKEY_CURRENT_USER, testKey + L"\\Missing", KEY_READ));
}

TEST_F(RegistryKeyTest, HasNoTextsWhenItIsEmpty)
{
    EXPECT_EQ(RegistryKey().QueryString(L"Path", 260), L"");
}

TEST_F(RegistryKeyTest, ReadsAText)
{
    Set(REG_SZ, L"C:\\Program Files\\Talmorex\0"sv);

    EXPECT_EQ(Query(), L"C:\\Program Files\\Talmorex");
}

TEST_F(RegistryKeyTest, LeavesVariablesAsTheyStand)
{
    Set(REG_EXPAND_SZ, L"%SystemRoot%\\x\0"sv);

    EXPECT_EQ(Query(), L"%SystemRoot%\\x");
}

TEST_F(RegistryKeyTest, ReadsTheFirstOfSeveralTexts)
{
    Set(REG_MULTI_SZ, L"first\0second\0\0"sv);

    EXPECT_EQ(Query(), L"first");
}

TEST_F(RegistryKeyTest, RefusesTextsThatDoNotEndAsTheirTypeAsks)
{
    for (const DWORD type : {REG_SZ, REG_EXPAND_SZ})
    {
        Set(type, L"C:\\x"sv);
        EXPECT_EQ(Query(), L"") << "type " << type;
    }
    Set(REG_MULTI_SZ, L"only\0"sv);
    EXPECT_EQ(Query(), L"");
    Set(REG_SZ, L"C:\\x\0"sv, 1);
    EXPECT_EQ(Query(), L"");
}

TEST_F(RegistryKeyTest, RefusesAnyOtherType)
{
    Set(REG_BINARY, L"C:\\x\0\0"sv);

    EXPECT_EQ(Query(), L"");
}

TEST_F(RegistryKeyTest, IsEmptyForAValueThatIsEmptyOrMissing)
{
    EXPECT_EQ(Query(), L"");

    Set(REG_SZ, L""sv);

    EXPECT_EQ(Query(), L"");
}

TEST_F(RegistryKeyTest, ReadsAsManyBytesAsItIsAllowedAndNoMore)
{
    const std::wstring fits(129, L'x');
    Set(REG_SZ, fits + L'\0');
    EXPECT_EQ(Query(260), fits);

    Set(REG_SZ, std::wstring(130, L'x') + L'\0');
    EXPECT_EQ(Query(260), L"");
    EXPECT_EQ(Query(262).size(), 130U);
}

TEST_F(RegistryKeyTest, RefusesAccessThatTheKeyDoesNotGrant)
{
    const RegistryKey readOnly = RegistryKey::Open(HKEY_CURRENT_USER, testKey, KEY_READ);

    EXPECT_EQ(::RegSetValueExW(readOnly.get(), L"Path", 0, REG_SZ, nullptr, 0), ERROR_ACCESS_DENIED);
}
}    // namespace
