#include "tests/explorer/WindowFixture.h"
#include "win/OleException.h"

#include <windows.h>

#include <commctrl.h>

#include <set>

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

// The rows that the list asks a window for.
class AskedRows
{
public:
    explicit AskedRows(HWND window) : window(window)
    {
        ::SetWindowSubclass(window, &Look, subclassId, reinterpret_cast<DWORD_PTR>(&rows));
    }
    AskedRows(const AskedRows&) = delete;
    AskedRows& operator=(const AskedRows&) = delete;
    ~AskedRows() { ::RemoveWindowSubclass(window, &Look, subclassId); }

    const std::set<int>& GetRows() const { return rows; }

private:
    static constexpr UINT_PTR subclassId = 1;

    static LRESULT CALLBACK Look(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                 DWORD_PTR rows)
    {
        const auto* notice = reinterpret_cast<const NMHDR*>(lParam);
        if (message == WM_NOTIFY && notice->code == LVN_GETDISPINFOW)
            reinterpret_cast<std::set<int>*>(rows)->insert(
                reinterpret_cast<const NMLVDISPINFOW*>(notice)->item.iItem);
        return ::DefSubclassProc(window, message, wParam, lParam);
    }

    HWND window;
    std::set<int> rows;
};
}    // namespace

class MailList : public WindowFixture
{
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

TEST_F(MailList, ShowsAHundredThousandMessagesAndReadsThoseInSight)
{
    file.Query("WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 99999)"
               " INSERT INTO message (folder_id, message_class, subject, display_to, display_cc, display_bcc,"
               " delivery_time) SELECT 3, 'IPM.Note', 'Message ' || i, '', '', '',"
               " 133000000000000000 + i * 10000000 FROM n");
    file.Query(
        "INSERT INTO message_text SELECT id, NULL, 'The oldest.' FROM message WHERE subject = 'Message 0'");
    Open();
    const AskedRows asked(window->GetSafeHwnd());

    SelectFolder(L"Inbox");
    ::UpdateWindow(Child(IDC_MESSAGES));

    const auto list = Messages();
    const LRESULT inSight = list.SendMessage(LVM_GETCOUNTPERPAGE);
    ASSERT_EQ(list.GetItemCount(), 100'000);
    EXPECT_LE(asked.GetRows().size(), static_cast<std::size_t>(2 * inSight));
    EXPECT_EQ(list.GetItemText(0, 1), L"Message 99999");
    list.EnsureVisible(99'999);
    EXPECT_GE(list.SendMessage(LVM_GETTOPINDEX), 100'000 - inSight - 1);
    EXPECT_EQ(list.GetItemText(99'999, 1), L"Message 0");
    EXPECT_EQ(list.GetItemText(50'000, 1), L"Message 49999");
    list.SetItemState(99'999, LVIS_SELECTED, LVIS_SELECTED);
    EXPECT_NE(TextOfChild(IDC_READING).find(L"The oldest."), std::wstring::npos);
}

TEST_F(MailList, KeepsTheSelectedMessageWhileRowsAboveItGo)
{
    file.Add({{.subject = "Older", .body = "Kept.", .deliveryTime = 133'000'000'000'000'000},
              {.subject = "Newer", .deliveryTime = 133'100'000'000'000'000}});
    Open();
    SelectFolder(L"Inbox");
    Messages().SetItemState(1, LVIS_SELECTED, LVIS_SELECTED);
    file.Query("UPDATE message SET folder_id = 6 WHERE subject = 'Newer'");

    window->Press(L"Refresh");

    EXPECT_TRUE(Messages().GetItemState(0, LVIS_SELECTED));
    EXPECT_NE(TextOfChild(IDC_READING).find(L"Kept."), std::wstring::npos);
}

TEST_F(MailList, SelectsNothingOnceTheSelectedMessageIsGone)
{
    file.Add({{.subject = "Older", .deliveryTime = 133'000'000'000'000'000},
              {.subject = "Newer", .deliveryTime = 133'100'000'000'000'000}});
    Open();
    SelectFolder(L"Inbox");
    Messages().SetItemState(0, LVIS_SELECTED, LVIS_SELECTED);
    file.Query("UPDATE message SET folder_id = 6 WHERE subject = 'Newer'");

    window->Press(L"Refresh");

    EXPECT_FALSE(Messages().GetItemState(0, LVIS_SELECTED));
    EXPECT_EQ(TextOfChild(IDC_READING), L"");
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
