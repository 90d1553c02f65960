#include "explorer/office/CommandBarControls.h"

#include "explorer/office/CommandBar.h"
#include "explorer/office/CommandBarButton.h"
#include "explorer/office/CommandBarPopup.h"
#include "explorer/office/Index.h"
#include "win/Variant.h"

#include <windows.h>

#include <algorithm>

using Microsoft::WRL::ComPtr;

std::wstring PlainCaption(const std::wstring& caption)
{
    std::wstring plain;
    for (std::size_t i = 0; i < caption.size(); ++i)
    {
        // Two of them stand for the sign itself.
        if (caption[i] == L'&' && ++i == caption.size())
            break;
        plain += caption[i];
    }
    return plain;
}

ControlQuery::ControlQuery(const VARIANT& type, const VARIANT& id, const VARIANT& tag, const VARIANT& visible)
    : type(ArgumentOf(type)),
      id(ArgumentOf(id)),
      tag(ArgumentOf(tag)),
      onlyVisible(!IsMissing(visible) && static_cast<bool>(_variant_t(visible)))
{
}

bool ControlQuery::Matches(CommandControl& control) const
{
    const ControlState& state = control.GetState();
    MsoControlType its = msoControlCustom;
    _com_util::CheckError(control.GetInterface()->get_Type(&its));
    return (IsMissing(type) || static_cast<long>(type) == its) &&
           (IsMissing(id) || static_cast<long>(id) == state.id) &&
           (IsMissing(tag) || TextOf(_bstr_t(tag).GetBSTR()) == state.tag) && (!onlyVisible || state.visible);
}

STDMETHODIMP CCommandBarControls::Add(VARIANT type, VARIANT id, VARIANT, VARIANT before, VARIANT,
                                      CommandBarControl** control) noexcept
{
    return ComBoundary(control,
                       [&]
                       {
                           const std::size_t place =
                               IsMissing(before) ? controls.size() : PlaceOf(ArgumentOf(before));
                           const long kind =
                               IsMissing(type) ? long{msoControlButton} : static_cast<long>(ArgumentOf(type));
                           // Controls that stand for commands of the host's own have its pictures and
                           // captions.
                           if (!IsMissing(id) && static_cast<long>(ArgumentOf(id)) != 1)
                               throw _com_error(E_INVALIDARG);
                           ComPtr<CommandBarControl> made;
                           if (kind == msoControlButton)
                           {
                               const auto button = MakeModelObject<CCommandBarButton>(context);
                               made = button.Get();
                               Insert(place, *button.Get());
                           }
                           else if (kind == msoControlPopup)
                           {
                               const auto popup = MakeModelObject<CCommandBarPopup>(context);
                               made = popup.Get();
                               Insert(place, *popup.Get());
                           }
                           else
                               throw _com_error(E_INVALIDARG);
                           *control = made.Detach();
                       });
}

STDMETHODIMP CCommandBarControls::get_Count(int* value) noexcept
{
    return ComBoundary(value, [&] { *value = static_cast<int>(controls.size()); });
}

STDMETHODIMP CCommandBarControls::get_Item(VARIANT index, CommandBarControl** value) noexcept
{
    return ComBoundary(value, [&] { controls[PlaceOf(index)].reference.CopyTo(value); });
}

STDMETHODIMP CCommandBarControls::get_Parent(CommandBar** value) noexcept
{
    if (!bar)
        return CO_E_OBJNOTCONNECTED;
    return ComBoundary(value, [&] { (*value = bar)->AddRef(); });
}

std::vector<CommandControl*> CCommandBarControls::GetControls() const
{
    std::vector<CommandControl*> all;
    for (const Entry& entry : controls)
        all.push_back(entry.control);
    return all;
}

void CCommandBarControls::Insert(std::size_t place, CommandControl& control)
{
    controls.insert(controls.begin() + static_cast<std::ptrdiff_t>(place),
                    {control.GetInterface(), &control});
    control.Attach(*this);
    context->Changed();
}

void CCommandBarControls::Remove(CommandControl& control)
{
    const auto found = std::ranges::find(controls, &control, &Entry::control);
    if (found == controls.end())
        return;
    const Entry leaving = *found;
    controls.erase(found);
    leaving.control->Detach();
    context->Changed();
}

void CCommandBarControls::RemoveOwnedBy(OwnerNumber owner)
{
    for (CommandControl* control : GetControls())
    {
        if (control->GetState().owner == owner)
            Remove(*control);
        else if (CCommandBarControls* inner = control->GetSubControls())
            inner->RemoveOwnedBy(owner);
    }
}

void CCommandBarControls::RemoveAll() noexcept
{
    // What leaves may be the last reference to itself: the list is empty before any of it goes.
    const std::vector<Entry> leaving = std::move(controls);
    controls.clear();
    for (const Entry& entry : leaving)
        entry.control->Detach();
}

int CCommandBarControls::IndexOf(const CommandControl& control) const
{
    const auto found = std::ranges::find(controls, &control, &Entry::control);
    return static_cast<int>(found - controls.begin()) + 1;
}

CommandControl* CCommandBarControls::Find(const std::function<bool(CommandControl&)>& condition,
                                          bool recursive) const
{
    for (const Entry& entry : controls)
    {
        if (condition(*entry.control))
            return entry.control;
        CCommandBarControls* inner = recursive ? entry.control->GetSubControls() : nullptr;
        CommandControl* found = inner ? inner->Find(condition, recursive) : nullptr;
        if (found)
            return found;
    }
    return nullptr;
}

std::size_t CCommandBarControls::PlaceOf(const VARIANT& index) const
{
    return PlaceInCollection(index, controls.size(),
                             [this](std::size_t place)
                             { return PlainCaption(controls[place].control->GetState().caption); });
}
