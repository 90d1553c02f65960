#include "import/PlainAddresses.h"

#include "import/sample/SampleRandom.h"

#include <gtest/gtest.h>

#include <tuple>

static bool operator==(const MailAddress& one, const MailAddress& other)
{
    return std::tie(one.name, one.address) == std::tie(other.name, other.address);
}

static std::ostream& operator<<(std::ostream& stream, const MailAddress& address)
{
    return stream << address.name << " <" << address.address << ">";
}

namespace
{
using Addresses = std::vector<MailAddress>;

Addresses ByLibrary(const std::string& value)
{
    Addresses addresses;
    ReadAddressesByLibrary(value, addresses);
    return addresses;
}
}    // namespace

TEST(PlainAddresses, AreReadInTheirOrder)
{
    Addresses addresses;

    const bool isPlain = ReadPlainAddresses(
        " \"Berg, Anna\" <anna.berg@example.org>,\t Tom Rivera <tom@example.com> , sato@example.jp",
        addresses);

    EXPECT_TRUE(isPlain);
    EXPECT_EQ(addresses, (Addresses{{"Berg, Anna", "anna.berg@example.org"},
                                    {"Tom Rivera", "tom@example.com"},
                                    {"sato@example.jp", "sato@example.jp"}}));
}

class UnusualAddresses : public testing::TestWithParam<const char*>
{
};

TEST_P(UnusualAddresses, AreLeftToTheLibrary)
{
    Addresses addresses = {{"before", "b@example.org"}};

    EXPECT_FALSE(ReadPlainAddresses(GetParam(), addresses));
    EXPECT_EQ(addresses.size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(PlainAddresses, UnusualAddresses,
                         testing::Values("", "a@example.org,", "friends: a@example.org;",
                                         "=?utf-8?Q?Ren=C3=A9?= <a@example.org>", "a@example.org (Anna)",
                                         "\"An\\\"na\" <a@example.org>", "a@example.org, nobody",
                                         "Anna <<a@example.org>", "Ren\u00E9 <a@example.org>", "<>",
                                         "a@xn--mnchen-3ya.example", "Anna <a@example.org> Berg"));

// Values put together by chance from what such fields are made of: whenever one counts as plain, it must say
// what it says to the library.
TEST(PlainAddresses, SayWhatTheyTellTheLibrary)
{
    constexpr const char* pieces[] = {
        "Anna",  "anna.berg", "@",  "example.org", " ",  " ",  "<",     ">",  ",",    "\"",    ".",
        "b-c_d", "mx",        "\t", "J",           "()", "'",  "a@b",   "+1", ", ",   "--",    ":",
        ";",     "\\",        "=?", "\" <",        "> ", "@x", ".com>", "42", "Berg", "\"B\"", "<a@b.org>"};
    SampleRandom random(7);
    int plain = 0;
    for (int round = 0; round < 200'000; ++round)
    {
        std::string value;
        for (size_t count = 1 + random.Below(9); count > 0; --count)
            value += random.PickFrom(pieces);
        Addresses addresses;
        if (!ReadPlainAddresses(value, addresses))
            continue;
        ++plain;
        ASSERT_EQ(addresses, ByLibrary(value)) << value;
    }
    EXPECT_GT(plain, 1000);
}
