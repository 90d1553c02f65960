#pragma once

#include "explorer/AddInList.h"
#include "explorer/FolderPane.h"
#include "explorer/MenuView.h"
#include "explorer/MessagePane.h"
#include "explorer/SplitLayout.h"
#include "explorer/ToolBarView.h"
#include "explorer/mail/MailStore.h"
#include "explorer/office/OutlookObjects.h"
#include "win/Wnd.h"

#include <windows.h>

#include <wrl/client.h>

#include <memory>
#include <optional>
#include <string>

// The host's window: menus and tool bars with what add-ins put there, the default store's folders and
// messages, and the text of the selected message. Made, used and destroyed on one thread, an apartment of
// COM.
class CMainWindow final : public CWnd, private CommandBarsWatcher
{
public:
    CMainWindow();    // hidden, with neither add-ins nor mail; throws COleException when it cannot be made
    ~CMainWindow() override;

    void LoadAddIns();    // those that ask for it; then their controls are shown
    void OpenStore();     // the default store's; without one the window says how to make one
    void Show(int command);
    void TellStartupComplete() { addIns.TellStartupComplete(); }

    bool IsOpen() const noexcept { return GetSafeHwnd() != nullptr; }
    bool TranslateKey(const MSG& message);    // true for keys that mean something in every pane
    // Presses the control with that caption, read without marks of keys; false when there is none.
    bool Press(const std::wstring& caption);

    AddInList& GetAddIns() noexcept { return addIns; }
    const MessageMap& GetMessageMap() const override;

private:
    void OnCommandBarsChanged() override;
    void OnBuiltInCommand(UINT id) override;
    void OnDisplay() override { Show(SW_SHOW); }
    void OnCloseAsked() override;
    HWND GetWindow() const override { return GetSafeHwnd(); }

    LRESULT WindowProc(const Message& message) override;
    LRESULT OnSize(WPARAM kind, LPARAM size);
    LRESULT OnSetFocus(WPARAM former, LPARAM);
    LRESULT OnActivate(WPARAM kind, LPARAM other);
    LRESULT OnSetCursor(WPARAM window, LPARAM where);
    LRESULT OnButtonDown(WPARAM keys, LPARAM place);
    LRESULT OnMouseMove(WPARAM keys, LPARAM place);
    LRESULT OnButtonUp(WPARAM keys, LPARAM place);
    LRESULT OnCaptureChanged(WPARAM, LPARAM window);
    LRESULT OnUpdateBars(WPARAM, LPARAM);
    HBRUSH OnColour(HDC context, HWND control);
    void OnClose();
    LRESULT OnFolderChanged(NMHDR& notice);
    LRESULT OnMessageChanged(NMHDR& notice);
    LRESULT OnGetMessage(NMHDR& notice);
    LRESULT OnDrawMessage(NMHDR& notice);
    LRESULT OnHeadingClick(NMHDR& notice);
    LRESULT OnToolTip(NMHDR& notice);
    LRESULT OnDropDown(NMHDR& notice);

    void CreateChildren();
    void PressInstance(int instance);
    void PressControl(CommandControl& control);
    void UpdateBars();
    void LayOut();
    void Refresh();
    void ShowFolder(bool again);
    void ShowMessage();
    void ShowStatus();
    void ShowNotice(const std::wstring& text);
    void ShowAddIns();
    void CycleFocus(bool back);
    void Shutdown() noexcept;

    Microsoft::WRL::ComPtr<CApplication> application;
    AddInList addIns;
    std::unique_ptr<MailStore> store;    // null: the notice is shown in place of the panes
    std::wstring storeFailure;

    FontHandle font;
    SplitLayout layout;
    SplitLayout::Gap dragged = SplitLayout::Gap::none;
    std::optional<MenuView> menu;
    ToolBarArea toolBars;
    FolderPane folders;
    MessagePane messages;
    CWnd reading;
    CWnd status;
    CWnd notice;
    HWND lastFocus = nullptr;
    EntryId shownFolder;
    bool updateAsked = false;
    bool refreshing = false;
};
