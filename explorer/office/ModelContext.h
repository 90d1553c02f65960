#pragma once

#include "contracts/Office.h"

#include <windows.h>

#include <wrl/client.h>

#include <memory>

// Whom the command bars tell of what happens to them: the window that shows them.
class CommandBarsWatcher
{
public:
    virtual void OnCommandBarsChanged() = 0;
    virtual void OnBuiltInCommand(UINT id) = 0;    // a control of the host's own was pressed
    virtual void OnDisplay() = 0;                  // somebody asks for the window to be shown
    virtual void OnCloseAsked() = 0;               // or to be closed
    virtual HWND GetWindow() const = 0;

protected:
    ~CommandBarsWatcher() = default;
};

// Whose call makes bars and controls: 0 the host itself, else the number of an add-in.
using OwnerNumber = int;

// What all objects of one object model share. Those that an add-in keeps longer than it should find it empty.
struct ModelContext
{
    CommandBarsWatcher* watcher = nullptr;    // borrowed until the model is closed
    IDispatch* application = nullptr;         // borrowed likewise: the objects do not keep their parents
    OwnerNumber owner = 0;
    int lastInstance = 0;

    void Changed() const
    {
        if (watcher)
            watcher->OnCommandBarsChanged();
    }
};
using SharedContext = std::shared_ptr<ModelContext>;

// For get_Application of every object.
inline HRESULT GetApplication(const SharedContext& context, IDispatch** value) noexcept
{
    if (!value)
        return E_POINTER;
    *value = context->application;
    if (!*value)
        return CO_E_OBJNOTCONNECTED;
    (*value)->AddRef();
    return S_OK;
}
