#pragma once

#include "explorer/mail/MessageTable.h"
#include "win/GdiObject.h"
#include "win/ImageList.h"
#include "win/ListCtrl.h"

#include <windows.h>

#include <commctrl.h>

#include <optional>
#include <string>

// A folder's messages, one a row, read when they come into sight. Unread ones are bold, flagged and expired
// ones are marked in the picture and the last column. An arrow in a heading shows what they are sorted by.
class MessagePane : public CListCtrl
{
public:
    enum Column
    {
        sender,
        subject,
        received,
        size,
        marks
    };

    void Create(HWND parent);
    void Show(MessageTable messages);
    // As Show, for the same folder read again: the selected message stays selected while it is there, and the
    // list where it was scrolled to.
    void ShowAgain(MessageTable messages);
    // What a click on a heading asks for: the messages of this folder and of those to come by that column, by
    // the same column once more the other way round. The selected message stays selected.
    void SortBy(int column);

    std::optional<MessageRow> GetSelected();
    void Select(int row) const;
    void MoveSelection(int rows) const;

    // What the window is told about the list.
    void FillItem(LVITEMW& item);
    LRESULT Draw(NMLVCUSTOMDRAW& drawing);

private:
    void Put(MessageTable messages);
    void Sort();
    int GetSelection() const;    // -1: none
    void SelectAgain(const EntryId& message);
    const MessageRow& RowAt(int row);
    std::wstring TextOf(const MessageRow& row, int column) const;

    MessageTable table;
    MessageOrder order;
    CImageList images;    // outlives the window, which borrows it
    FontHandle plain;
    FontHandle bold;
    std::wstring text;    // of the item filled last
};

// The time in the user's own zone and form; empty for none.
std::wstring FormatTime(const FILETIME& time);
