#include "tests/ui/WizardPage.h"

#include "res/resource.h"
#include "tests/ui/ModalDriver.h"

#include <cstddef>
#include <string>

namespace
{
constexpr wchar_t title[] = L"Talmore Quorvex Outlook Duplicate Remover";

bool Has(HWND window, int control)
{
    return ::GetDlgItem(window, control) != nullptr;
}

Page IdentifyProductPage(HWND window)
{
    if (Has(window, IDYES))
        return Page::stopQuestion;
    if (Has(window, IDC_FOLDER_TREE))
        return Page::folders;
    if (Has(window, IDC_DESTINATION_TREE))
        return Page::picker;
    if (Has(window, IDC_REPORT))
        return Page::progress;
    if (Has(window, IDC_TIME_SPAN) && Has(window, IDC_ACTION))
        return Page::settings;
    return Has(window, IDC_MESSAGE_TEXT) ? Page::notice : Page::unknown;
}
}    // namespace

const char* NameOf(Page page)
{
    static constexpr const char* names[] = {
        "folders",       "settings",    "picker",  "progress",    "notice",
        "stop question", "about",       "licence", "save dialog", "overwrite question",
        "log question",  "log message", "unknown", "closed"};
    return names[static_cast<std::size_t>(page)];
}

Page Identify(HWND window)
{
    const std::wstring caption = TextOf(window);
    if (caption == title)
        return IdentifyProductPage(window);
    if (caption == L"About")
        return Page::about;
    if (caption == L"End User License Agreement")
        return Page::licence;
    // A window that is being made may have no caption yet, nor a text.
    if (caption.empty() && TextOf(::GetDlgItem(window, messageBoxText)).empty())
        return Page::closed;
    if (caption.empty())
        return Has(window, IDCANCEL) && Has(window, IDOK) ? Page::logQuestion : Page::logMessage;
    if (caption == L"Save As")
        return Has(window, IDYES) ? Page::overwriteQuestion : Page::saveDialog;
    return Page::unknown;
}
