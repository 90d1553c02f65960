#include "quorvex/FolderSnapshot.h"

#include "tests/quorvex/FolderFixture.h"
#include "tests/quorvex/NaiveWalk.h"

#include <windows.h>

#include <mapicode.h>

#include <array>
#include <random>
#include <string>

// Random stores, random searches: the index has to find what a plain walk finds.
namespace
{
constexpr std::array textTags{PR_SUBJECT_W,     PR_BODY_W,       PR_SENDER_EMAIL_ADDRESS_W,
                              PR_SENDER_NAME_W, PR_DISPLAY_TO_W, PR_TRANSPORT_MESSAGE_HEADERS_W};
constexpr std::array numberTags{PR_CLIENT_SUBMIT_TIME, PR_MESSAGE_DELIVERY_TIME, PR_IMPORTANCE, PR_HASATTACH};

class RandomMail
{
public:
    explicit RandomMail(unsigned seed) : engine(seed) {}

    int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(engine); }
    bool OneIn(int count) { return Below(count) == 0; }

    template <class Array>
    auto OneOf(const Array& values)
    {
        return values[static_cast<std::size_t>(Below(static_cast<int>(std::size(values))))];
    }

    // Few, so that values meet; some that tables cut, some that differ in case only.
    std::wstring Text()
    {
        const std::wstring texts[] = {L"",
                                      L"a",
                                      L"A",
                                      L"ab",
                                      L"aB",
                                      L"b",
                                      L"É b",
                                      L"é b",
                                      Long(254),
                                      Long(255),
                                      Long(255) + L"1",
                                      Long(255) + L"2"};
        return OneIn(3) ? OneOf(texts) : texts[Below(6)];
    }

    fake::Value Number(ULONG tag)
    {
        if (PROP_TYPE(tag) == PT_SYSTIME)
            return fake::FileTime{1000 + Below(3)};
        if (PROP_TYPE(tag) == PT_BOOLEAN)
            return OneIn(2);
        return static_cast<std::int32_t>(Below(3) - 1);
    }

    fake::Bytes Binary() { return fake::Bytes(static_cast<std::size_t>(Below(3)), std::uint8_t{7}); }

    fake::Properties Mail()
    {
        fake::Properties properties;
        for (const ULONG tag : textTags)
            if (!OneIn(4))
                properties[tag] = OneIn(2) ? std::wstring(L"a") : Text();
        for (const ULONG tag : numberTags)
            if (!OneIn(4))
                properties[tag] = Number(tag);
        if (OneIn(2))
            properties[PR_SEARCH_KEY] = Binary();
        return properties;
    }

    std::vector<fake::Properties> Attachments()
    {
        std::vector<fake::Properties> attachments(static_cast<std::size_t>(Below(3)));
        for (fake::Properties& attachment : attachments)
            for (const ULONG tag : {PR_DISPLAY_NAME_W, PR_ATTACH_FILENAME_W, PR_ATTACH_LONG_FILENAME_W})
                if (OneIn(2))
                    attachment[tag] = Text();
        return attachments;
    }

    // Their table's rows are all there is of recipients: nothing is cut in these.
    std::vector<fake::Properties> Recipients()
    {
        std::vector<fake::Properties> recipients(static_cast<std::size_t>(Below(3)));
        for (fake::Properties& recipient : recipients)
            recipient = {{PR_DISPLAY_NAME_W, Text()}, {PR_RECIPIENT_TYPE, Below(3) + 1}};
        return recipients;
    }

    fake::TableHabits Habits()
    {
        fake::TableHabits habits;
        habits.cutTextAt = OneIn(2) ? 255 : 0;
        habits.rowsAtOnce = OneIn(2) ? Below(5) + 1 : 0;
        for (const ULONG tag : textTags)
            Spoil(habits, tag);
        for (const ULONG tag : numberTags)
            Spoil(habits, tag);
        return habits;
    }

    std::shared_ptr<fake::Folder> Folder()
    {
        auto folder = std::make_shared<fake::Folder>();
        folder->table = Habits();
        const std::size_t longValueAt = OneIn(2) ? 100 : 0;
        for (int count = Below(60); count > 0; --count)
        {
            const auto message = fake::AddMessage(*folder, Mail());
            message->attachments = Attachments();
            message->recipients = Recipients();
            message->habits.longValueAt = longValueAt;
        }
        return folder;
    }

