#pragma once

#include "tests/ui/ModalDriver.h"
#include "tests/ui/WizardPage.h"

#include <windows.h>

#include <commctrl.h>

#include <atomic>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

// The user of the whole wizard, on the thread of a ModalDriver: goes from page to page by buttons and keys,
// and writes down what it did. Whatever does not come within the deadline throws, as ModalDriver does; so
// does a window that nobody knows and a page that does not answer within a second.
class WizardUser
{
public:
    // `over` becomes true when the wizard has ended; both are borrowed.
    WizardUser(ModalDriver& driver, const std::atomic<bool>& over);

    // The page in front that takes input: waits until it is one of these and shown; its window is Window().
    Page WaitForOneOf(const std::vector<Page>& pages);
    HWND WaitFor(Page page);
    HWND Window() const { return window; }
    // Which page is in front now; `closed` also while one page makes way for the next.
    Page Look();
    bool IsOver() const { return over; }
    void WaitUntil(const std::function<bool()>& condition, const std::string& what);

    // Each waits for the page first, and returns before what it sets off is finished. A key is not pressed
    // when another page comes in front of this one.
    void Press(Page page, int button);
    void PressEscape(Page page) { PressKey(page, VK_ESCAPE); }
    void PressReturn(Page page) { PressKey(page, VK_RETURN); }
    void PressCloseBox(Page page);
    void PressCancelUnseen();    // the folders' hidden Cancel, as a program that works dialogs does

    // The folders, in the order of the tree from the top; check states as the tree has them (1, 2, 3).
    void WaitUntilLoaded();
    bool IsLoaded() const;    // of the page in front
    std::vector<HTREEITEM> Folders();
    LRESULT CountFoldersShown() const;    // of the page in front
    LRESULT CountRows() const;            // of the report in front
    std::vector<int> Checks();
    void ClickCheckBox(std::size_t folder);
    void PressSpaceOn(std::size_t folder);

    void ChooseFromList(int list, int index);    // a list of the settings, with the arrow keys
    void SetCriterion(int checkBox, bool checked);
    // Picks the folder, in the order of the folder page, from "Select" to OK.
    void PickDestination(std::size_t folder);
    void SelectInPicker(std::size_t folder);
    std::size_t CountPickerFolders();
    std::size_t SelectedPickerFolder();

    // The message that ends a run, dismissed; returns its text when the run is over.
    std::wstring FinishRun();
    // Until it has something to tell or is over.
    void WaitForRun();
    // On the message in front, the product's or the system's.
    std::wstring MessageText();
    // On the question whether to stop.
    void Answer(bool stop) { Press(Page::stopQuestion, stop ? IDYES : IDNO); }
    void TypeFileName(const std::wstring& path);
    DWORD FilesChosen() const { return filesChosen; }

    void Note(const std::string& move) { moves.push_back(move); }
    std::string Moves() const;    // what was done, one step a line
    // Closes whatever is there until the wizard has ended; ends the process when it will not.
    void CloseAll();

private:
    HWND Reach(Page page);
    void PressKey(Page page, WORD key);
    HTREEITEM ItemOf(int tree, std::size_t folder);
    void WaitForOtherCheck(HTREEITEM item, int before);

    ModalDriver& driver;
    const std::atomic<bool>& over;
    HWND window = nullptr;
    DWORD filesChosen = 0;
    std::vector<std::string> moves;
};

// Runs the wizard on a thread of its own while `script` uses it, and returns when both are gone. What goes
// wrong fails the test with the moves so far; a wizard that the script leaves open is closed and counts as a
// failure.
struct WizardRun
{
    std::vector<std::wstring> helpFiles;    // those that Help was pressed for
    DWORD filesChosen = 0;                  // in the save dialog
    std::string moves;
};
WizardRun UseWizard(const std::function<void(WizardUser&)>& script);
