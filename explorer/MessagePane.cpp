#include "explorer/MessagePane.h"

#include "explorer/MessageImages.h"
#include "explorer/Metrics.h"
#include "explorer/resource.h"
#include "win/OleException.h"
#include "win/ThisModule.h"

#include <windows.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace
{
// In the order of the columns; widths at 96 DPI.
struct Heading
{
    const wchar_t* text;
    int width;
    int format;
};
constexpr Heading headings[] = {{L"From", 150, LVCFMT_LEFT},
                                {L"Subject", 235, LVCFMT_LEFT},
                                {L"Received", 145, LVCFMT_LEFT},
                                {L"Size", 70, LVCFMT_RIGHT},
                                {L"Marks", 110, LVCFMT_LEFT}};

// What a click on a heading sorts by; none for one that stands for nothing in the store.
std::optional<MessageOrder::Key> KeyOf(int column)
{
    switch (column)
    {
    case MessagePane::sender:
        return MessageOrder::Key::sender;
    case MessagePane::subject:
        return MessageOrder::Key::subject;
    case MessagePane::received:
        return MessageOrder::Key::received;
    case MessagePane::size:
        return MessageOrder::Key::size;
    default:
        return std::nullopt;
    }
}

// Names begin with A; of times and sizes the newest and the largest come first.
bool BeginsDescending(MessageOrder::Key key)
{
    return key == MessageOrder::Key::received || key == MessageOrder::Key::size;
}

std::wstring FormatSize(LONG bytes)
{
    constexpr LONG unit = 1024;
    return std::to_wstring((std::max(bytes, 0L) + unit - 1) / unit) + L" KB";
}

std::wstring FormatMarks(const MessageRow& row)
{
    if (row.flagged && row.expired)
        return L"Flagged, expired";
    return row.flagged ? L"Flagged" : row.expired ? L"Expired" : L"";
}
}    // namespace

std::wstring FormatTime(const FILETIME& time)
{
    if (time.dwLowDateTime == 0 && time.dwHighDateTime == 0)
        return {};
    SYSTEMTIME utc{};
    SYSTEMTIME local{};
    if (!::FileTimeToSystemTime(&time, &utc) || !::SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local))
        return {};
    wchar_t date[80] = L"";
    wchar_t clock[80] = L"";
    ::GetDateFormatEx(nullptr, DATE_SHORTDATE, &local, nullptr, date, ARRAYSIZE(date), nullptr);
    ::GetTimeFormatEx(nullptr, TIME_NOSECONDS, &local, nullptr, clock, ARRAYSIZE(clock));
    return std::wstring(date) + L' ' + clock;
}

void MessagePane::Create(HWND parent)
{
    constexpr DWORD style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | LVS_REPORT |
                            LVS_OWNERDATA | LVS_SHOWSELALWAYS | LVS_SINGLESEL | LVS_SHAREIMAGELISTS;
    Attach(::CreateWindowExW(WS_EX_CLIENTEDGE, WC_LISTVIEWW, L"Messages", style, 0, 0, 0, 0, parent,
                             reinterpret_cast<HMENU>(IDC_MESSAGES), ThisModule(), nullptr));
    SetExtendedStyle(LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
    images = MakeMessageImages();
    plain = MakeMessageFont(false);
    bold = MakeMessageFont(true);
    SendMessage(LVM_SETIMAGELIST, LVSIL_SMALL, reinterpret_cast<LPARAM>(images.get()));
    for (int column = 0; column < static_cast<int>(std::size(headings)); ++column)
        InsertColumn(column, headings[column].text, Scaled(headings[column].width), headings[column].format);
}

void MessagePane::Show(MessageTable messages)
{
    SetItemState(-1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    Put(std::move(messages));
    SendMessage(LVM_SETITEMCOUNT, table.GetCount(), 0);
    if (table.GetCount() > 0)
        EnsureVisible(0);
    ::InvalidateRect(GetSafeHwnd(), nullptr, TRUE);
}

void MessagePane::ShowAgain(MessageTable messages)
{
    const int row = GetSelection();
    const EntryId kept = row >= 0 ? RowAt(row).id : EntryId();
    Put(std::move(messages));
    SendMessage(LVM_SETITEMCOUNT, table.GetCount(), LVSICF_NOSCROLL);
    if (row >= 0)
        SelectAgain(kept);
    ::InvalidateRect(GetSafeHwnd(), nullptr, TRUE);
}

void MessagePane::Put(MessageTable messages)
{
    table = std::move(messages);
    Sort();
}

void MessagePane::SortBy(int column)
{
    const auto key = KeyOf(column);
    if (!key)
        return;
    order = {*key, *key == order.key ? !order.descending : BeginsDescending(*key)};
    const int row = GetSelection();
    const EntryId kept = row >= 0 ? RowAt(row).id : EntryId();
    Sort();
    if (row >= 0)
        SelectAgain(kept);
    ::InvalidateRect(GetSafeHwnd(), nullptr, TRUE);
}

void MessagePane::Sort()
{
    const bool sorted = table.Sort(order);
    const auto heading = reinterpret_cast<HWND>(SendMessage(LVM_GETHEADER));
    for (int column = 0; column < static_cast<int>(std::size(headings)); ++column)
    {
        HDITEMW item{};
        item.mask = HDI_FORMAT;
        ::SendMessageW(heading, HDM_GETITEMW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&item));
        item.fmt &= ~(HDF_SORTUP | HDF_SORTDOWN);
        if (sorted && KeyOf(column) == order.key)
            item.fmt |= order.descending ? HDF_SORTDOWN : HDF_SORTUP;
        ::SendMessageW(heading, HDM_SETITEMW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&item));
    }
}

