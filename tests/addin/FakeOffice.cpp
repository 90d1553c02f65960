#include "tests/addin/FakeOffice.h"

#include <utility>

using Microsoft::WRL::ComPtr;

FakeControls::FakeControls(OfficeLog& log, const std::string& name, std::string buttonName)
    : FakeObject(log, name),
      buttonName(std::move(buttonName))
{
}

STDMETHODIMP FakeControls::Add(VARIANT type, VARIANT id, VARIANT parameter, VARIANT before, VARIANT temporary,
                               CommandBarControl** control)
{
    const ComPtr<FakeButton> button(new FakeButton(log, buttonName));
    const HRESULT result = Give("Add(" + Describe(type) + ", " + Describe(id) + ", " + Describe(parameter) +
                                    ", " + Describe(before) + ", " + Describe(temporary) + ")",
                                control, button);
    if (*control)
    {
        items.emplace_back(button.Get());
        added.push_back(button);
    }
    return result;
}

STDMETHODIMP FakeControls::get_Item(VARIANT index, CommandBarControl** control)
{
    const bool found =
        index.vt == VT_I4 && index.lVal >= 1 && static_cast<std::size_t>(index.lVal) <= items.size();
    const ComPtr<CommandBarControl> item = found ? items[static_cast<std::size_t>(index.lVal) - 1] : nullptr;
    const HRESULT result = Give("get Item(" + Describe(index) + ")", control, item);
    return SUCCEEDED(result) && !found ? E_INVALIDARG : result;
}

FakePopup::FakePopup(OfficeLog& log, const std::string& name)
    : FakeObject(log, name),
      controls(new FakeControls(log, name + "Controls", "MenuButton"))
{
}

STDMETHODIMP FakePopup::get_Control(IDispatch** control)
{
    return Give("get Control()", control, ComPtr<CommandBarPopup>(this));
}

STDMETHODIMP FakePopup::get_Controls(CommandBarControls** value)
{
    return Give("get Controls()", value, controls);
}

STDMETHODIMP FakePlainControl::get_Control(IDispatch** control)
{
    return Give("get Control()", control, ComPtr<CommandBarControl>(this));
}

FakeBar::FakeBar(OfficeLog& log, const std::string& name, const std::string& buttonName)
    : FakeObject(log, name),
      controls(new FakeControls(log, name + "Controls", buttonName))
{
}

STDMETHODIMP FakeBar::get_Controls(CommandBarControls** value)
{
    return Give("get Controls()", value, controls);
}

FakeBars::FakeBars(OfficeLog& log, const std::string& name)
    : FakeObject(log, name),
      menuBar(new FakeBar(log, "MenuBar", "NoMenu"))
{
}

STDMETHODIMP FakeBars::Add(VARIANT bar, VARIANT position, VARIANT isMenuBar, VARIANT temporary,
                           CommandBar** added)
{
    const ComPtr<FakeBar> toolBar(new FakeBar(log, "ToolBar", "ToolBarButton"));
    const HRESULT result = Give("Add(" + Describe(bar) + ", " + Describe(position) + ", " +
                                    Describe(isMenuBar) + ", " + Describe(temporary) + ")",
                                added, toolBar);
    if (*added)
        toolBars.push_back(toolBar);
    return result;
}

STDMETHODIMP FakeBars::get_ActiveMenuBar(CommandBar** value)
{
    return Give("get ActiveMenuBar()", value, menuBar);
}

FakeExplorer::FakeExplorer(OfficeLog& log, const std::string& name)
    : FakeObject(log, name),
      bars(new FakeBars(log, "CommandBars"))
{
}

STDMETHODIMP FakeExplorer::get_CommandBars(_CommandBars** value)
{
    return Give("get CommandBars()", value, bars);
}

FakeApplication::FakeApplication(OfficeLog& log, const std::string& name)
    : FakeObject(log, name),
      explorer(new FakeExplorer(log, "Explorer"))
{
}

STDMETHODIMP FakeApplication::ActiveExplorer(_Explorer** active)
{
    return Give("ActiveExplorer()", active, explorer);
}

FakeOffice::FakeOffice() : application(new FakeApplication(log, "Application"))
{
    for (std::size_t number = 1; number <= menuCount; ++number)
    {
        popups.emplace_back(new FakePopup(log, "Menu" + std::to_string(number)));
        Menus().emplace_back(popups.back().Get());
    }
}

std::vector<ComPtr<CommandBarControl>>& FakeOffice::Menus() const
{
    return application->explorer->bars->menuBar->controls->items;
}

FakeControls& FakeOffice::Menu(std::size_t number) const
{
    return *popups.at(number - 1)->controls.Get();
}

void FakeOffice::ReplaceMenuByPlainControl(std::size_t number)
{
    Menus().at(number - 1) = new FakePlainControl(log, "PlainControl");
}

FakeBar& FakeOffice::ToolBar() const
{
    return *application->explorer->bars->toolBars.at(application->explorer->bars->toolBars.size() - 1).Get();
}

FakeButton& FakeOffice::ToolBarButton() const
{
    return *ToolBar().controls->added.at(0).Get();
}

FakeButton& FakeOffice::MenuButton() const
{
    const FakeControls& tools = Menu(5);
    return *tools.added.at(tools.added.size() - 1).Get();
}

void FakeOffice::Quit()
{
    popups.clear();
    application.Reset();
}
