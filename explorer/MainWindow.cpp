#include "explorer/MainWindow.h"

#include "explorer/AddInsDlg.h"
#include "explorer/BuiltInControls.h"
#include "explorer/Metrics.h"
#include "explorer/office/CommandBarButton.h"
#include "explorer/resource.h"
#include "win/OleException.h"
#include "win/ThisModule.h"
#include "win/WindowBoundary.h"

#include <windows.h>

#include <commctrl.h>

#include <utility>

namespace
{
constexpr wchar_t title[] = L"Mail Explorer";
constexpr wchar_t windowClass[] = L"TalmorexMailExplorer";
constexpr UINT updateBars = WM_APP + 1;
constexpr SIZE sizeAt96 = {960, 640};

HWND CreateFrame()
{
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    description.lpfnWndProc = ::DefWindowProcW;
    description.hInstance = ThisModule();
    description.hIcon = ::LoadIconW(nullptr, IDI_APPLICATION);
    description.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
    description.hbrBackground = ::GetSysColorBrush(COLOR_3DFACE);
    description.lpszClassName = windowClass;
    ::RegisterClassExW(&description);    // refused after the first time
    const HWND window = ::CreateWindowExW(0, windowClass, title, WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                                          CW_USEDEFAULT, CW_USEDEFAULT, Scaled(sizeAt96.cx),
                                          Scaled(sizeAt96.cy), nullptr, nullptr, ThisModule(), nullptr);
    if (!window)
        throw COleException(HRESULT_FROM_WIN32(::GetLastError()));
    return window;
}
}    // namespace

CMainWindow::CMainWindow()
    : application(MakeModelObject<CApplication>(static_cast<CommandBarsWatcher&>(*this))),
      addIns(*application.Get()),
      font(MakeMessageFont(false)),
      layout(static_cast<int>(::GetDpiForSystem()))
{
    SubclassWindow(CreateFrame());
    CreateChildren();
    AddBuiltInControls(application->GetBars(), application->GetContext());
    UpdateBars();
}

CMainWindow::~CMainWindow()
{
    Shutdown();
    if (GetSafeHwnd())
        ::DestroyWindow(GetSafeHwnd());
}

const MessageMap& CMainWindow::GetMessageMap() const
{
    static constexpr MessageHandler handlers[] = {
        OnMessage<&CMainWindow::OnSize>(WM_SIZE),
        OnMessage<&CMainWindow::OnSetFocus>(WM_SETFOCUS),
        OnMessage<&CMainWindow::OnActivate>(WM_ACTIVATE),
        OnMessage<&CMainWindow::OnSetCursor>(WM_SETCURSOR),
        OnMessage<&CMainWindow::OnButtonDown>(WM_LBUTTONDOWN),
        OnMessage<&CMainWindow::OnMouseMove>(WM_MOUSEMOVE),
        OnMessage<&CMainWindow::OnButtonUp>(WM_LBUTTONUP),
        OnMessage<&CMainWindow::OnCaptureChanged>(WM_CAPTURECHANGED),
        OnMessage<&CMainWindow::OnUpdateBars>(updateBars),
        OnCtlColor<&CMainWindow::OnColour>(),
        ::OnClose<&CMainWindow::OnClose>(),
        OnNotify<&CMainWindow::OnFolderChanged>(IDC_FOLDERS, static_cast<UINT>(TVN_SELCHANGEDW)),
        OnNotify<&CMainWindow::OnMessageChanged>(IDC_MESSAGES, static_cast<UINT>(LVN_ITEMCHANGED)),
        OnNotify<&CMainWindow::OnGetMessage>(IDC_MESSAGES, static_cast<UINT>(LVN_GETDISPINFOW)),
        OnNotify<&CMainWindow::OnDrawMessage>(IDC_MESSAGES, static_cast<UINT>(NM_CUSTOMDRAW)),
        OnNotify<&CMainWindow::OnHeadingClick>(IDC_MESSAGES, static_cast<UINT>(LVN_COLUMNCLICK)),
        OnNotify<&CMainWindow::OnToolTip>(IDC_TOOL_BAR, static_cast<UINT>(TBN_GETINFOTIPW)),
        OnNotify<&CMainWindow::OnDropDown>(IDC_TOOL_BAR, static_cast<UINT>(TBN_DROPDOWN)),
    };
    static const MessageMap map{&CWnd::GetMessageMap(), handlers};
    return map;
}

