#include "tests/explorer/WindowFixture.h"

#include <windows.h>

#include <commctrl.h>

#include <string>
#include <vector>

namespace
{
using Texts = std::vector<std::wstring>;

constexpr int noArrow = 0;

// The list of the Inbox's messages, sorted by clicks on its headings.
class OrderOfMessages : public WindowFixture
{
protected:
    OrderOfMessages()
    {
        file.Add({{.subject = "Beta", .senderName = "Carl", .deliveryTime = 133'000'000'000'000'000},
                  {.subject = "Alpha", .senderName = "Ann", .deliveryTime = 133'200'000'000'000'000},
                  {.subject = "Gamma", .senderName = "Bob", .deliveryTime = 133'100'000'000'000'000}});
        file.Query("UPDATE message SET message_size = 5000 WHERE subject = 'Beta'");
        file.Query("UPDATE message SET message_size = 9000 WHERE subject = 'Gamma'");
        Open();
        SelectFolder(L"Inbox");
    }

    HWND Heading() const { return reinterpret_cast<HWND>(Messages().SendMessage(LVM_GETHEADER)); }
    void ClickHeading(int column) const
    {
        RECT area{};
        ::SendMessageW(Heading(), HDM_GETITEMRECT, static_cast<WPARAM>(column),
                       reinterpret_cast<LPARAM>(&area));
        const LPARAM middle = MAKELPARAM((area.left + area.right) / 2, (area.top + area.bottom) / 2);
        ::SendMessageW(Heading(), WM_LBUTTONDOWN, MK_LBUTTON, middle);
        ::SendMessageW(Heading(), WM_LBUTTONUP, 0, middle);
    }
    int ArrowOf(int column) const
    {
        HDITEMW item{};
        item.mask = HDI_FORMAT;
        ::SendMessageW(Heading(), HDM_GETITEMW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&item));
        return item.fmt & (HDF_SORTUP | HDF_SORTDOWN);
    }
    Texts Subjects() const
    {
        Texts subjects;
        for (int row = 0; row < Messages().GetItemCount(); ++row)
            subjects.push_back(Messages().GetItemText(row, MessagePane::subject));
        return subjects;
    }
};

TEST_F(OrderOfMessages, IsNewestFirstToBeginWith)
{
    EXPECT_EQ(Subjects(), (Texts{L"Alpha", L"Gamma", L"Beta"}));
    EXPECT_EQ(ArrowOf(MessagePane::received), HDF_SORTDOWN);
}

TEST_F(OrderOfMessages, FollowsTheSendersHeading)
{
    ClickHeading(MessagePane::sender);
    EXPECT_EQ(Subjects(), (Texts{L"Alpha", L"Gamma", L"Beta"}));
    EXPECT_EQ(ArrowOf(MessagePane::sender), HDF_SORTUP);
    EXPECT_EQ(ArrowOf(MessagePane::received), noArrow);

    ClickHeading(MessagePane::sender);
    EXPECT_EQ(Subjects(), (Texts{L"Beta", L"Gamma", L"Alpha"}));
    EXPECT_EQ(ArrowOf(MessagePane::sender), HDF_SORTDOWN);
}

TEST_F(OrderOfMessages, FollowsTheSubjectsHeading)
{
    ClickHeading(MessagePane::subject);
    EXPECT_EQ(Subjects(), (Texts{L"Alpha", L"Beta", L"Gamma"}));

    ClickHeading(MessagePane::subject);
    EXPECT_EQ(Subjects(), (Texts{L"Gamma", L"Beta", L"Alpha"}));
}

TEST_F(OrderOfMessages, FollowsTheTimesHeading)
{
    ClickHeading(MessagePane::received);
    EXPECT_EQ(Subjects(), (Texts{L"Beta", L"Gamma", L"Alpha"}));
    EXPECT_EQ(ArrowOf(MessagePane::received), HDF_SORTUP);

    ClickHeading(MessagePane::received);
    EXPECT_EQ(Subjects(), (Texts{L"Alpha", L"Gamma", L"Beta"}));
}

TEST_F(OrderOfMessages, FollowsTheSizesHeading)
{
    ClickHeading(MessagePane::size);
    EXPECT_EQ(Subjects(), (Texts{L"Gamma", L"Beta", L"Alpha"}));
    EXPECT_EQ(ArrowOf(MessagePane::size), HDF_SORTDOWN);

    ClickHeading(MessagePane::size);
    EXPECT_EQ(Subjects(), (Texts{L"Alpha", L"Beta", L"Gamma"}));
}

TEST_F(OrderOfMessages, IsNewestFirstAmongEquals)
{
    file.Query("UPDATE message SET sender_name = 'Ann'");
    window->Press(L"Refresh");

    ClickHeading(MessagePane::sender);

    EXPECT_EQ(Subjects(), (Texts{L"Alpha", L"Gamma", L"Beta"}));
}

TEST_F(OrderOfMessages, StaysAsItIsWhenTheMarksHeadingIsClicked)
{
    ClickHeading(MessagePane::subject);

    ClickHeading(MessagePane::marks);

    EXPECT_EQ(Subjects(), (Texts{L"Alpha", L"Beta", L"Gamma"}));
    EXPECT_EQ(ArrowOf(MessagePane::subject), HDF_SORTUP);
    EXPECT_EQ(ArrowOf(MessagePane::marks), noArrow);
}

TEST_F(OrderOfMessages, StaysForTheNextFolderAndARefresh)
{
    file.Add({{.folder = static_cast<long long>(StoreFolder::sentItems),
               .subject = "Zeta",
               .deliveryTime = 133'200'000'000'000'000},
              {.folder = static_cast<long long>(StoreFolder::sentItems),
               .subject = "Eta",
               .deliveryTime = 133'100'000'000'000'000}});
    ClickHeading(MessagePane::subject);

    SelectFolder(L"Sent Items");
    EXPECT_EQ(Subjects(), (Texts{L"Eta", L"Zeta"}));

    window->Press(L"Refresh");
    EXPECT_EQ(Subjects(), (Texts{L"Eta", L"Zeta"}));
}

TEST_F(OrderOfMessages, KeepsTheSelectedMessageSelected)
{
    Messages().SetItemState(2, LVIS_SELECTED, LVIS_SELECTED);    // Beta

    ClickHeading(MessagePane::received);

    EXPECT_TRUE(Messages().GetItemState(0, LVIS_SELECTED));
    EXPECT_FALSE(Messages().GetItemState(2, LVIS_SELECTED));
    EXPECT_NE(TextOfChild(IDC_READING).find(L"Subject: Beta"), std::wstring::npos);
}
}    // namespace
