#include "tests/explorer/WindowFixture.h"
#include "win/OleException.h"

#include <windows.h>

#include <commctrl.h>

namespace
{
// What the list says about drawing a row.
LOGFONTW FontOfRow(HWND window, HWND list, int row)
{
    const HDC screen = ::GetDC(nullptr);
    NMLVCUSTOMDRAW drawing{};
    drawing.nmcd.hdr = {list, IDC_MESSAGES, NM_CUSTOMDRAW};
    drawing.nmcd.hdc = screen;
    drawing.nmcd.dwDrawStage = CDDS_ITEMPREPAINT;
    drawing.nmcd.dwItemSpec = static_cast<DWORD_PTR>(row);
    ::SendMessageW(window, WM_NOTIFY, IDC_MESSAGES, reinterpret_cast<LPARAM>(&drawing));
    LOGFONTW font{};
    ::GetObjectW(::GetCurrentObject(screen, OBJ_FONT), sizeof font, &font);
    ::ReleaseDC(nullptr, screen);
    return font;
}
}    // namespace

class MailList : public WindowFixture
{
protected:
    void SelectFolder(const std::wstring& name)
    {
        const auto folders = Folders();
        for (HTREEITEM item = folders.GetRootItem(); item; item = folders.GetNextSiblingItem(item))
            if (folders.GetItemText(item).starts_with(name))
                folders.SelectItem(item);
    }
};

TEST_F(MailList, ShowsTheMessagesOfTheSelectedFolderNewestFirst)
{
    file.Add({{.subject = "Older", .deliveryTime = 133'000'000'000'000'000},
              {.subject = "Newer", .senderName = "Zoe", .deliveryTime = 133'100'000'000'000'000}});
    Open();

    SelectFolder(L"Inbox");

    const auto list = Messages();
    ASSERT_EQ(list.GetItemCount(), 2);
    EXPECT_EQ(list.GetItemText(0, 0), L"Zoe");
    EXPECT_EQ(list.GetItemText(0, 1), L"Newer");
    EXPECT_EQ(list.GetItemText(1, 1), L"Older");
    EXPECT_EQ(TextOfChild(IDC_STATUS), L"Inbox: 2 messages");
}

TEST_F(MailList, DrawsUnreadMessagesBold)
{
    file.Add({{.subject = "Read", .deliveryTime = 133'000'000'000'000'000},
              {.subject = "Unread", .deliveryTime = 133'100'000'000'000'000}});
    file.Query("UPDATE message SET message_flags = 0 WHERE subject = 'Unread'");
    Open();

    SelectFolder(L"Inbox");

    EXPECT_EQ(FontOfRow(window->GetSafeHwnd(), Child(IDC_MESSAGES), 0).lfWeight, FW_BOLD);
    EXPECT_LT(FontOfRow(window->GetSafeHwnd(), Child(IDC_MESSAGES), 1).lfWeight, FW_BOLD);
    EXPECT_EQ(TextOfChild(IDC_STATUS), L"Inbox: 2 messages, 1 unread");
}

TEST_F(MailList, MarksFlaggedAndExpiredMessages)
{
    file.Add({{.subject = "Plain", .deliveryTime = 133'000'000'000'000'000},
              {.subject = "Flagged", .deliveryTime = 133'100'000'000'000'000},
              {.subject = "Expired", .deliveryTime = 133'200'000'000'000'000},
              {.subject = "To expire", .deliveryTime = 133'300'000'000'000'000}});
    file.Query("UPDATE message SET flag_status = 2 WHERE subject = 'Flagged'");
    file.Query("INSERT INTO message_property SELECT id, 0x00150040, 133000000000000000 FROM message"
               " WHERE subject = 'Expired'");
    file.Query("INSERT INTO message_property SELECT id, 0x00150040, 233000000000000000 FROM message"
               " WHERE subject = 'To expire'");
    Open();

    SelectFolder(L"Inbox");

    const auto list = Messages();
    EXPECT_EQ(list.GetItemText(0, 4), L"");
    EXPECT_EQ(list.GetItemText(1, 4), L"Expired");
    EXPECT_EQ(list.GetItemText(2, 4), L"Flagged");
    EXPECT_EQ(list.GetItemText(3, 4), L"");
}

TEST_F(MailList, ShowsTheTextOfTheSelectedMessage)
{
    file.Add({{.subject = "Minutes", .body = "First line\nSecond line"}});
    Open();
    SelectFolder(L"Inbox");

    Messages().SetItemState(0, LVIS_SELECTED, LVIS_SELECTED);

    EXPECT_NE(TextOfChild(IDC_READING).find(L"Subject: Minutes\r\n"), std::wstring::npos);
    EXPECT_NE(TextOfChild(IDC_READING).find(L"\r\n\r\nFirst line\r\nSecond line"), std::wstring::npos);
}

TEST_F(MailList, ReadsTenThousandMessagesOnDemand)
{
    std::vector<Mail> mails;
    for (int i = 0; i < 10'000; ++i)
        mails.push_back({.subject = "Message " + std::to_string(i),
                         .deliveryTime = 133'000'000'000'000'000 + i * 10'000'000LL});
    file.Add(mails);
    Open();
    SelectFolder(L"Inbox");

    const auto list = Messages();
    ASSERT_EQ(list.GetItemCount(), 10'000);
    list.EnsureVisible(9'999);
    EXPECT_EQ(list.GetItemText(9'999, 1), L"Message 0");
    list.EnsureVisible(0);
    EXPECT_EQ(list.GetItemText(0, 1), L"Message 9999");
    EXPECT_EQ(list.GetItemText(5'000, 1), L"Message 4999");
}

TEST_F(MailList, ReadsFolderAndListAgainAfterAClickOnAnAddInsButton)
{
    file.Add({{.subject = "One", .deliveryTime = 133'000'000'000'000'000},
              {.subject = "Two", .deliveryTime = 133'100'000'000'000'000}});
    script.onClick = [&] { file.Query("UPDATE message SET folder_id = 6 WHERE subject = 'Two'"); };
    const RegisteredAddIn addIn(script);
    Open();
    SelectFolder(L"Inbox");

    window->Press(L"Bar Button");

    ASSERT_EQ(Messages().GetItemCount(), 1);
    EXPECT_EQ(Messages().GetItemText(0, 1), L"One");
    EXPECT_EQ(TextOfChild(IDC_STATUS), L"Inbox: 1 message");
}

TEST_F(MailList, SaysHowToMakeAStoreWhenThereIsNone)
{
    ::SetEnvironmentVariableW(L"LOCALMAPI_STORE", L"C:\\no such folder\\no such store.db");

    Open();

    EXPECT_NE(TextOfChild(IDC_NOTICE).find(L"mailimport"), std::wstring::npos);
    EXPECT_NE(TextOfChild(IDC_NOTICE).find(L"LOCALMAPI_STORE"), std::wstring::npos);
    EXPECT_TRUE(::IsWindowVisible(Child(IDC_NOTICE)));
    EXPECT_FALSE(::IsWindowVisible(Child(IDC_MESSAGES)));
}

TEST_F(MailList, OpensTheStoreOnRefreshOnceThereIsOne)
{
    ::SetEnvironmentVariableW(L"LOCALMAPI_STORE", L"C:\\no such folder\\no such store.db");
    Open();
    ::SetEnvironmentVariableW(L"LOCALMAPI_STORE", file.GetPath().c_str());

    window->Press(L"Refresh");

    EXPECT_FALSE(::IsWindowVisible(Child(IDC_NOTICE)));
    EXPECT_TRUE(Folders().GetRootItem());
}
