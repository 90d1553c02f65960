#include "tests/ui/WizardUser.h"

#include "res/resource.h"
#include "ui/DuplicateRemoverDlg.h"
#include "win/TreeCtrl.h"

#include <windows.h>

#include <commctrl.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string_view>
#include <thread>

namespace
{
constexpr UINT answerTime = 1000;    // milliseconds that a page may take to answer

// The tree of a page, which stays the page's own.
class PageTree : public CTreeCtrl
{
public:
    PageTree(HWND page, int control) { Attach(::GetDlgItem(page, control)); }

    std::vector<HTREEITEM> Items() const    // from the top
    {
        std::vector<HTREEITEM> items;
        Add(GetRootItem(), items);
        return items;
    }

private:
    void Add(HTREEITEM item, std::vector<HTREEITEM>& items) const
    {
        for (; item; item = GetNextSiblingItem(item))
        {
            items.push_back(item);
            Add(GetChildItem(item), items);
        }
    }
};

bool HasFocus(HWND dialog)
{
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    return ::GetGUIThreadInfo(::GetWindowThreadProcessId(dialog, nullptr), &info) && info.hwndFocus &&
           ::IsChild(dialog, info.hwndFocus);
}

// What a user does whose keys go nowhere, as when windows of two threads have come and gone one over the
// other: clicks on a control.
void ClickInto(HWND dialog)
{
    ModalDriver::RunOnThreadOf(dialog,
                               [dialog]
                               {
                                   ::SetForegroundWindow(dialog);
                                   if (!HasFocus(dialog))
                                       ::SetFocus(::GetNextDlgTabItem(dialog, nullptr, FALSE));
                               });
}

std::string Describe(HWND window)
{
    return testing::PrintToString(TextOf(window));
}

// What the script of UseWizard does, with every failure told.
void RunScript(WizardUser& user, const std::function<void(WizardUser&)>& script)
{
    try
    {
        script(user);
        if (!user.IsOver())
            user.WaitForOneOf({Page::closed});
    }
    catch (const std::exception& failure)
    {
        ADD_FAILURE() << failure.what() << "; moves so far:\n" << user.Moves();
    }
    user.CloseAll();
}

bool IsOfClass(HWND window, std::wstring_view name)
{
    wchar_t className[16] = L"";
    ::GetClassNameW(window, className, ARRAYSIZE(className));
    return className == name;
}

BOOL CALLBACK TakeShownEdit(HWND child, LPARAM found)
{
    if (!::IsWindowVisible(child) || !IsOfClass(child, L"Edit"))
        return TRUE;
    *reinterpret_cast<HWND*>(found) = child;
    return FALSE;
}

// But what the system makes for any thread that shows a window.
BOOL CALLBACK AddWindow(HWND window, LPARAM found)
{
    if (!IsOfClass(window, L"IME"))
        reinterpret_cast<std::vector<HWND>*>(found)->push_back(window);
    return TRUE;
}

std::vector<HWND> WindowsOfThisThread()
{
    std::vector<HWND> windows;
    ::EnumThreadWindows(::GetCurrentThreadId(), &AddWindow, reinterpret_cast<LPARAM>(&windows));
    return windows;
}

void ShowWizard(WizardRun& run, const std::function<void(WizardUser&)>& script)
{
    std::atomic<bool> over = false;
    {
        CDuplicateRemoverDlg wizard(false,
                                    [&](HWND, const std::wstring& file) { run.helpFiles.push_back(file); });
        ModalDriver driver(
            [&](ModalDriver& self)
            {
                WizardUser user(self, over);
                RunScript(user, script);
                run.moves = user.Moves();
                run.filesChosen = user.FilesChosen();
            });
        wizard.DoModal();
        over = true;
        driver.Join();
    }
    EXPECT_EQ(WindowsOfThisThread(), std::vector<HWND>{}) << "left over after\n" << run.moves;
}
}    // namespace

WizardUser::WizardUser(ModalDriver& driver, const std::atomic<bool>& over) : driver(driver), over(over) {}

Page WizardUser::Look()
{
    const std::vector<HWND> dialogs = ShownDialogs();
    const auto front =
        std::ranges::find_if(dialogs, [](HWND dialog) { return ::IsWindowEnabled(dialog) != FALSE; });
    if (front == dialogs.end())
        return Page::closed;
    window = *front;
    return Identify(window);
}

Page WizardUser::WaitForOneOf(const std::vector<Page>& pages)
{
    Page found = Page::closed;
    std::string wanted;
    for (const Page page : pages)
        wanted += std::string(wanted.empty() ? "" : " or ") + NameOf(page);
    int strange = 0;
    const auto search = [&]
    {
        found = Look();
        // A window that is just going may be taken for none that is known.
        strange = found == Page::unknown ? strange + 1 : 0;
        if (strange > 20)
            throw std::runtime_error("a window that nobody knows: " + Describe(window));
        return std::ranges::find(pages, found) != pages.end() && (found != Page::closed || over);
    };
    WaitUntil(search, wanted);
    DWORD_PTR ignored = 0;
    if (found != Page::closed &&
        !::SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, answerTime, &ignored) &&
        ::IsWindow(window))
        throw std::runtime_error(std::string("no answer within a second from ") + NameOf(found));
    return found;
}

