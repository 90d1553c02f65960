#pragma once

#include "explorer/office/RefusedAccessible.h"

#include "contracts/Office.h"

#include <windows.h>

// What no add-in of this kind asks of a control of any kind.
template <typename Interface>
class RefusedControl : public RefusedAccessible<Interface>
{
public:
    STDMETHODIMP Copy(VARIANT, VARIANT, CommandBarControl** control) noexcept override
    {
        return Refuse(control);
    }
    STDMETHODIMP get_Height(int* value) noexcept override { return Refuse(value); }
    STDMETHODIMP put_Height(int) noexcept override { return Refuse(); }
    STDMETHODIMP get_HelpContextId(int* value) noexcept override { return Refuse(value); }
    STDMETHODIMP put_HelpContextId(int) noexcept override { return Refuse(); }
    STDMETHODIMP get_HelpFile(BSTR* value) noexcept override { return Refuse(value); }
    STDMETHODIMP put_HelpFile(BSTR) noexcept override { return Refuse(); }
    STDMETHODIMP Move(VARIANT, VARIANT, CommandBarControl** control) noexcept override
    {
        return Refuse(control);
    }
    STDMETHODIMP get_Left(int* value) noexcept override { return Refuse(value); }
    STDMETHODIMP get_OLEUsage(MsoControlOLEUsage* value) noexcept override { return Refuse(value); }
    STDMETHODIMP put_OLEUsage(MsoControlOLEUsage) noexcept override { return Refuse(); }
    STDMETHODIMP get_Priority(int* value) noexcept override { return Refuse(value); }
    STDMETHODIMP put_Priority(int) noexcept override { return Refuse(); }
    STDMETHODIMP Reset() noexcept override { return Refuse(); }
    STDMETHODIMP SetFocus() noexcept override { return Refuse(); }
    STDMETHODIMP get_Top(int* value) noexcept override { return Refuse(value); }
    STDMETHODIMP get_Width(int* value) noexcept override { return Refuse(value); }
    STDMETHODIMP put_Width(int) noexcept override { return Refuse(); }
    STDMETHODIMP get_IsPriorityDropped(VARIANT_BOOL* value) noexcept override { return Refuse(value); }
    STDMETHODIMP Reserved1() noexcept override { return Refuse(); }
    STDMETHODIMP Reserved2() noexcept override { return Refuse(); }
    STDMETHODIMP Reserved3() noexcept override { return Refuse(); }
    STDMETHODIMP Reserved4() noexcept override { return Refuse(); }
    STDMETHODIMP Reserved5() noexcept override { return Refuse(); }
    STDMETHODIMP Reserved6() noexcept override { return Refuse(); }
    STDMETHODIMP Reserved7() noexcept override { return Refuse(); }
};

// What it does not ask of a button.
class RefusedButton : public RefusedControl<_CommandBarButton>
{
public:
    STDMETHODIMP get_BuiltInFace(VARIANT_BOOL* value) noexcept override { return Refuse(value); }
    STDMETHODIMP put_BuiltInFace(VARIANT_BOOL) noexcept override { return Refuse(); }
    STDMETHODIMP CopyFace() noexcept override { return Refuse(); }
    STDMETHODIMP get_FaceId(int* value) noexcept override { return Refuse(value); }
    STDMETHODIMP put_FaceId(int) noexcept override { return Refuse(); }
    STDMETHODIMP get_HyperlinkType(MsoCommandBarButtonHyperlinkType* value) noexcept override
    {
        return Refuse(value);
    }
    STDMETHODIMP put_HyperlinkType(MsoCommandBarButtonHyperlinkType) noexcept override { return Refuse(); }
};

// What it does not ask of a pop-up.
class RefusedPopup : public RefusedControl<CommandBarPopup>
{
public:
    STDMETHODIMP get_OLEMenuGroup(MsoOLEMenuGroup* value) noexcept override { return Refuse(value); }
    STDMETHODIMP put_OLEMenuGroup(MsoOLEMenuGroup) noexcept override { return Refuse(); }
};
