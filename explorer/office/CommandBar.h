#pragma once

#include "explorer/office/CommandBarControls.h"
#include "explorer/office/ModelObject.h"
#include "explorer/office/RefusedBars.h"

#include <windows.h>

#include <wrl/client.h>

#include <string>

class CCommandBars;

// A tool bar, the menu bar, or what a pop-up shows. Hidden until somebody makes it visible, but for the
// host's own.
class CCommandBar final : public ModelObject<RefusedCommandBar, CommandBar, _IMsoOleAccDispObj, IAccessible>
{
public:
    CCommandBar(const SharedContext& context, std::wstring name, MsoBarPosition position,
                bool builtIn = false);

    STDMETHODIMP get_Application(IDispatch** value) noexcept override
    {
        return GetApplication(context, value);
    }
    STDMETHODIMP get_BuiltIn(VARIANT_BOOL* value) noexcept override;
    STDMETHODIMP get_Controls(CommandBarControls** value) noexcept override;
    STDMETHODIMP Delete() noexcept override;    // E_FAIL for the host's own
    STDMETHODIMP get_Enabled(VARIANT_BOOL* value) noexcept override;
    STDMETHODIMP put_Enabled(VARIANT_BOOL value) noexcept override;
    STDMETHODIMP FindControl(
        VARIANT type, VARIANT id, VARIANT tag, VARIANT visible, VARIANT recursive,
        CommandBarControl** control) noexcept override;    // S_OK and null: there is none
    STDMETHODIMP get_Index(int* value) noexcept override;
    STDMETHODIMP get_InstanceId(int* value) noexcept override;
    STDMETHODIMP get_Name(BSTR* value) noexcept override;
    STDMETHODIMP put_Name(BSTR value) noexcept override;
    STDMETHODIMP get_NameLocal(BSTR* value) noexcept override { return get_Name(value); }
    STDMETHODIMP put_NameLocal(BSTR value) noexcept override { return put_Name(value); }
    STDMETHODIMP get_Parent(IDispatch** value) noexcept override;
    STDMETHODIMP get_Position(MsoBarPosition* value) noexcept override;
    STDMETHODIMP put_Position(MsoBarPosition value) noexcept override;
    STDMETHODIMP get_Type(MsoBarType* value) noexcept override;
    STDMETHODIMP get_Visible(VARIANT_BOOL* value) noexcept override;
    STDMETHODIMP put_Visible(VARIANT_BOOL value) noexcept override;

    CCommandBarControls& GetControls() noexcept { return *controls.Get(); }
    const std::wstring& GetName() const noexcept { return name; }
    bool IsShown() const noexcept { return visible && enabled; }
    int GetInstance() const noexcept { return instance; }
    OwnerNumber GetOwner() const noexcept { return owner; }
    void Attach(CCommandBars& parent) noexcept { bars = &parent; }
    void Detach() noexcept;    // leaves the window for good, with all its controls

private:
    ~CCommandBar() override;

    std::wstring name;
    MsoBarPosition position;
    bool builtIn;
    bool enabled = true;
    bool visible;
    int instance;
    OwnerNumber owner;
    Microsoft::WRL::ComPtr<CCommandBarControls> controls;
    CCommandBars* bars = nullptr;    // null for a pop-up's, and once deleted
};
