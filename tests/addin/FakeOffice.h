#pragma once

#include "tests/addin/FakeButton.h"
#include "tests/addin/FakeObject.h"
#include "tests/addin/OfficeLog.h"
#include "tests/addin/UnusedOffice.h"

#include <windows.h>

#include <wrl/client.h>

#include <string>
#include <vector>

// The controls of one bar or menu. Buttons added to them are called `buttonName`.
class FakeControls : public FakeObject<UnusedControls, CommandBarControls, IDispatch>
{
public:
    FakeControls(OfficeLog& log, const std::string& name, std::string buttonName);

    STDMETHODIMP Add(VARIANT type, VARIANT id, VARIANT parameter, VARIANT before, VARIANT temporary,
                     CommandBarControl** control) override;
    STDMETHODIMP get_Item(VARIANT index, CommandBarControl** control) override;

    std::vector<Microsoft::WRL::ComPtr<CommandBarControl>> items;
    std::vector<Microsoft::WRL::ComPtr<FakeButton>> added;    // those of the items that were added

private:
    std::string buttonName;
};

// A menu of the menu bar.
class FakePopup : public FakeObject<UnusedPopup, CommandBarPopup, CommandBarControl, IAccessible, IDispatch>
{
public:
    FakePopup(OfficeLog& log, const std::string& name);

    STDMETHODIMP get_Control(IDispatch** control) override;
    STDMETHODIMP get_Controls(CommandBarControls** value) override;

    Microsoft::WRL::ComPtr<FakeControls> controls;
};

// A control of the menu bar that opens no menu.
class FakePlainControl
    : public FakeObject<UnusedControl<CommandBarControl>, CommandBarControl, IAccessible, IDispatch>
{
public:
    using FakeObject::FakeObject;

    STDMETHODIMP get_Control(IDispatch** control) override;
};

class FakeBar : public FakeObject<UnusedBar, CommandBar, IAccessible, IDispatch>
{
public:
    FakeBar(OfficeLog& log, const std::string& name, const std::string& buttonName);

    STDMETHODIMP get_Controls(CommandBarControls** value) override;
    STDMETHODIMP put_Visible(VARIANT_BOOL value) override { return Put("Visible", value); }

    Microsoft::WRL::ComPtr<FakeControls> controls;
};

class FakeBars : public FakeObject<UnusedBars, _CommandBars, IDispatch>
{
public:
    FakeBars(OfficeLog& log, const std::string& name);

    STDMETHODIMP Add(VARIANT bar, VARIANT position, VARIANT menuBar, VARIANT temporary,
                     CommandBar** added) override;
    STDMETHODIMP get_ActiveMenuBar(CommandBar** value) override;

    Microsoft::WRL::ComPtr<FakeBar> menuBar;
    std::vector<Microsoft::WRL::ComPtr<FakeBar>> toolBars;
};

class FakeExplorer : public FakeObject<UnusedExplorer, _Explorer, IDispatch>
{
public:
    FakeExplorer(OfficeLog& log, const std::string& name);

    STDMETHODIMP get_CommandBars(_CommandBars** value) override;

    Microsoft::WRL::ComPtr<FakeBars> bars;
};

class FakeApplication : public FakeObject<UnusedApplication, _Application, IDispatch>
{
public:
    FakeApplication(OfficeLog& log, const std::string& name);

    STDMETHODIMP ActiveExplorer(_Explorer** explorer) override;

    Microsoft::WRL::ComPtr<FakeExplorer> explorer;    // null: no window is open
};

// A host with one explorer window and seven menus, over the interfaces' own slots.
class FakeOffice
{
public:
    static constexpr std::size_t menuCount = 7;

    FakeOffice();

    // What the menu bar holds, from the left.
    std::vector<Microsoft::WRL::ComPtr<CommandBarControl>>& Menus() const;
    // The controls of the menu with that number, counted from 1.
    FakeControls& Menu(std::size_t number) const;
    void ReplaceMenuByPlainControl(std::size_t number);

    // What the last connection has added.
    FakeBar& ToolBar() const;
    FakeButton& ToolBarButton() const;
    FakeButton& MenuButton() const;

    // The host ends: only what others hold is alive afterwards.
    void Quit();

    OfficeLog log;
    Microsoft::WRL::ComPtr<FakeApplication> application;

private:
    std::vector<Microsoft::WRL::ComPtr<FakePopup>> popups;
};
