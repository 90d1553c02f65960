#pragma once

#include "explorer/office/ModelContext.h"

#include "contracts/Office.h"

#include <windows.h>

#include <string>

class CCommandBarButton;
class CCommandBarControls;

// What every control of a bar has, whatever its kind.
struct ControlState
{
    std::wstring caption = {};    // "&" stands before the letter that is its key
    std::wstring tag = {};
    std::wstring tooltip = {};
    std::wstring description = {};
    std::wstring parameter = {};
    std::wstring action = {};
    bool enabled = true;
    bool visible = true;
    bool beginsGroup = false;
    bool builtIn = false;
    int id = 1;          // of a control of the host's own: its command; 1 for what add-ins make
    int instance = 0;    // differs among all controls of the model; shown as a command of that number
    OwnerNumber owner = 0;
};

// A control as the window and the collections see it, beside the interface that add-ins see.
class CommandControl
{
public:
    const ControlState& GetState() const noexcept { return state; }
    virtual CommandBarControl* GetInterface() noexcept = 0;                       // borrowed
    virtual CCommandBarButton* AsButton() noexcept { return nullptr; }            // null for others
    virtual CCommandBarControls* GetSubControls() noexcept { return nullptr; }    // of a pop-up
    virtual void Detach() noexcept { collection = nullptr; }                      // leaves its bar for good
    void Attach(CCommandBarControls& owner) noexcept { collection = &owner; }

protected:
    ~CommandControl() = default;

    ControlState state;
    CCommandBarControls* collection = nullptr;    // null once deleted
};

// A caption as it is read: without the mark of its key.
std::wstring PlainCaption(const std::wstring& caption);
