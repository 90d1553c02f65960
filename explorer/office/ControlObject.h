#pragma once

#include "explorer/office/Accessors.h"
#include "explorer/office/CommandBarControls.h"
#include "explorer/office/CommandControl.h"
#include "explorer/office/ModelObject.h"
#include "explorer/office/RefusedControl.h"
#include "win/Variant.h"

#include <windows.h>

#include <string>
#include <utility>

// What buttons and pop-ups have in common: the properties of CommandBarControl.
template <typename Base, typename Interface>
class ControlObject : public ModelObject<Base, Interface, CommandBarControl, _IMsoOleAccDispObj, IAccessible>,
                      public CommandControl
{
    using Object = ModelObject<Base, Interface, CommandBarControl, _IMsoOleAccDispObj, IAccessible>;

public:
    STDMETHODIMP get_Application(IDispatch** value) noexcept override
    {
        return GetApplication(context, value);
    }
    STDMETHODIMP get_BeginGroup(VARIANT_BOOL* value) noexcept override
    {
        return GetBool(state.beginsGroup, value);
    }
    STDMETHODIMP put_BeginGroup(VARIANT_BOOL value) noexcept override
    {
        return Put(state.beginsGroup, value);
    }
    STDMETHODIMP get_BuiltIn(VARIANT_BOOL* value) noexcept override { return GetBool(state.builtIn, value); }
    STDMETHODIMP get_Caption(BSTR* value) noexcept override { return GetText(state.caption, value); }
    STDMETHODIMP put_Caption(BSTR value) noexcept override { return Put(state.caption, value); }
    STDMETHODIMP get_Control(IDispatch** value) noexcept override
    {
        return ComBoundary(value, [&] { (*value = GetInterface())->AddRef(); });
    }
    STDMETHODIMP Delete(VARIANT) noexcept override
    {
        if (!collection)
            return CO_E_OBJNOTCONNECTED;
        return ComBoundary([&] { collection->Remove(*this); });
    }
    STDMETHODIMP get_DescriptionText(BSTR* value) noexcept override
    {
        return GetText(state.description, value);
    }
    STDMETHODIMP put_DescriptionText(BSTR value) noexcept override { return Put(state.description, value); }
    STDMETHODIMP get_Enabled(VARIANT_BOOL* value) noexcept override { return GetBool(state.enabled, value); }
    STDMETHODIMP put_Enabled(VARIANT_BOOL value) noexcept override { return Put(state.enabled, value); }
    STDMETHODIMP Execute() noexcept override { return Refuse(); }
    STDMETHODIMP get_Id(int* value) noexcept override { return GetNumber(state.id, value); }
    STDMETHODIMP get_Index(int* value) noexcept override
    {
        if (!collection)
            return CO_E_OBJNOTCONNECTED;
        return GetNumber(collection->IndexOf(*this), value);
    }
    STDMETHODIMP get_InstanceId(int* value) noexcept override { return GetNumber(state.instance, value); }
    STDMETHODIMP get_OnAction(BSTR* value) noexcept override { return GetText(state.action, value); }
    STDMETHODIMP put_OnAction(BSTR value) noexcept override { return Put(state.action, value); }
    STDMETHODIMP get_Parent(CommandBar** value) noexcept override
    {
        return collection ? collection->get_Parent(value) : CO_E_OBJNOTCONNECTED;
    }
    STDMETHODIMP get_Parameter(BSTR* value) noexcept override { return GetText(state.parameter, value); }
    STDMETHODIMP put_Parameter(BSTR value) noexcept override { return Put(state.parameter, value); }
    STDMETHODIMP get_Tag(BSTR* value) noexcept override { return GetText(state.tag, value); }
    STDMETHODIMP put_Tag(BSTR value) noexcept override { return Put(state.tag, value); }
    STDMETHODIMP get_TooltipText(BSTR* value) noexcept override { return GetText(state.tooltip, value); }
    STDMETHODIMP put_TooltipText(BSTR value) noexcept override { return Put(state.tooltip, value); }
    STDMETHODIMP get_Visible(VARIANT_BOOL* value) noexcept override { return GetBool(state.visible, value); }
    STDMETHODIMP put_Visible(VARIANT_BOOL value) noexcept override { return Put(state.visible, value); }

    CommandBarControl* GetInterface() noexcept override { return static_cast<CommandBarControl*>(this); }

protected:
    using Object::context;

    ControlObject(const SharedContext& shared, ControlState begin) : Object(shared)
    {
        state = std::move(begin);
        state.instance = ++shared->lastInstance;
        state.owner = shared->owner;
    }

    HRESULT Put(std::wstring& place, BSTR value) noexcept
    {
        return ComBoundary(
            [&]
            {
                place = TextOf(value);
                context->Changed();
            });
    }
    HRESULT Put(bool& place, VARIANT_BOOL value) noexcept
    {
        return ComBoundary(
            [&]
            {
                place = value != VARIANT_FALSE;
                context->Changed();
            });
    }
};
