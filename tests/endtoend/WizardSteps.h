#pragma once

#include <windows.h>

#include <functional>
#include <string>

// What a user of the wizard chooses; empty: as the wizard has it.
struct WizardChoices
{
    std::wstring action = L"delete";    // or flag, expire, copy, move, delete-permanently
    std::wstring destination = {};      // for copy and move: the folder's name
    std::wstring criteria = {};    // sender-name, recipient-name, internet-header, attachments, send-time,
                                   // separated by commas
    std::wstring report = {};      // the file that the report is saved in; empty: it is not saved
};

// Told of each page that is worth a look, in the order in which they come, while it stands still.
using PageWatcher = std::function<void(HWND page, const char* name)>;

// Walks the wizard that a host in another process has opened, with all folders ticked, from the folders to
// the closed report. Throws WalkError.
void WalkWizard(const WizardChoices& choices, const PageWatcher& watcher);
