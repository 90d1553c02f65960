#include "localmapi/TextConversion.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace
{
// As the system converts it.
std::wstring Plainly(const std::string& text)
{
    std::wstring wide(text.size(), L'\0');
    const int length = static_cast<int>(text.size());
    wide.resize(static_cast<std::size_t>(
        length ? ::MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), length) : 0));
    return wide;
}

std::string Letters(std::size_t count)
{
    std::string letters;
    for (std::size_t place = 0; place < count; ++place)
        letters += static_cast<char>(' ' + place % 95);
    return letters;
}

TEST(TextConversion, WidensAsciiOfEveryLength)
{
    for (std::size_t length = 0; length < 100; ++length)
    {
        const std::string text = Letters(length);
        EXPECT_EQ(WideFromUtf8(text), std::wstring(text.begin(), text.end()));
    }
}

TEST(TextConversion, WidensWhatIsNotAsciiInEveryPlace)
{
    for (const char* special : {"\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x93\xA7", "\xFF", "\xC3"})
        for (std::size_t place = 0; place <= 40; ++place)
        {
            const std::string text = Letters(place) + special + Letters(40 - place);
            EXPECT_EQ(WideFromUtf8(text), Plainly(text)) << text;
        }
}

TEST(TextConversion, KeepsZerosInsideAText)
{
    const std::string text("one\0two", 7);

    EXPECT_EQ(WideFromUtf8(text), std::wstring(L"one\0two", 7));
}
}    // namespace