void MessagePane::SelectAgain(const EntryId& message)
{
    const int row = GetSelection();
    if (row >= 0 && RowAt(row).id == message)
        return;
    SetItemState(-1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    if (const auto found = table.FindRow(message))
        Select(static_cast<int>(*found));
}

int MessagePane::GetSelection() const
{
    return static_cast<int>(SendMessage(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}

const MessageRow& MessagePane::RowAt(int row)
{
    static const MessageRow unreadable;
    try
    {
        return table.GetRow(static_cast<std::size_t>(row));
    }
    catch (const COleException&)
    {
        // Asked for while the list draws itself: an empty row there, and a refresh tells what is wrong.
        return unreadable;
    }
}

std::optional<MessageRow> MessagePane::GetSelected()
{
    const int row = GetSelection();
    return row < 0 ? std::nullopt : std::optional(RowAt(row));
}

void MessagePane::Select(int row) const
{
    constexpr UINT state = LVIS_SELECTED | LVIS_FOCUSED;
    SetItemState(row, state, state);
    EnsureVisible(row);
}

void MessagePane::MoveSelection(int rows) const
{
    const int count = GetItemCount();
    const int row = GetSelection();
    if (count > 0)
        Select(row < 0 ? 0 : std::clamp(row + rows, 0, count - 1));
}

std::wstring MessagePane::TextOf(const MessageRow& row, int column) const
{
    switch (column)
    {
    case sender:
        return row.sender;
    case subject:
        return row.subject;
    case received:
        return FormatTime(row.received);
    case size:
        return row.id.empty() ? std::wstring() : FormatSize(row.size);
    default:
        return FormatMarks(row);
    }
}

void MessagePane::FillItem(LVITEMW& item)
{
    const MessageRow& row = RowAt(item.iItem);
    if (item.mask & LVIF_IMAGE)
        item.iImage = ImageOf(row);
    if (!(item.mask & LVIF_TEXT) || item.cchTextMax <= 0)
        return;
    text = TextOf(row, item.iSubItem);
    ::lstrcpynW(item.pszText, text.c_str(), item.cchTextMax);
}

LRESULT MessagePane::Draw(NMLVCUSTOMDRAW& drawing)
{
    if (drawing.nmcd.dwDrawStage == CDDS_PREPAINT)
        return CDRF_NOTIFYITEMDRAW;
    if (drawing.nmcd.dwDrawStage != CDDS_ITEMPREPAINT)
        return CDRF_DODEFAULT;
    const MessageRow& row = RowAt(static_cast<int>(drawing.nmcd.dwItemSpec));
    ::SelectObject(drawing.nmcd.hdc, row.unread ? bold.get() : plain.get());
    if (row.expired)
        drawing.clrText = ::GetSysColor(COLOR_GRAYTEXT);
    return CDRF_NEWFONT;
}
