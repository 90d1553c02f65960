#include "explorer/office/CommandBar.h"

#include "explorer/office/Accessors.h"
#include "explorer/office/CommandBars.h"
#include "explorer/office/Index.h"
#include "win/Variant.h"

#include <windows.h>

#include <utility>

CCommandBar::CCommandBar(const SharedContext& context, std::wstring name, MsoBarPosition position,
                         bool builtIn)
    : ModelObject(context),
      name(std::move(name)),
      position(position),
      builtIn(builtIn),
      visible(builtIn),
      instance(++context->lastInstance),
      owner(context->owner),
      controls(MakeModelObject<CCommandBarControls>(context))
{
    controls->SetBar(this);
}

CCommandBar::~CCommandBar()
{
    Detach();
    controls->SetBar(nullptr);
}

STDMETHODIMP CCommandBar::get_BuiltIn(VARIANT_BOOL* value) noexcept
{
    return GetBool(builtIn, value);
}

STDMETHODIMP CCommandBar::get_Controls(CommandBarControls** value) noexcept
{
    return ComBoundary(value, [&] { controls.CopyTo(value); });
}

STDMETHODIMP CCommandBar::Delete() noexcept
{
    if (!bars)
        return CO_E_OBJNOTCONNECTED;
    if (builtIn)
        return E_FAIL;
    return ComBoundary([&] { bars->Remove(*this); });
}

STDMETHODIMP CCommandBar::get_Enabled(VARIANT_BOOL* value) noexcept
{
    return GetBool(enabled, value);
}

STDMETHODIMP CCommandBar::put_Enabled(VARIANT_BOOL value) noexcept
{
    enabled = value != VARIANT_FALSE;
    return ComBoundary([&] { context->Changed(); });
}

STDMETHODIMP CCommandBar::FindControl(VARIANT type, VARIANT id, VARIANT tag, VARIANT visibleOnly,
                                      VARIANT recursive, CommandBarControl** control) noexcept
{
    return ComBoundary(control,
                       [&]
                       {
                           const ControlQuery query(type, id, tag, visibleOnly);
                           const bool deep =
                               !IsMissing(recursive) && static_cast<bool>(ArgumentOf(recursive));
                           CommandControl* found = controls->Find(
                               [&](CommandControl& candidate) { return query.Matches(candidate); }, deep);
                           if (found)
                               (*control = found->GetInterface())->AddRef();
                       });
}

STDMETHODIMP CCommandBar::get_Index(int* value) noexcept
{
    if (!bars)
        return CO_E_OBJNOTCONNECTED;
    return ComBoundary(value, [&] { *value = bars->IndexOf(*this); });
}

STDMETHODIMP CCommandBar::get_InstanceId(int* value) noexcept
{
    return GetNumber(instance, value);
}

STDMETHODIMP CCommandBar::get_Name(BSTR* value) noexcept
{
    return GetText(name, value);
}

STDMETHODIMP CCommandBar::put_Name(BSTR value) noexcept
{
    return ComBoundary([&] { name = TextOf(value); });
}

STDMETHODIMP CCommandBar::get_Parent(IDispatch** value) noexcept
{
    return GetApplication(context, value);
}

STDMETHODIMP CCommandBar::get_Position(MsoBarPosition* value) noexcept
{
    return ComBoundary(value, [&] { *value = position; });
}

STDMETHODIMP CCommandBar::put_Position(MsoBarPosition value) noexcept
{
    position = value;
    return ComBoundary([&] { context->Changed(); });
}

STDMETHODIMP CCommandBar::get_Type(MsoBarType* value) noexcept
{
    return ComBoundary(value,
                       [&]
                       {
                           *value = position == msoBarMenuBar ? msoBarTypeMenuBar
                                    : position == msoBarPopup ? msoBarTypePopup
                                                              : msoBarTypeNormal;
                       });
}

STDMETHODIMP CCommandBar::get_Visible(VARIANT_BOOL* value) noexcept
{
    return GetBool(visible, value);
}

STDMETHODIMP CCommandBar::put_Visible(VARIANT_BOOL value) noexcept
{
    visible = value != VARIANT_FALSE;
    return ComBoundary([&] { context->Changed(); });
}

void CCommandBar::Detach() noexcept
{
    bars = nullptr;
    controls->RemoveAll();
}
