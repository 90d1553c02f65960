#include "tests/ui/WizardFixture.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <utility>

namespace
{
// What is made once in a process and kept: the system's libraries, their windows, and what they draw with.
const WizardResources& ResourcesAtRest()
{
    static const WizardResources resources = []
    {
        for (const wchar_t* icon : {IDI_QUESTION, IDI_ERROR, IDI_INFORMATION})
            ::LoadIconW(nullptr, icon);
        const TemporaryFolder folder;
        const WizardStore store;
        const StoreVariable variable(std::filesystem::path(store.File().Path()).c_str());
        for (int i = 0; i < 3; ++i)
            UseWizard(
                [&](WizardUser& user)
                {
                    user.WaitUntilLoaded();
                    user.Press(Page::folders, IDC_ABOUT);
                    user.Press(Page::about, IDC_EULA);
                    user.Press(Page::licence, IDOK);
                    user.Press(Page::about, IDOK);
                    user.Press(Page::folders, IDOK);
                    user.ChooseFromList(IDC_ACTION, 4);
                    user.Press(Page::settings, IDOK);
                    user.FinishRun();
                    user.Press(Page::progress, IDC_SAVE_LOG);
                    user.TypeFileName(folder.Path() + L"\\report" + std::to_wstring(i) + L".txt");
                    user.Press(Page::saveDialog, IDOK);
                    user.PressReturn(Page::logMessage);
                    user.Press(Page::progress, IDCANCEL);
                });
        return WizardResources::Now();
    }();
    return resources;
}

constexpr std::array<int, 10> days{1, 2, 5, 10, 20, 30, 50, 75, 100, 365};

int SpanOf(const RunChoice& choice)
{
    return static_cast<int>(std::ranges::find(days, choice.days) - days.begin());
}
}    // namespace

WizardRun Wizard::Use(const Walk& walk)
{
    static DWORD saves = 0;
    const WizardResources& rest = ResourcesAtRest();
    WizardRun run = UseWizard(walk);
    saves += run.filesChosen;
    const WizardResources now = WizardResources::Settled(rest, saves);
    EXPECT_TRUE(now.IsBackAt(rest, saves)) << "had " << rest << ", now " << now << " after\n" << run.moves;
    return run;
}

RunChoice Wizard::AllFolders(Action action) const
{
    RunChoice choice;
    choice.folders = store.Folders();
    choice.action = action;
    choice.destination = store.IdOf("Kept");
    return choice;
}

void Wizard::StartRun(WizardUser& user, const RunChoice& choice) const
{
    user.WaitUntilLoaded();
    user.Press(Page::folders, IDOK);
    Choose(user, choice);
    user.Press(Page::settings, IDOK);
}

void Wizard::Choose(WizardUser& user, const RunChoice& choice) const
{
    user.ChooseFromList(IDC_TIME_SPAN, SpanOf(choice));
    for (const auto& [checkBox, wanted] :
         {std::pair{IDC_SENDER_NAME, choice.senderName}, std::pair{IDC_RECIPIENT_NAME, choice.recipientName},
          std::pair{IDC_INTERNET_HEADER, choice.internetHeader},
          std::pair{IDC_ATTACHMENT_FILES, choice.attachments}, std::pair{IDC_SEND_TIME, choice.sendTime}})
        user.SetCriterion(checkBox, wanted);
    user.ChooseFromList(IDC_ACTION, choice.action);
    if (NeedsDestination(choice))
    {
        const std::vector<std::int64_t> folders = store.Folders();
        user.PickDestination(
            static_cast<std::size_t>(std::ranges::find(folders, choice.destination) - folders.begin()));
    }
}

std::wstring Wizard::Run(WizardUser& user, const RunChoice& choice) const
{
    StartRun(user, choice);
    std::wstring told = user.FinishRun();
    user.Press(Page::progress, IDCANCEL);
    user.WaitForOneOf({Page::closed});
    return told;
}

std::wstring Wizard::Completed(std::size_t duplicates, const std::wstring& action)
{
    return L"Total duplicates items: " + std::to_wstring(duplicates) + L"\n\nSelected Action: " + action +
           L"\n\nProcess completed.";
}

std::wstring Wizard::Aborted(std::size_t duplicates)
{
    return L"Process aborted by user.\n\nTotal duplicates items: " + std::to_wstring(duplicates);
}
