#pragma once

#include <windows.h>

// Where the panes lie: folders on the left, messages on the right, the reading pane below those, with a gap
// between each two that can be dragged. All in pixels of the window's client area.
class SplitLayout
{
public:
    enum class Gap
    {
        none,
        upright,    // between folders and the rest
        level       // between messages and the reading pane
    };

    explicit SplitLayout(int dpi) noexcept;

    void SetArea(const RECT& area) noexcept;    // what the panes share
    RECT GetFolders() const noexcept;
    RECT GetMessages() const noexcept;
    RECT GetReading() const noexcept;

    Gap HitTest(POINT point) const noexcept;
    void Drag(Gap gap, POINT to) noexcept;    // no pane becomes smaller than it can be used

private:
    int Left() const noexcept;    // the gaps' upper left corners
    int Top() const noexcept;

    int gapWidth;
    int smallest;
    int folderWidth;        // as the user wants it; less where there is not the room
    double messageShare;    // the messages' part of the height
    RECT area{};
};
