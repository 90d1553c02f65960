#include "tests/endtoend/HostProgram.h"

#include "explorer/resource.h"
#include "tests/endtoend/RemoteWindows.h"

#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <string_view>

namespace
{
constexpr wchar_t hostTitle[] = L"Mail Explorer";
constexpr std::size_t textRoom = 512;    // characters

// Of the list, in its order.
enum Column
{
    sender,
    subject,
    marks = 4
};

HWND WaitForHost(const KernelHandle& process)
{
    const DWORD id = ::GetProcessId(process.get());
    return WaitForWindow(
        [id](HWND window)
        {
            DWORD owner = 0;
            ::GetWindowThreadProcessId(window, &owner);
            wchar_t text[260] = L"";
            ::GetWindowTextW(window, text, ARRAYSIZE(text));
            return owner == id && std::wstring_view(text).ends_with(hostTitle);
        },
        "the host's window");
}

// Asks for one item of a list or tree, in the form of its kind of control, with room for the text behind it.
template <typename Item>
std::wstring ReadItem(HWND control, UINT message, WPARAM place, Item& item)
{
    const RemoteMemory memory(control, sizeof item + textRoom * sizeof(wchar_t));
    item.pszText = reinterpret_cast<wchar_t*>(memory.At(sizeof item));
    item.cchTextMax = textRoom;
    memory.Write(item);
    ::SendMessageW(control, message, place, memory.At());
    item = memory.Read<Item>();
    return memory.ReadText(sizeof item, textRoom);
}

std::wstring TextOfCell(HWND list, int row, int column)
{
    LVITEMW item{};
    item.iSubItem = column;
    return ReadItem(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), item);
}

int ImageOfRow(HWND list, int row)
{
    LVITEMW item{};
    item.mask = LVIF_IMAGE;
    item.iItem = row;
    ReadItem(list, LVM_GETITEMW, 0, item);
    return item.iImage;
}

HTREEITEM Next(HWND tree, UINT_PTR kind, HTREEITEM item)
{
    return reinterpret_cast<HTREEITEM>(
        ::SendMessageW(tree, TVM_GETNEXTITEM, kind, reinterpret_cast<LPARAM>(item)));
}

std::wstring CaptionOf(HWND tree, HTREEITEM item)
{
    TVITEMW asked{};
    asked.mask = TVIF_TEXT;
    asked.hItem = item;
    return ReadItem(tree, TVM_GETITEMW, 0, asked);
}

// Until `visit` returns true, from the top; where it did, else null.
HTREEITEM FindFolder(HWND tree, HTREEITEM first, const std::function<bool(const std::wstring&)>& visit)
{
    for (HTREEITEM item = first; item; item = Next(tree, TVGN_NEXT, item))
    {
        if (visit(CaptionOf(tree, item)))
            return item;
        if (const HTREEITEM below = FindFolder(tree, Next(tree, TVGN_CHILD, item), visit))
            return below;
    }
    return nullptr;
}

// A button whose place in its bar is given; its text and where it lies.
std::wstring TextOfButton(HWND bar, int command)
{
    const RemoteMemory memory(bar, textRoom * sizeof(wchar_t));
    ::SendMessageW(bar, TB_GETBUTTONTEXTW, static_cast<WPARAM>(command), memory.At());
    return memory.ReadText(0, textRoom);
}

bool ClickIfThere(HWND bar, const std::wstring& caption)
{
    const auto count = static_cast<int>(::SendMessageW(bar, TB_BUTTONCOUNT, 0, 0));
    for (int place = 0; place < count; ++place)
    {
        const RemoteMemory memory(bar, sizeof(TBBUTTON) + sizeof(RECT));
        ::SendMessageW(bar, TB_GETBUTTON, static_cast<WPARAM>(place), memory.At());
        const auto button = memory.Read<TBBUTTON>();
        if (button.fsStyle & BTNS_SEP || TextOfButton(bar, button.idCommand) != caption)
            continue;
        ::SendMessageW(bar, TB_GETITEMRECT, static_cast<WPARAM>(place), memory.At());
        const auto area = memory.Read<RECT>();
        const LPARAM middle = MAKELPARAM((area.left + area.right) / 2, (area.top + area.bottom) / 2);
        ::PostMessageW(bar, WM_LBUTTONDOWN, MK_LBUTTON, middle);
        ::PostMessageW(bar, WM_LBUTTONUP, 0, middle);
        return true;
    }
    return false;
}
}    // namespace

void RegisterAddIn(const std::wstring& dist)
{
    WaitForExit(Start(L"regsvr32.exe /s \"" + dist + L"\\TalmoreQuorvexOutlookDuplicateRemover.dll\""),
                "the add-in's registration");
}

HostProgram::HostProgram(const std::wstring& dist)
    : process(Start(L"\"" + dist + L"\\mailexplorer.exe\"")),
      window(WaitForHost(process))
{
    WaitUntilIdle();
}

HostProgram::~HostProgram()
{
    if (process)
        ::TerminateProcess(process.get(), 1);
}

void HostProgram::PressToolBarButton(const std::wstring& caption) const
{
    for (HWND bar = nullptr; (bar = ::FindWindowExW(window, bar, TOOLBARCLASSNAMEW, nullptr)) != nullptr;)
        if (ClickIfThere(bar, caption))
            return;
    throw WalkError("the host has no such button");
}

void HostProgram::WaitUntilIdle() const
{
    WaitUntil([this] { return ::IsWindowEnabled(window) && ::SendMessageW(window, WM_NULL, 0, 0) == 0; },
              "the host");
}

void HostProgram::Close()
{
    ::PostMessageW(window, WM_CLOSE, 0, 0);
    WaitForExit(process, "the host");
    process.reset();
}

std::vector<std::wstring> HostProgram::ListFolders() const
{
    std::vector<std::wstring> captions;
    const HWND tree = Child(IDC_FOLDERS);
    FindFolder(tree, Next(tree, TVGN_ROOT, nullptr),
               [&](const std::wstring& caption)
               {
                   captions.push_back(caption);
                   return false;
               });
    return captions;
}

void HostProgram::SelectFolder(const std::wstring& name) const
{
    const HWND tree = Child(IDC_FOLDERS);
    // A folder with unread messages has their number behind its name.
    const HTREEITEM found = FindFolder(tree, Next(tree, TVGN_ROOT, nullptr),
                                       [&](const std::wstring& caption)
                                       { return caption == name || caption.starts_with(name + L" ("); });
    if (!found)
        throw WalkError("the host shows no such folder");
    ::SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(found));
}

std::vector<HostRow> HostProgram::ReadRows() const
{
    const HWND list = Child(IDC_MESSAGES);
    std::vector<HostRow> rows;
    const auto count = static_cast<int>(::SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
    for (int row = 0; row < count; ++row)
        rows.push_back({TextOfCell(list, row, sender), TextOfCell(list, row, subject),
                        TextOfCell(list, row, marks), ImageOfRow(list, row)});
    return rows;
}
