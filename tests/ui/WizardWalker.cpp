#include "tests/ui/WizardWalker.h"

#include "res/resource.h"

#include <windows.h>

#include <commctrl.h>

#include <array>
#include <stdexcept>
#include <utility>

namespace
{
constexpr std::array<int, 11> daysOfSpans{1, 2, 5, 10, 20, 30, 50, 75, 100, 365, 0};
constexpr std::array<const wchar_t*, 3> logNames{L"\\report", L"\\report.txt", L"\\report.log"};

constexpr int copy = 2;
constexpr int move = 3;

bool IsChecked(HWND page, int checkBox)
{
    return ::IsDlgButtonChecked(page, checkBox) == BST_CHECKED;
}

int SelectionOf(HWND page, int list)
{
    return static_cast<int>(::SendDlgItemMessageW(page, list, CB_GETCURSEL, 0, 0));
}
}    // namespace

WizardWalker::WizardWalker(std::uint32_t seed, const WizardStore& store, std::wstring logFolder)
    : random(seed),
      store(store),
      logFolder(std::move(logFolder))
{
}

int WizardWalker::Any(int limit)
{
    return static_cast<int>(random() % static_cast<std::uint32_t>(limit));
}

void WizardWalker::Walk(WizardUser& wizardUser, int limit)
{
    user = &wizardUser;
    Page page = user->WaitFor(Page::folders) ? Page::folders : Page::closed;
    for (int made = 0; page != Page::closed; ++made)
    {
        if (made > 3 * limit)
            throw std::runtime_error("no way out of the wizard");
        Moves moves = MovesOn(page);
        const Move& chosen = made < limit
                                 ? moves.at(static_cast<std::size_t>(Any(static_cast<int>(moves.size()))))
                                 : moves.back();
        chosen.make();
        page = user->WaitForOneOf(chosen.next);
    }
}

void WizardWalker::AddWaysOut(Moves& moves, Page page, int button, const std::vector<Page>& next)
{
    moves.push_back({[=, this] { user->PressEscape(page); }, next});
    moves.push_back({[=, this] { user->PressCloseBox(page); }, next});
    moves.push_back({[=, this] { user->Press(page, button); }, next});
}

WizardWalker::Moves WizardWalker::MovesOn(Page page)
{
    Moves moves;
    switch (page)
    {
    case Page::folders:
        return MovesOnFolders();
    case Page::settings:
        return MovesOnSettings();
    case Page::picker:
        return MovesOnPicker();
    case Page::progress:
        return MovesOnProgress();
    case Page::notice:
        return MovesOnNotice();
    case Page::saveDialog:
        return MovesOnSaveDialog();
    case Page::stopQuestion:
        moves.push_back({[this] { user->Answer(true); }, {Page::folders, Page::progress, Page::notice}});
        moves.push_back({[this] { user->Answer(false); }, {Page::folders, Page::progress, Page::notice}});
        break;
    case Page::about:
        moves.push_back({[this] { user->Press(Page::about, IDC_EULA); }, {Page::licence}});
        AddWaysOut(moves, page, IDOK, {Page::folders});
        break;
    case Page::licence:
        AddWaysOut(moves, page, IDOK, {Page::about});
        break;
    case Page::overwriteQuestion:
        moves.push_back({[this] { user->Press(Page::overwriteQuestion, IDNO); }, {Page::saveDialog}});
        moves.push_back({[this] { user->Press(Page::overwriteQuestion, IDYES); }, {Page::logQuestion}});
        break;
    case Page::logQuestion:
        moves.push_back({[this] { user->Press(Page::logQuestion, IDCANCEL); }, {Page::logMessage}});
        moves.push_back({[this] { user->Press(Page::logQuestion, IDOK); }, {Page::logMessage}});
        break;
    default:
    {
        const bool saved = user->MessageText().starts_with(L"Log Information saved");
        const Page next = saved ? Page::progress : Page::saveDialog;
        moves.push_back({[this] { user->PressReturn(Page::logMessage); }, {next}});
    }
    }
    return moves;
}