HWND WizardUser::WaitFor(Page page)
{
    WaitForOneOf({page});
    return window;
}

void WizardUser::WaitUntil(const std::function<bool()>& condition, const std::string& what)
{
    driver.WaitUntil(condition, what);
}

HWND WizardUser::Reach(Page page)
{
    const HWND last = window;
    const bool mayBeCovered = page == Page::progress || page == Page::notice || page == Page::stopQuestion;
    if (mayBeCovered && last && Identify(last) == page && ::IsWindowVisible(last))
        return last;
    return WaitFor(page);
}

void WizardUser::Press(Page page, int button)
{
    const HWND dialog = Reach(page);
    WaitUntil([&] { return ::IsWindowEnabled(::GetDlgItem(dialog, button)) != FALSE; },
              "a button that can be pressed");
    Note(std::string(NameOf(page)) + ": press " +
         testing::PrintToString(TextOf(::GetDlgItem(dialog, button))));
    filesChosen += page == Page::saveDialog && button == IDOK ? 1 : 0;
    driver.PostClick(dialog, button);
}

void WizardUser::PressKey(Page page, WORD key)
{
    const HWND dialog = Reach(page);
    Note(std::string(NameOf(page)) + ": press " + (key == VK_ESCAPE ? "Esc" : "Enter"));
    if (!HasFocus(dialog))
        ClickInto(dialog);
    WaitUntil([&] { return HasFocus(dialog) || Look() != page; }, "a control with the focus");
    if (HasFocus(dialog))
        driver.PressKey(dialog, key);
}

void WizardUser::PressCloseBox(Page page)
{
    const HWND dialog = Reach(page);
    Note(std::string(NameOf(page)) + ": click the close box");
    ::PostMessageW(dialog, WM_SYSCOMMAND, SC_CLOSE, 0);
}

void WizardUser::PressCancelUnseen()
{
    const HWND page = WaitFor(Page::folders);
    Note("folders: cancel");
    ::PostMessageW(page, WM_COMMAND, IDCANCEL, reinterpret_cast<LPARAM>(::GetDlgItem(page, IDCANCEL)));
}

bool WizardUser::IsLoaded() const
{
    return ::IsWindowEnabled(::GetDlgItem(window, IDOK)) != FALSE;
}

void WizardUser::WaitUntilLoaded()
{
    WaitFor(Page::folders);
    WaitUntil([this] { return IsLoaded(); }, "the end of the loading");
    // Answered when the page has done all that belongs to the end.
    ::SendMessageW(window, WM_NULL, 0, 0);
}

std::vector<HTREEITEM> WizardUser::Folders()
{
    return PageTree(WaitFor(Page::folders), IDC_FOLDER_TREE).Items();
}

LRESULT WizardUser::CountFoldersShown() const
{
    return ::SendDlgItemMessageW(window, IDC_FOLDER_TREE, TVM_GETCOUNT, 0, 0);
}

LRESULT WizardUser::CountRows() const
{
    return ::SendDlgItemMessageW(window, IDC_REPORT, LVM_GETITEMCOUNT, 0, 0);
}

std::vector<int> WizardUser::Checks()
{
    std::vector<int> checks;
    const std::vector<HTREEITEM> folders = Folders();
    const PageTree tree(window, IDC_FOLDER_TREE);
    for (const HTREEITEM folder : folders)
        checks.push_back(tree.GetCheckIndex(folder));
    return checks;
}

HTREEITEM WizardUser::ItemOf(int tree, std::size_t folder)
{
    return PageTree(window, tree).Items().at(folder);
}

void WizardUser::WaitForOtherCheck(HTREEITEM item, int before)
{
    const PageTree tree(window, IDC_FOLDER_TREE);
    WaitUntil([&] { return tree.GetCheckIndex(item) != before; }, "another check state");
}

void WizardUser::ClickCheckBox(std::size_t folder)
{
    const HWND page = WaitFor(Page::folders);
    const HTREEITEM item = ItemOf(IDC_FOLDER_TREE, folder);
    const PageTree tree(page, IDC_FOLDER_TREE);
    const int before = tree.GetCheckIndex(item);
    Note("folders: click the check box of " + testing::PrintToString(tree.GetItemText(item)));
    tree.EnsureVisible(item);
    const RECT text = tree.GetItemRect(item, true);
    POINT place{text.left, (text.top + text.bottom) / 2};
    while (place.x > 0 && !(tree.HitTest(place).flags & TVHT_ONITEMSTATEICON))
        --place.x;
    const HWND control = ::GetDlgItem(page, IDC_FOLDER_TREE);
    ::PostMessageW(control, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(place.x, place.y));
    ::PostMessageW(control, WM_LBUTTONUP, 0, MAKELPARAM(place.x, place.y));
    WaitForOtherCheck(item, before);
}

