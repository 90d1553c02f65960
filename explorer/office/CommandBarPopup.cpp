#include "explorer/office/CommandBarPopup.h"

#include <windows.h>

#include <utility>

CCommandBarPopup::CCommandBarPopup(const SharedContext& context, ControlState begin)
    : ControlObject(context, std::move(begin)),
      bar(MakeModelObject<CCommandBar>(context, state.caption, msoBarPopup))
{
}

STDMETHODIMP CCommandBarPopup::get_Type(MsoControlType* value) noexcept
{
    return ComBoundary(value, [&] { *value = msoControlPopup; });
}

STDMETHODIMP CCommandBarPopup::get_CommandBar(CommandBar** value) noexcept
{
    return ComBoundary(value, [&] { bar.CopyTo(value); });
}

STDMETHODIMP CCommandBarPopup::get_Controls(CommandBarControls** value) noexcept
{
    return bar->get_Controls(value);
}

void CCommandBarPopup::Detach() noexcept
{
    ControlObject::Detach();
    bar->Detach();
}