    Restriction TextCondition(ULONG tag)
    {
        if (OneIn(2))
            return where::Equal(tag, Text().c_str());
        const ULONG level = static_cast<ULONG>(Below(3)) | (OneIn(2) ? FL_IGNORECASE : 0);
        return OneIn(4) ? where::Property(tag, static_cast<ULONG>(Below(6)), Text())
                        : where::Content(tag, level, Text().c_str());
    }

    Restriction NumberCondition(ULONG tag)
    {
        const std::int64_t value = PROP_TYPE(tag) == PT_SYSTIME ? 1000 + Below(3) : Below(3) - 1;
        return where::Property(tag, static_cast<ULONG>(Below(6)), value);
    }

    Restriction SubCondition()
    {
        const bool onRecipients = OneIn(2);
        std::vector<Restriction> inner;
        for (int count = Below(3); count >= 0; --count)
        {
            inner.push_back(TextCondition(PR_DISPLAY_NAME_W));
            if (onRecipients && OneIn(2))
                inner.back() = where::All({inner.back(), NumberCondition(PR_RECIPIENT_TYPE)});
        }
        return where::Sub(onRecipients ? PR_MESSAGE_RECIPIENTS : PR_MESSAGE_ATTACHMENTS, std::move(inner));
    }

    Restriction Condition(int depth)
    {
        switch (Below(depth > 0 ? 12 : 9))
        {
        case 0:
        case 1:
            return NumberCondition(OneOf(numberTags));
        case 2:
            return SubCondition();
        case 3:
            return where::Exist(OneOf(textTags));
        case 4:
            return where::Property(PR_SEARCH_KEY, static_cast<ULONG>(Below(6)), Binary());
        case 9:
        case 10:
        case 11:
            return Group(depth - 1);
        default:
            return TextCondition(OneOf(textTags));
        }
    }

    Restriction Group(int depth)
    {
        std::vector<Restriction> children;
        for (int count = Below(4); count > 0; --count)
            children.push_back(Condition(depth));
        return where::Of(OneOf(std::array{RES_AND, RES_OR, RES_NOT}), std::move(children));
    }

    // Like the engine's: the values of a message that is there, and something more now and then.
    Restriction LikeOneOf(const fake::Folder& folder)
    {
        const fake::Properties properties =
            folder.messages.empty()
                ? Mail()
                : folder.messages[Below(static_cast<int>(folder.messages.size()))]->properties;
        std::vector<Restriction> children;
        for (const ULONG tag : textTags)
            if (!OneIn(3))
            {
                const fake::Value* value = fake::Find(properties, tag);
                children.push_back(
                    where::Property(tag, RELOP_EQ, value ? std::get<std::wstring>(*value) : std::wstring()));
            }
        if (OneIn(3))
            children.push_back(Condition(1));
        return where::All(std::move(children));
    }

private:
    static std::wstring Long(std::size_t length) { return std::wstring(length, L'x'); }

    void Spoil(fake::TableHabits& habits, ULONG tag)
    {
        if (OneIn(6))
            habits.errorColumns[tag] = OneIn(2) ? MAPI_E_NOT_FOUND : MAPI_E_NOT_ENOUGH_MEMORY;
        else if (OneIn(8))
            habits.refusedColumns[tag] = MAPI_E_NO_SUPPORT;
    }

    std::mt19937 engine;
};

class SearchProperty : public testing::TestWithParam<unsigned>
{
protected:
    FakeMapiMemory memory;
};
}    // namespace

TEST_P(SearchProperty, FindsExactlyTheRowsOfAPlainWalk)
{
    RandomMail random(GetParam());
    std::size_t rowsFound = 0;
    for (int store = 0; store < 40; ++store)
    {
        const auto folder = random.Folder();
        FolderSnapshot snapshot(fake::Make<fake::FakeFolder>(folder), std::make_shared<TextDigester>());
        for (int search = 0; search < 40; ++search)
        {
            const Restriction restriction = random.OneIn(3) ? random.Group(3) : random.LikeOneOf(*folder);

            const std::vector<std::uint32_t> found = snapshot.Search(restriction);

            ASSERT_EQ(found, NaiveWalk(*folder, restriction)) << "store " << store << ", search " << search;
            rowsFound += found.size();
        }
    }
    EXPECT_GT(rowsFound, 1000u);    // else the searches were of no use
}

INSTANTIATE_TEST_SUITE_P(RandomStores, SearchProperty, testing::Range(1u, 26u));