WizardWalker::Moves WizardWalker::MovesOnFolders()
{
    Moves moves;
    if (!user->IsLoaded())
    {
        moves.push_back({[this] { user->PressEscape(Page::folders); }, {Page::stopQuestion, Page::closed}});
        moves.push_back({[this] { user->PressCloseBox(Page::folders); }, {Page::stopQuestion, Page::closed}});
        moves.push_back({[this] { user->WaitUntilLoaded(); }, {Page::folders}});
        return moves;
    }
    const auto folder = [this]
    { return static_cast<std::size_t>(Any(static_cast<int>(user->Folders().size()))); };
    const auto next = [this]
    {
        choice = {};
        const std::vector<int> checks = user->Checks();
        const std::vector<std::int64_t> folders = store.Folders();
        for (std::size_t i = 0; i < checks.size(); ++i)
            if (checks[i] == 2 || checks[i] == 3)
                choice.folders.push_back(folders.at(i));
        user->Press(Page::folders, IDOK);
    };
    for (int i = 0; i < 3; ++i)
    {
        moves.push_back({[this, folder] { user->ClickCheckBox(folder()); }, {Page::folders}});
        moves.push_back({[this, folder] { user->PressSpaceOn(folder()); }, {Page::folders}});
        if (IsAnyTicked())
            moves.push_back({next, {Page::settings}});
        else
            moves.push_back({next, {Page::notice}});
    }
    moves.push_back({[this] { user->Press(Page::folders, IDC_HELP_TOPIC); }, {Page::folders}});
    moves.push_back({[this] { user->Press(Page::folders, IDC_ABOUT); }, {Page::about}});
    if (Any(2) == 0)
        moves.push_back({[this] { user->PressCloseBox(Page::folders); }, {Page::closed}});
    moves.push_back({[this] { user->PressEscape(Page::folders); }, {Page::closed}});
    return moves;
}

bool WizardWalker::IsAnyTicked()
{
    for (const int check : user->Checks())
        if (check == 2 || check == 3)
            return true;
    return false;
}

WizardWalker::Moves WizardWalker::MovesOnSettings()
{
    Moves moves;
    const auto click = [this](int checkBox)
    { user->SetCriterion(checkBox, !IsChecked(user->WaitFor(Page::settings), checkBox)); };
    for (int i = 0; i < 2; ++i)
    {
        moves.push_back({[this] { user->ChooseFromList(IDC_TIME_SPAN, Any(11)); }, {Page::settings}});
        moves.push_back({[this] { user->ChooseFromList(IDC_ACTION, Any(6)); }, {Page::settings}});
        moves.push_back({[this, click] { click(IDC_SENDER_NAME + Any(5)); }, {Page::settings}});
        const int action = SelectionOf(user->Window(), IDC_ACTION);
        if ((action == copy || action == move) && destination == 0)
            moves.push_back({[this] { StartRun(); }, {Page::notice}});
        else
            moves.push_back({[this] { StartRun(); }, {Page::progress, Page::notice}});
    }
    if (::IsWindowEnabled(::GetDlgItem(user->Window(), IDC_SELECT_DESTINATION)))
        moves.push_back({[this]
                         {
                             destination = 0;
                             user->Press(Page::settings, IDC_SELECT_DESTINATION);
                         },
                         {Page::picker}});
    AddWaysOut(moves, Page::settings, IDCANCEL, {Page::folders});
    return moves;
}