void WizardUser::PressSpaceOn(std::size_t folder)
{
    const HWND page = WaitFor(Page::folders);
    const HTREEITEM item = ItemOf(IDC_FOLDER_TREE, folder);
    const PageTree tree(page, IDC_FOLDER_TREE);
    const int before = tree.GetCheckIndex(item);
    Note("folders: press Space on " + testing::PrintToString(tree.GetItemText(item)));
    ::SendMessageW(page, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(::GetDlgItem(page, IDC_FOLDER_TREE)), TRUE);
    tree.SelectItem(item);
    driver.PressKey(page, VK_SPACE);
    WaitForOtherCheck(item, before);
}

void WizardUser::ChooseFromList(int list, int index)
{
    const HWND box = ::GetDlgItem(WaitFor(Page::settings), list);
    Note("settings: choose entry " + std::to_string(index) + " of list " + std::to_string(list));
    ::SendMessageW(box, WM_KEYDOWN, VK_HOME, 1);
    for (int i = 0; i < index; ++i)
        ::SendMessageW(box, WM_KEYDOWN, VK_DOWN, 1);
    if (::SendMessageW(box, CB_GETCURSEL, 0, 0) != index)
        throw std::runtime_error("the list does not take the choice");
}

void WizardUser::SetCriterion(int checkBox, bool checked)
{
    const HWND page = WaitFor(Page::settings);
    if ((::IsDlgButtonChecked(page, checkBox) == BST_CHECKED) == checked)
        return;
    Note("settings: click criterion " + testing::PrintToString(TextOf(::GetDlgItem(page, checkBox))));
    driver.Click(page, checkBox);
}

void WizardUser::PickDestination(std::size_t folder)
{
    Press(Page::settings, IDC_SELECT_DESTINATION);
    SelectInPicker(folder);
    Press(Page::picker, IDOK);
    WaitFor(Page::settings);
}

void WizardUser::SelectInPicker(std::size_t folder)
{
    const HWND page = WaitFor(Page::picker);
    const HTREEITEM item = ItemOf(IDC_DESTINATION_TREE, folder);
    const PageTree tree(page, IDC_DESTINATION_TREE);
    Note("picker: select " + testing::PrintToString(tree.GetItemText(item)));
    tree.SelectItem(item);
}

std::size_t WizardUser::CountPickerFolders()
{
    return PageTree(WaitFor(Page::picker), IDC_DESTINATION_TREE).Items().size();
}

std::size_t WizardUser::SelectedPickerFolder()
{
    const PageTree tree(WaitFor(Page::picker), IDC_DESTINATION_TREE);
    const std::vector<HTREEITEM> items = tree.Items();
    return static_cast<std::size_t>(std::ranges::find(items, tree.GetSelectedItem()) - items.begin());
}

std::wstring WizardUser::FinishRun()
{
    WaitFor(Page::notice);
    std::wstring text = MessageText();
    Press(Page::notice, IDOK);
    WaitFor(Page::progress);
    WaitUntil([this] { return ::IsWindowEnabled(::GetDlgItem(window, IDC_SAVE_LOG)) != FALSE; },
              "the end of the run");
    // As above.
    ::SendMessageW(window, WM_NULL, 0, 0);
    return text;
}

void WizardUser::WaitForRun()
{
    Note("progress: wait for the run");
    const auto isOver = [this]
    { return Look() == Page::notice || ::IsWindowEnabled(::GetDlgItem(window, IDC_SAVE_LOG)) != FALSE; };
    WaitUntil(isOver, "the end of the run");
}

std::wstring WizardUser::MessageText()
{
    if (Identify(window) != Page::notice)
        WaitForOneOf({Page::notice, Page::logMessage, Page::logQuestion});
    const bool isNotice = Identify(window) == Page::notice;
    return TextOf(::GetDlgItem(window, isNotice ? IDC_MESSAGE_TEXT : messageBoxText));
}

void WizardUser::TypeFileName(const std::wstring& path)
{
    const HWND dialog = WaitFor(Page::saveDialog);
    Note("save dialog: type " + testing::PrintToString(path));
    HWND edit = nullptr;
    ::EnumChildWindows(dialog, &TakeShownEdit, reinterpret_cast<LPARAM>(&edit));
    ::SendMessageW(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
}

std::string WizardUser::Moves() const
{
    std::string lines;
    for (const std::string& move : moves)
        lines += "  " + move + '\n';
    return lines;
}

void WizardUser::CloseAll()
{
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + dialogPatience;
    while (!over)
    {
        for (const HWND dialog : ShownDialogs())
            if (::IsWindowEnabled(dialog))
                PostCancel(dialog);
        ::Sleep(20);
        if (Clock::now() < end)
            continue;
        std::fprintf(stderr, "the wizard does not close; moves:\n%s", Moves().c_str());
        std::abort();
    }
}

WizardRun UseWizard(const std::function<void(WizardUser&)>& script)
{
    WizardRun run;
    // A thread that has reached the mail servers holds on to them until it ends.
    std::thread([&] { ShowWizard(run, script); }).join();
    return run;
}
