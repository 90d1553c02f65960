#pragma once

#include "explorer/office/CommandBar.h"
#include "explorer/office/ControlObject.h"

#include <windows.h>

#include <wrl/client.h>

// A menu of the menu bar, or one inside another. Its entries are the controls of a bar of its own.
class CCommandBarPopup final : public ControlObject<RefusedPopup, CommandBarPopup>
{
public:
    explicit CCommandBarPopup(const SharedContext& context, ControlState begin = {});

    STDMETHODIMP get_Type(MsoControlType* value) noexcept override;
    STDMETHODIMP get_CommandBar(CommandBar** value) noexcept override;
    STDMETHODIMP get_Controls(CommandBarControls** value) noexcept override;

    CCommandBarControls* GetSubControls() noexcept override { return &bar->GetControls(); }
    void Detach() noexcept override;

private:
    ~CCommandBarPopup() override { bar->Detach(); }

    Microsoft::WRL::ComPtr<CCommandBar> bar;
};
