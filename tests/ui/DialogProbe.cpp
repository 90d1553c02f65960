#include "tests/ui/DialogProbe.h"

#include "tests/ui/ModalDriver.h"
#include "win/GdiObject.h"

#include <memory>
#include <string_view>
#include <type_traits>

namespace
{
struct DcDeleter
{
    void operator()(HDC context) const noexcept { ::DeleteDC(context); }
};
using MemoryDc = std::unique_ptr<std::remove_pointer_t<HDC>, DcDeleter>;

bool IsOfClass(HWND window, std::wstring_view name)
{
    wchar_t className[32] = L"";
    ::GetClassNameW(window, className, ARRAYSIZE(className));
    return className == name;
}

bool ShowsText(HWND control)
{
    const LONG_PTR kind = ::GetWindowLongPtrW(control, GWL_STYLE) & SS_TYPEMASK;
    return IsOfClass(control, L"Static") && kind != SS_ICON && kind != SS_BITMAP;
}

bool IsGroupBox(HWND control)
{
    return IsOfClass(control, L"Button") &&
           (::GetWindowLongPtrW(control, GWL_STYLE) & BS_TYPEMASK) == BS_GROUPBOX;
}

// Whether the control lies inside the group box's frame, below its caption.
bool Surrounds(HWND dialog, HWND group, HWND control)
{
    const RECT frame = RectIn(dialog, group);
    const RECT place = RectIn(dialog, control);
    return IsGroupBox(group) && place.left > frame.left && place.right < frame.right &&
           place.top >= frame.top + TextSizeOf(group).cy && place.bottom < frame.bottom;
}

bool Cover(HWND dialog, HWND one, HWND other)
{
    const RECT place = RectIn(dialog, one);
    const RECT otherPlace = RectIn(dialog, other);
    RECT common{};
    return ::IntersectRect(&common, &place, &otherPlace) && !Surrounds(dialog, one, other) &&
           !Surrounds(dialog, other, one);
}

std::wstring Describe(HWND control)
{
    return std::to_wstring(::GetDlgCtrlID(control)) + L" '" + TextOf(control) + L"'";
}

void AddFaultsOf(HWND dialog, HWND control, std::vector<std::wstring>& faults)
{
    const SIZE client = ClientSizeOf(dialog);
    const RECT place = RectIn(dialog, control);
    if (place.left < 0 || place.top < 0 || place.right > client.cx || place.bottom > client.cy)
        faults.push_back(Describe(control) + L" reaches out of the dialog");
    if (ShowsText(control) && !TextFits(control))
        faults.push_back(Describe(control) + L" does not fit");
}
}    // namespace

SIZE PixelsOf(HWND dialog, int width, int height)
{
    RECT units{0, 0, width, height};
    ::MapDialogRect(dialog, &units);
    return {units.right, units.bottom};
}

SIZE ClientSizeOf(HWND window)
{
    RECT client{};
    ::GetClientRect(window, &client);
    return {client.right, client.bottom};
}

RECT RectIn(HWND dialog, HWND control)
{
    RECT place{};
    ::GetWindowRect(control, &place);
    ::MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

std::vector<HWND> ChildrenOf(HWND dialog)
{
    std::vector<HWND> children;
    for (HWND child = ::GetWindow(dialog, GW_CHILD); child; child = ::GetWindow(child, GW_HWNDNEXT))
        children.push_back(child);
    return children;
}

HWND StaticWithText(HWND dialog, const std::wstring& text)
{
    return ::FindWindowExW(dialog, nullptr, L"Static", text.c_str());
}

std::vector<int> TabOrderOf(HWND dialog)
{
    std::vector<int> ids;
    const HWND first = ::GetNextDlgTabItem(dialog, nullptr, FALSE);
    HWND control = first;
    do
    {
        ids.push_back(::GetDlgCtrlID(control));
        control = ::GetNextDlgTabItem(dialog, control, FALSE);
    } while (control && control != first && ids.size() < 100);
    return ids;
}

Colours ColoursOf(HWND dialog, UINT message, HWND control)
{
    const MemoryDc context(::CreateCompatibleDC(nullptr));
    ::SetTextColor(context.get(), RGB(0, 0, 0));
    const LRESULT brush = ::SendMessageW(dialog, message, reinterpret_cast<WPARAM>(context.get()),
                                         reinterpret_cast<LPARAM>(control));
    LOGBRUSH description{};
    ::GetObjectW(reinterpret_cast<HGDIOBJ>(brush), sizeof description, &description);
    return {description.lbStyle, description.lbColor, ::GetBkColor(context.get()),
            ::GetTextColor(context.get())};
}

SIZE TextSizeOf(HWND control)
{
    const MemoryDc context(::CreateCompatibleDC(nullptr));
    ::SelectObject(context.get(), reinterpret_cast<HFONT>(::SendMessageW(control, WM_GETFONT, 0, 0)));
    RECT room{0, 0, ClientSizeOf(control).cx, 0};
    ::DrawTextW(context.get(), TextOf(control).c_str(), -1, &room,
                DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX | DT_EXPANDTABS);
    return {room.right, room.bottom};
}

bool TextFits(HWND control)
{
    const SIZE needed = TextSizeOf(control);
    const SIZE room = ClientSizeOf(control);
    return needed.cx <= room.cx && needed.cy <= room.cy;
}

std::vector<std::wstring> LayoutFaultsOf(HWND dialog)
{
    std::vector<std::wstring> faults;
    const std::vector<HWND> children = ChildrenOf(dialog);
    for (std::size_t i = 0; i < children.size(); ++i)
    {
        AddFaultsOf(dialog, children[i], faults);
        for (std::size_t j = i + 1; j < children.size(); ++j)
        {
            if (Cover(dialog, children[i], children[j]))
                faults.push_back(Describe(children[i]) + L" covers " + Describe(children[j]));
        }
    }
    return faults;
}

LOGFONTW FontOf(HWND window)
{
    LOGFONTW font{};
    ::GetObjectW(reinterpret_cast<HFONT>(::SendMessageW(window, WM_GETFONT, 0, 0)), sizeof font, &font);
    return font;
}

std::vector<COLORREF> PixelsDrawnBy(HWND control, const RECT& part)
{
    const SIZE size = ClientSizeOf(control);
    BITMAPINFO format{};
    format.bmiHeader = {sizeof format.bmiHeader, size.cx, -size.cy, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const BitmapHandle canvas(::CreateDIBSection(nullptr, &format, DIB_RGB_COLORS, &bits, nullptr, 0));
    const MemoryDc context(::CreateCompatibleDC(nullptr));
    const HGDIOBJ before = ::SelectObject(context.get(), canvas.get());
    ::SendMessageW(control, WM_PRINT, reinterpret_cast<WPARAM>(context.get()), PRF_CLIENT | PRF_ERASEBKGND);

    std::vector<COLORREF> pixels;
    for (LONG y = part.top; y < part.bottom; ++y)
        for (LONG x = part.left; x < part.right; ++x)
            pixels.push_back(::GetPixel(context.get(), x, y));
    ::SelectObject(context.get(), before);
    return pixels;
}
