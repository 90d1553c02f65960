// Walks through the wizard over a store and stops at each page, so that pictures can be taken: for each it
// writes "ready NAME X Y WIDTH HEIGHT" (the window's rectangle in screen pixels) and goes on when a line is
// read. TQODR_REAL_MAIL names a store of real mail to walk over.

#include "res/resource.h"
#include "tests/localmapi/Sandbox.h"
#include "tests/ui/WizardStore.h"
#include "tests/ui/WizardUser.h"

#include <windows.h>

#include <filesystem>
#include <iostream>
#include <string>

namespace
{
void Shoot(const std::string& name, HWND window)
{
    ModalDriver::RunOnThreadOf(
        window, [&] { ::RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN); });
    RECT place{};
    ::GetWindowRect(window, &place);
    std::cout << "ready " << name << ' ' << place.left << ' ' << place.top << ' ' << place.right - place.left
              << ' ' << place.bottom - place.top << std::endl;
    std::string line;
    std::getline(std::cin, line);
}

void Walk(WizardUser& user, const WizardStore& store)
{
    user.WaitUntilLoaded();
    Shoot("wizard-folders", user.Window());
    user.ClickCheckBox(store.PlaceOf("Alpha"));
    user.PressSpaceOn(store.PlaceOf("Archive"));
    Shoot("wizard-folders-ticked", user.Window());
    user.Press(Page::folders, IDOK);
    Shoot("wizard-settings", user.WaitFor(Page::settings));
    user.ChooseFromList(IDC_ACTION, 2);
    user.Press(Page::settings, IDC_SELECT_DESTINATION);
    user.SelectInPicker(store.PlaceOf("Kept"));
    Shoot("wizard-picker", user.WaitFor(Page::picker));
    user.Press(Page::picker, IDOK);
    Shoot("wizard-settings-copy", user.WaitFor(Page::settings));
    user.Press(Page::settings, IDOK);
    Shoot("wizard-end", user.WaitFor(Page::notice));
    user.FinishRun();
    Shoot("wizard-progress", user.Window());
    user.Press(Page::progress, IDCANCEL);
}

// While the folders are read there is time for the notice and the question only in a large store.
void WalkWhileReading(WizardUser& user)
{
    user.WaitFor(Page::folders);
    user.PressEscape(Page::folders);
    Shoot("wizard-question", user.WaitFor(Page::stopQuestion));
    user.Answer(false);
    Shoot("wizard-reading", user.WaitFor(Page::folders));
    user.PressEscape(Page::folders);
    user.Answer(true);
    user.WaitUntilLoaded();
    user.PressEscape(Page::folders);
}
}    // namespace

int main()
{
    // Else the system would draw for 96 DPI and stretch the picture.
    ::SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);
    const WizardStore store;
    const StoreVariable variable(std::filesystem::path(store.File().Path()).c_str());
    UseWizard([&](WizardUser& user) { Walk(user, store); });
    store.File().Run("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 8000) "
                     "INSERT INTO folder (parent_id, name, container_class) "
                     "SELECT 110, 'Folder ' || i, 'IPF.Note' FROM n;");
    UseWizard(&WalkWhileReading);
}
