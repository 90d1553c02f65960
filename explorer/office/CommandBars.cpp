#include "explorer/office/CommandBars.h"

#include "explorer/office/Index.h"
#include "win/Variant.h"

#include <windows.h>

#include <algorithm>
#include <utility>

using Microsoft::WRL::ComPtr;

CCommandBars::CCommandBars(const SharedContext& context) : ModelObject(context)
{
    Append(L"Menu Bar", msoBarMenuBar, true);
}

STDMETHODIMP CCommandBars::get_ActionControl(CommandBarControl** value) noexcept
{
    return ComBoundary(value, [] {});
}

STDMETHODIMP CCommandBars::get_ActiveMenuBar(CommandBar** value) noexcept
{
    if (bars.empty())
        return CO_E_OBJNOTCONNECTED;
    return ComBoundary(value, [&] { bars.front().CopyTo(value); });
}

STDMETHODIMP CCommandBars::Add(VARIANT name, VARIANT position, VARIANT, VARIANT, CommandBar** bar) noexcept
{
    return ComBoundary(
        bar,
        [&]
        {
            if (bars.empty())
                throw _com_error(CO_E_OBJNOTCONNECTED);
            const std::wstring wanted = IsMissing(name) ? L"Custom " + std::to_wstring(bars.size())
                                                        : TextOf(_bstr_t(ArgumentOf(name)).GetBSTR());
            if (std::ranges::any_of(bars, [&](const auto& one) { return one->GetName() == wanted; }))
                throw _com_error(E_INVALIDARG);
            const long place =
                IsMissing(position) ? long{msoBarTop} : static_cast<long>(ArgumentOf(position));
            if (place < msoBarLeft || place > msoBarFloating)
                throw _com_error(E_INVALIDARG);
            (*bar = &Append(wanted, static_cast<MsoBarPosition>(place), false))->AddRef();
        });
}

STDMETHODIMP CCommandBars::get_Count(int* value) noexcept
{
    return ComBoundary(value, [&] { *value = static_cast<int>(bars.size()); });
}

STDMETHODIMP CCommandBars::FindControl(VARIANT type, VARIANT id, VARIANT tag, VARIANT visible,
                                       CommandBarControl** control) noexcept
{
    return ComBoundary(control,
                       [&]
                       {
                           const ControlQuery query(type, id, tag, visible);
                           CommandControl* found =
                               Find([&](CommandControl& candidate) { return query.Matches(candidate); });
                           if (found)
                               (*control = found->GetInterface())->AddRef();
                       });
}

STDMETHODIMP CCommandBars::get_Item(VARIANT index, CommandBar** value) noexcept
{
    return ComBoundary(value,
                       [&]
                       {
                           const std::size_t place = PlaceInCollection(
                               index, bars.size(), [this](std::size_t at) { return bars[at]->GetName(); });
                           bars[place].CopyTo(value);
                       });
}

STDMETHODIMP CCommandBars::get_Parent(IDispatch** value) noexcept
{
    return GetApplication(context, value);
}

std::vector<CCommandBar*> CCommandBars::GetToolBars() const
{
    std::vector<CCommandBar*> shown;
    for (std::size_t i = 1; i < bars.size(); ++i)
        shown.push_back(bars[i].Get());
    return shown;
}

CCommandBar& CCommandBars::AppendBuiltIn(const std::wstring& name)
{
    return Append(name, msoBarTop, true);
}

CCommandBar& CCommandBars::Append(const std::wstring& name, MsoBarPosition position, bool builtIn)
{
    bars.push_back(MakeModelObject<CCommandBar>(context, name, position, builtIn));
    bars.back()->Attach(*this);
    context->Changed();
    return *bars.back().Get();
}

void CCommandBars::Remove(CCommandBar& bar)
{
    const auto found = std::ranges::find(bars, &bar, &ComPtr<CCommandBar>::Get);
    if (found == bars.end())
        return;
    const ComPtr<CCommandBar> leaving = *found;
    bars.erase(found);
    leaving->Detach();
    context->Changed();
}

void CCommandBars::RemoveOwnedBy(OwnerNumber owner)
{
    for (const auto& bar : std::vector(bars))
    {
        if (bar->GetOwner() == owner)
            Remove(*bar.Get());
        else
            bar->GetControls().RemoveOwnedBy(owner);
    }
}

int CCommandBars::IndexOf(const CCommandBar& bar) const
{
    const auto found = std::ranges::find(bars, &bar, [](const auto& one) { return one.Get(); });
    return static_cast<int>(found - bars.begin()) + 1;
}

CommandControl* CCommandBars::Find(const std::function<bool(CommandControl&)>& condition) const
{
    for (const auto& bar : bars)
        if (CommandControl* found = bar->GetControls().Find(condition, true))
            return found;
    return nullptr;
}

CommandControl* CCommandBars::FindInstance(int instance) const
{
    return Find([&](CommandControl& control) { return control.GetState().instance == instance; });
}

CommandControl* CCommandBars::FindCaption(const std::wstring& caption) const
{
    return Find([&](CommandControl& control) { return PlainCaption(control.GetState().caption) == caption; });
}

void CCommandBars::Detach() noexcept
{
    const auto leaving = std::move(bars);
    bars.clear();
    for (const auto& bar : leaving)
        bar->Detach();
}