void CMainWindow::CreateChildren()
{
    const HWND parent = GetSafeHwnd();
    const auto create = [&](CWnd& child, const wchar_t* kind, DWORD extended, DWORD style, int id)
    {
        child.Attach(::CreateWindowExW(extended, kind, L"", WS_CHILD | style, 0, 0, 0, 0, parent,
                                       reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), ThisModule(),
                                       nullptr));
        child.SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(font.get()));
    };
    folders.Create(parent);
    messages.Create(parent);
    create(reading, WC_EDITW, WS_EX_CLIENTEDGE,
           WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL | ES_NOHIDESEL,
           IDC_READING);
    reading.SendMessage(EM_SETLIMITTEXT, 0);
    create(status, STATUSCLASSNAMEW, 0, WS_VISIBLE | SBARS_SIZEGRIP, IDC_STATUS);
    create(notice, WC_STATICW, 0, SS_LEFT, IDC_NOTICE);
    for (const CWnd* pane : std::initializer_list<const CWnd*>{&folders, &messages})
        pane->SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(font.get()));
    lastFocus = messages.GetSafeHwnd();
}

LRESULT CMainWindow::WindowProc(const Message& message)
{
    if (message.id == WM_COMMAND && LOWORD(message.wParam) >= firstControlCommand)
    {
        PressInstance(static_cast<int>(LOWORD(message.wParam) - firstControlCommand));
        return 0;
    }
    return CWnd::WindowProc(message);
}

void CMainWindow::LoadAddIns()
{
    addIns.LoadAtStartup();
    UpdateBars();
}

void CMainWindow::Show(int command)
{
    ShowWindow(command);
    ::UpdateWindow(GetSafeHwnd());
}

void CMainWindow::OnCommandBarsChanged()
{
    // An add-in sets one property after the other: the bars follow once it is done.
    if (!std::exchange(updateAsked, true))
        ::PostMessageW(GetSafeHwnd(), updateBars, 0, 0);
}

LRESULT CMainWindow::OnUpdateBars(WPARAM, LPARAM)
{
    if (updateAsked)
        UpdateBars();
    return 0;
}

void CMainWindow::UpdateBars()
{
    updateAsked = false;
    CCommandBars& bars = application->GetBars();
    MenuView shown(bars.GetMenuBar().GetControls(), MenuView::Kind::bar);
    ::SetMenu(GetSafeHwnd(), shown.get());
    menu = std::move(shown);    // the former one ends only now that the window has lost it
    toolBars.Rebuild(GetSafeHwnd(), bars.GetToolBars());
    LayOut();
    ::InvalidateRect(GetSafeHwnd(), nullptr, TRUE);
}

void CMainWindow::OnBuiltInCommand(UINT id)
{
    switch (id)
    {
    case IDM_EXIT:
        return OnCloseAsked();
    case IDM_COPY:
        reading.SendMessage(WM_COPY);
        return;
    case IDM_SELECT_ALL:
        reading.SendMessage(EM_SETSEL, 0, -1);
        return;
    case IDM_REFRESH:
        return store ? Refresh() : OpenStore();
    case IDM_NEXT_MESSAGE:
        return messages.MoveSelection(1);
    case IDM_PREVIOUS_MESSAGE:
        return messages.MoveSelection(-1);
    case IDM_READ:
        ::SetFocus(reading.GetSafeHwnd());
        return;
    case IDM_ADD_INS:
        return ShowAddIns();
    case IDM_ABOUT:
        MessageBox(L"Mail Explorer\n\nShows the default mail store and hosts its add-ins.", title,
                   MB_OK | MB_ICONINFORMATION);
        return;
    }
}

void CMainWindow::OnCloseAsked()
{
    ::PostMessageW(GetSafeHwnd(), WM_CLOSE, 0, 0);
}

void CMainWindow::ShowAddIns()
{
    CAddInsDlg(addIns, *this).DoModal();
}

bool CMainWindow::Press(const std::wstring& caption)
{
    CommandControl* control = application->GetBars().FindCaption(caption);
    if (!control || !control->AsButton())
        return false;
    PressControl(*control);
    return true;
}

void CMainWindow::PressInstance(int instance)
{
    CommandControl* control = application->GetBars().FindInstance(instance);
    if (control && control->AsButton())
        PressControl(*control);
}

void CMainWindow::PressControl(CommandControl& control)
{
    const bool ours = control.GetState().builtIn;
    control.AsButton()->Press();    // may run dialogs and take a while; the control may be gone afterwards
    if (ours || !IsOpen())
        return;
    // Dialogs without an owner may leave this thread without an active window when they end.
    if (!::GetActiveWindow())
        ::SetActiveWindow(GetSafeHwnd());
    // What the add-in did to the store should be seen.
    if (store)
        Refresh();
}

void CMainWindow::OnClose()
{
    // A dialog that an add-in runs stands on the window: it has to end first.
    if (!::IsWindowEnabled(GetSafeHwnd()))
        return;
    Shutdown();
    ::DestroyWindow(GetSafeHwnd());
}

void CMainWindow::Shutdown() noexcept
{
    WindowBoundary(GetSafeHwnd(),
                   [&]
                   {
                       addIns.Shutdown();
                       application->Close();
                       messages.Show({});
                       folders.Clear();
                       store.reset();
                   });
}