void WizardWalker::StartRun()
{
    const HWND page = user->WaitFor(Page::settings);
    choice.senderName = IsChecked(page, IDC_SENDER_NAME);
    choice.recipientName = IsChecked(page, IDC_RECIPIENT_NAME);
    choice.internetHeader = IsChecked(page, IDC_INTERNET_HEADER);
    choice.attachments = IsChecked(page, IDC_ATTACHMENT_FILES);
    choice.sendTime = IsChecked(page, IDC_SEND_TIME);
    // "Anytime" does not take back the span of a run that was refused.
    const int days = daysOfSpans.at(static_cast<std::size_t>(SelectionOf(page, IDC_TIME_SPAN)));
    choice.days = days != 0 ? days : choice.days;
    choice.action = SelectionOf(page, IDC_ACTION);
    choice.destination = destination;
    if ((choice.action != copy && choice.action != move) || destination != 0)
        run = choice;
    user->Press(Page::settings, IDOK);
}

WizardWalker::Moves WizardWalker::MovesOnPicker()
{
    Moves moves;
    const auto select = [this]
    {
        const auto place = static_cast<std::size_t>(Any(static_cast<int>(user->CountPickerFolders())));
        user->SelectInPicker(place);
    };
    const auto accept = [this]
    {
        destination = store.Folders().at(user->SelectedPickerFolder());
        user->Press(Page::picker, IDOK);
    };
    for (int i = 0; i < 3; ++i)
    {
        moves.push_back({select, {Page::picker}});
        if (::IsWindowEnabled(::GetDlgItem(user->Window(), IDOK)))
            moves.push_back({accept, {Page::settings}});
    }
    AddWaysOut(moves, Page::picker, IDCANCEL, {Page::settings});
    return moves;
}

WizardWalker::Moves WizardWalker::MovesOnProgress()
{
    Moves moves;
    if (!::IsWindowEnabled(::GetDlgItem(user->Window(), IDC_SAVE_LOG)))
    {
        AddWaysOut(moves, Page::progress, IDCANCEL, {Page::stopQuestion, Page::notice, Page::closed});
        moves.push_back({[this] { user->WaitForRun(); }, {Page::notice, Page::progress}});
        return moves;
    }
    const HWND list = ::GetDlgItem(user->Window(), IDC_REPORT);
    const bool isEmpty = ::SendMessageW(list, LVM_GETITEMCOUNT, 0, 0) == 0;
    for (int i = 0; i < 3; ++i)
    {
        if (isEmpty)
            moves.push_back({[this] { user->Press(Page::progress, IDC_SAVE_LOG); }, {Page::progress}});
        else
            moves.push_back({[this] { user->Press(Page::progress, IDC_SAVE_LOG); }, {Page::saveDialog}});
    }
    AddWaysOut(moves, Page::progress, IDCANCEL, {Page::closed});
    return moves;
}

WizardWalker::Moves WizardWalker::MovesOnNotice()
{
    Moves moves;
    const std::wstring text = user->MessageText();
    const bool aborted = text.starts_with(L"Process aborted");
    if (aborted || text.starts_with(L"Total duplicates"))
    {
        stopped = aborted;
        endMessage = text;
        AddWaysOut(moves, Page::notice, IDOK, {Page::progress, Page::stopQuestion});
    }
    else if (text.starts_with(L"Select atleast"))
        AddWaysOut(moves, Page::notice, IDOK, {Page::folders});
    else
        AddWaysOut(moves, Page::notice, IDOK, {Page::settings});
    return moves;
}

WizardWalker::Moves WizardWalker::MovesOnSaveDialog()
{
    Moves moves;
    const auto type = [this]
    {
        user->TypeFileName(logFolder + logNames.at(static_cast<std::size_t>(Any(3))));
        user->Press(Page::saveDialog, IDOK);
    };
    moves.push_back({type, {Page::overwriteQuestion, Page::logQuestion, Page::logMessage}});
    moves.push_back({[this] { user->PressEscape(Page::saveDialog); }, {Page::progress}});
    moves.push_back({[this] { user->Press(Page::saveDialog, IDCANCEL); }, {Page::progress}});
    return moves;
}
