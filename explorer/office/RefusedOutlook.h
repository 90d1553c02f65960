#pragma once

#include "explorer/office/Refuse.h"

#include "contracts/Outlook.h"

#include <windows.h>

// What no add-in of this kind asks of the application.
class RefusedApplication : public _Application
{
public:
    STDMETHODIMP get_Session(IDispatch** value) noexcept override { return Refuse(value); }
    STDMETHODIMP get_Assistant(IDispatch** value) noexcept override { return Refuse(value); }
    STDMETHODIMP ActiveInspector(IDispatch** inspector) noexcept override { return Refuse(inspector); }
    STDMETHODIMP CreateItem(LONG, IDispatch** item) noexcept override { return Refuse(item); }
    STDMETHODIMP CreateItemFromTemplate(BSTR, VARIANT, IDispatch** item) noexcept override
    {
        return Refuse(item);
    }
    STDMETHODIMP CreateObject(BSTR, IDispatch** object) noexcept override { return Refuse(object); }
    STDMETHODIMP GetNamespace(BSTR, IDispatch** mapiNamespace) noexcept override
    {
        return Refuse(mapiNamespace);
    }
    STDMETHODIMP Quit() noexcept override { return Refuse(); }
    STDMETHODIMP get_COMAddIns(IDispatch** value) noexcept override { return Refuse(value); }
};

// What it does not ask of the explorer window.
class RefusedExplorer : public _Explorer
{
public:
    STDMETHODIMP get_Session(IDispatch** value) noexcept override { return Refuse(value); }
    STDMETHODIMP get_CurrentFolder(IDispatch** value) noexcept override { return Refuse(value); }
    STDMETHODIMP put_CurrentFolder(IDispatch*) noexcept override { return Refuse(); }
};
