#pragma once

#include "explorer/office/RefusedAccessible.h"

#include "contracts/Office.h"

#include <windows.h>

// What no add-in of this kind asks of a command bar.
class RefusedCommandBar : public RefusedAccessible<CommandBar>
{
public:
    STDMETHODIMP get_Context(BSTR* value) noexcept override { return Refuse(value); }
    STDMETHODIMP put_Context(BSTR) noexcept override { return Refuse(); }
    STDMETHODIMP get_Height(int* value) noexcept override { return Refuse(value); }
    STDMETHODIMP put_Height(int) noexcept override { return Refuse(); }
    STDMETHODIMP get_Left(int* value) noexcept override { return Refuse(value); }
    STDMETHODIMP put_Left(int) noexcept override { return Refuse(); }
    STDMETHODIMP get_RowIndex(int* value) noexcept override { return Refuse(value); }
    STDMETHODIMP put_RowIndex(int) noexcept override { return Refuse(); }
    STDMETHODIMP get_Protection(MsoBarProtection* value) noexcept override { return Refuse(value); }
    STDMETHODIMP put_Protection(MsoBarProtection) noexcept override { return Refuse(); }
    STDMETHODIMP Reset() noexcept override { return Refuse(); }
    STDMETHODIMP ShowPopup(VARIANT, VARIANT) noexcept override { return Refuse(); }
    STDMETHODIMP get_Top(int* value) noexcept override { return Refuse(value); }
    STDMETHODIMP put_Top(int) noexcept override { return Refuse(); }
    STDMETHODIMP get_Width(int* value) noexcept override { return Refuse(value); }
    STDMETHODIMP put_Width(int) noexcept override { return Refuse(); }
    STDMETHODIMP get_AdaptiveMenu(VARIANT_BOOL* value) noexcept override { return Refuse(value); }
    STDMETHODIMP put_AdaptiveMenu(VARIANT_BOOL) noexcept override { return Refuse(); }
};

// What it does not ask of the collection of bars.
class RefusedCommandBars : public _CommandBars
{
public:
    STDMETHODIMP get_Creator(long* value) noexcept override { return Refuse(value); }
    STDMETHODIMP get_DisplayTooltips(VARIANT_BOOL* value) noexcept override { return Refuse(value); }
    STDMETHODIMP put_DisplayTooltips(VARIANT_BOOL) noexcept override { return Refuse(); }
    STDMETHODIMP get_DisplayKeysInTooltips(VARIANT_BOOL* value) noexcept override { return Refuse(value); }
    STDMETHODIMP put_DisplayKeysInTooltips(VARIANT_BOOL) noexcept override { return Refuse(); }
    STDMETHODIMP get_LargeButtons(VARIANT_BOOL* value) noexcept override { return Refuse(value); }
    STDMETHODIMP put_LargeButtons(VARIANT_BOOL) noexcept override { return Refuse(); }
    STDMETHODIMP get_MenuAnimationStyle(MsoMenuAnimation* value) noexcept override { return Refuse(value); }
    STDMETHODIMP put_MenuAnimationStyle(MsoMenuAnimation) noexcept override { return Refuse(); }
    STDMETHODIMP get__NewEnum(IUnknown** value) noexcept override { return Refuse(value); }
    STDMETHODIMP ReleaseFocus() noexcept override { return Refuse(); }
};

// What it does not ask of the controls of a bar.
class RefusedCommandBarControls : public CommandBarControls
{
public:
    STDMETHODIMP get_Creator(long* value) noexcept override { return Refuse(value); }
    STDMETHODIMP get__NewEnum(IUnknown** value) noexcept override { return Refuse(value); }
};
