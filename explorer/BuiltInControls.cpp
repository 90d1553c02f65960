#include "explorer/BuiltInControls.h"

#include "explorer/office/CommandBarButton.h"
#include "explorer/office/CommandBarPopup.h"
#include "explorer/resource.h"

#include <windows.h>

#include <comutil.h>

#include <span>

namespace
{
struct Entry
{
    int command;
    const wchar_t* caption;
    const wchar_t* shortcut = nullptr;
    const wchar_t* tooltip = nullptr;
};
struct Menu
{
    const wchar_t* caption;
    std::span<const Entry> entries;
};

constexpr Entry fileEntries[] = {{IDM_EXIT, L"E&xit", L"Alt+F4"}};
constexpr Entry editEntries[] = {{IDM_COPY, L"&Copy", L"Ctrl+C"},
                                 {IDM_SELECT_ALL, L"Select &All", L"Ctrl+A"}};
constexpr Entry viewEntries[] = {{IDM_REFRESH, L"&Refresh", L"F5"}};
constexpr Entry goEntries[] = {{IDM_NEXT_MESSAGE, L"&Next Message"},
                               {IDM_PREVIOUS_MESSAGE, L"&Previous Message"}};
constexpr Entry toolsEntries[] = {{IDM_ADD_INS, L"&Add-ins..."}};
constexpr Entry actionsEntries[] = {{IDM_READ, L"&Read Message"}};
constexpr Entry helpEntries[] = {{IDM_ABOUT, L"&About Mail Explorer"}};
constexpr Menu menus[] = {{L"&File", fileEntries}, {L"&Edit", editEntries},   {L"&View", viewEntries},
                          {L"&Go", goEntries},     {L"&Tools", toolsEntries}, {L"&Actions", actionsEntries},
                          {L"&Help", helpEntries}};
constexpr Entry standardButtons[] = {{IDM_REFRESH, L"Refresh", L"F5", L"Read the folders and messages again"},
                                     {IDM_ADD_INS, L"Add-ins...", nullptr, L"Load and unload add-ins"}};

ControlState StateOf(const wchar_t* caption, int id)
{
    ControlState state;
    state.caption = caption;
    state.builtIn = true;
    state.id = id;
    return state;
}

void AddButtons(CCommandBarControls& controls, std::span<const Entry> entries, const SharedContext& context)
{
    for (const Entry& entry : entries)
    {
        ControlState state = StateOf(entry.caption, entry.command);
        if (entry.tooltip)
            state.tooltip = entry.tooltip;
        const auto button = MakeModelObject<CCommandBarButton>(context, std::move(state));
        if (entry.shortcut)
            _com_util::CheckError(button->put_ShortcutText(_bstr_t(entry.shortcut)));
        controls.Append(button);
    }
}
}    // namespace

void AddBuiltInControls(CCommandBars& bars, const SharedContext& context)
{
    constexpr int anyPopup = 1;
    for (const Menu& menu : menus)
    {
        const auto popup = MakeModelObject<CCommandBarPopup>(context, StateOf(menu.caption, anyPopup));
        AddButtons(*popup->GetSubControls(), menu.entries, context);
        bars.GetMenuBar().GetControls().Append(popup);
    }
    AddButtons(bars.AppendBuiltIn(L"Standard").GetControls(), standardButtons, context);
}
