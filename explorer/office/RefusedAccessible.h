#pragma once

#include "explorer/office/Refuse.h"

#include <windows.h>

#include <oleacc.h>

// The accessibility methods of a bar or control: the window that shows it answers those.
template <typename Interface>
class RefusedAccessible : public Interface
{
public:
    STDMETHODIMP get_Creator(long* value) noexcept override { return Refuse(value); }
    STDMETHODIMP get_accParent(IDispatch** ppdispParent) noexcept override { return Refuse(ppdispParent); }
    STDMETHODIMP get_accChildCount(LONG* pcountChildren) noexcept override { return Refuse(pcountChildren); }
    STDMETHODIMP get_accChild(VARIANT, IDispatch** ppdispChild) noexcept override
    {
        return Refuse(ppdispChild);
    }
    STDMETHODIMP get_accName(VARIANT, BSTR* pszName) noexcept override { return Refuse(pszName); }
    STDMETHODIMP get_accValue(VARIANT, BSTR* pszValue) noexcept override { return Refuse(pszValue); }
    STDMETHODIMP get_accDescription(VARIANT, BSTR* pszDescription) noexcept override
    {
        return Refuse(pszDescription);
    }
    STDMETHODIMP get_accRole(VARIANT, VARIANT* pvarRole) noexcept override { return Refuse(pvarRole); }
    STDMETHODIMP get_accState(VARIANT, VARIANT* pvarState) noexcept override { return Refuse(pvarState); }
    STDMETHODIMP get_accHelp(VARIANT, BSTR* pszHelp) noexcept override { return Refuse(pszHelp); }
    STDMETHODIMP get_accHelpTopic(BSTR* pszHelpFile, VARIANT, LONG* pidTopic) noexcept override
    {
        return Refuse(pszHelpFile, pidTopic);
    }
    STDMETHODIMP get_accKeyboardShortcut(VARIANT, BSTR* pszKeyboardShortcut) noexcept override
    {
        return Refuse(pszKeyboardShortcut);
    }
    STDMETHODIMP get_accFocus(VARIANT* pvarID) noexcept override { return Refuse(pvarID); }
    STDMETHODIMP get_accSelection(VARIANT* pvarID) noexcept override { return Refuse(pvarID); }
    STDMETHODIMP get_accDefaultAction(VARIANT, BSTR* pszDefaultAction) noexcept override
    {
        return Refuse(pszDefaultAction);
    }
    STDMETHODIMP accSelect(LONG, VARIANT) noexcept override { return Refuse(); }
    STDMETHODIMP accLocation(LONG* pxLeft, LONG* pyTop, LONG* pcxWidth, LONG* pcyHeight,
                             VARIANT) noexcept override
    {
        return Refuse(pxLeft, pyTop, pcxWidth, pcyHeight);
    }
    STDMETHODIMP accNavigate(LONG, VARIANT, VARIANT* pvarEnd) noexcept override { return Refuse(pvarEnd); }
    STDMETHODIMP accHitTest(LONG, LONG, VARIANT* pvarID) noexcept override { return Refuse(pvarID); }
    STDMETHODIMP accDoDefaultAction(VARIANT) noexcept override { return Refuse(); }
    STDMETHODIMP put_accName(VARIANT, BSTR) noexcept override { return Refuse(); }
    STDMETHODIMP put_accValue(VARIANT, BSTR) noexcept override { return Refuse(); }
};
