#pragma once

#include "contracts/Office.h"
#include "contracts/Outlook.h"

#include <windows.h>

#include <oleacc.h>

// Every function of the host's interfaces, refused: a fake overrides those that it needs.

template <typename Interface>
class UnusedAccessible : public Interface
{
public:
    STDMETHODIMP get_accParent(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP get_accChildCount(LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP get_accChild(VARIANT, IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP get_accName(VARIANT, BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_accValue(VARIANT, BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_accDescription(VARIANT, BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_accRole(VARIANT, VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP get_accState(VARIANT, VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP get_accHelp(VARIANT, BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_accHelpTopic(BSTR*, VARIANT, LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP get_accKeyboardShortcut(VARIANT, BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_accFocus(VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP get_accSelection(VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP get_accDefaultAction(VARIANT, BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP accSelect(LONG, VARIANT) override { return E_NOTIMPL; }
    STDMETHODIMP accLocation(LONG*, LONG*, LONG*, LONG*, VARIANT) override { return E_NOTIMPL; }
    STDMETHODIMP accNavigate(LONG, VARIANT, VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP accHitTest(LONG, LONG, VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP accDoDefaultAction(VARIANT) override { return E_NOTIMPL; }
    STDMETHODIMP put_accName(VARIANT, BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP put_accValue(VARIANT, BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_Application(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Creator(LONG*) override { return E_NOTIMPL; }
};

template <typename Interface>
class UnusedControl : public UnusedAccessible<Interface>
{
public:
    STDMETHODIMP get_BeginGroup(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_BeginGroup(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_BuiltIn(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Caption(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Caption(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_Control(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP Copy(VARIANT, VARIANT, CommandBarControl**) override { return E_NOTIMPL; }
    STDMETHODIMP Delete(VARIANT) override { return E_NOTIMPL; }
    STDMETHODIMP get_DescriptionText(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_DescriptionText(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_Enabled(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Enabled(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP Execute() override { return E_NOTIMPL; }
    STDMETHODIMP get_Height(int*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Height(int) override { return E_NOTIMPL; }
    STDMETHODIMP get_HelpContextId(int*) override { return E_NOTIMPL; }
    STDMETHODIMP put_HelpContextId(int) override { return E_NOTIMPL; }
    STDMETHODIMP get_HelpFile(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_HelpFile(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_Id(int*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Index(int*) override { return E_NOTIMPL; }
    STDMETHODIMP get_InstanceId(int*) override { return E_NOTIMPL; }
    STDMETHODIMP Move(VARIANT, VARIANT, CommandBarControl**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Left(int*) override { return E_NOTIMPL; }
    STDMETHODIMP get_OLEUsage(MsoControlOLEUsage*) override { return E_NOTIMPL; }
    STDMETHODIMP put_OLEUsage(MsoControlOLEUsage) override { return E_NOTIMPL; }
    STDMETHODIMP get_OnAction(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_OnAction(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_Parent(CommandBar**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Parameter(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Parameter(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_Priority(int*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Priority(int) override { return E_NOTIMPL; }
    STDMETHODIMP Reset() override { return E_NOTIMPL; }
    STDMETHODIMP SetFocus() override { return E_NOTIMPL; }
    STDMETHODIMP get_Tag(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Tag(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_TooltipText(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_TooltipText(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_Top(int*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Type(MsoControlType*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Visible(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Visible(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_Width(int*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Width(int) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsPriorityDropped(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP Reserved1() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved2() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved3() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved4() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved5() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved6() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved7() override { return E_NOTIMPL; }
};

class UnusedButton : public UnusedControl<_CommandBarButton>
{
public:
    STDMETHODIMP get_BuiltInFace(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_BuiltInFace(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP CopyFace() override { return E_NOTIMPL; }
    STDMETHODIMP get_FaceId(int*) override { return E_NOTIMPL; }
    STDMETHODIMP put_FaceId(int) override { return E_NOTIMPL; }
    STDMETHODIMP PasteFace() override { return E_NOTIMPL; }
    STDMETHODIMP get_ShortcutText(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_ShortcutText(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_State(MsoButtonState*) override { return E_NOTIMPL; }
    STDMETHODIMP put_State(MsoButtonState) override { return E_NOTIMPL; }
    STDMETHODIMP get_Style(MsoButtonStyle*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Style(MsoButtonStyle) override { return E_NOTIMPL; }
    STDMETHODIMP get_HyperlinkType(MsoCommandBarButtonHyperlinkType*) override { return E_NOTIMPL; }
    STDMETHODIMP put_HyperlinkType(MsoCommandBarButtonHyperlinkType) override { return E_NOTIMPL; }
};

class UnusedPopup : public UnusedControl<CommandBarPopup>
{
public:
    STDMETHODIMP get_CommandBar(CommandBar**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Controls(CommandBarControls**) override { return E_NOTIMPL; }
    STDMETHODIMP get_OLEMenuGroup(MsoOLEMenuGroup*) override { return E_NOTIMPL; }
    STDMETHODIMP put_OLEMenuGroup(MsoOLEMenuGroup) override { return E_NOTIMPL; }
};

class UnusedBar : public UnusedAccessible<CommandBar>
{
public:
    STDMETHODIMP get_BuiltIn(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Context(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Context(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_Controls(CommandBarControls**) override { return E_NOTIMPL; }
    STDMETHODIMP Delete() override { return E_NOTIMPL; }
    STDMETHODIMP get_Enabled(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Enabled(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP FindControl(VARIANT, VARIANT, VARIANT, VARIANT, VARIANT, CommandBarControl**) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP get_Height(int*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Height(int) override { return E_NOTIMPL; }
    STDMETHODIMP get_Index(int*) override { return E_NOTIMPL; }
    STDMETHODIMP get_InstanceId(int*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Left(int*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Left(int) override { return E_NOTIMPL; }
    STDMETHODIMP get_Name(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Name(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_NameLocal(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_NameLocal(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_Parent(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Position(MsoBarPosition*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Position(MsoBarPosition) override { return E_NOTIMPL; }
    STDMETHODIMP get_RowIndex(int*) override { return E_NOTIMPL; }
    STDMETHODIMP put_RowIndex(int) override { return E_NOTIMPL; }
    STDMETHODIMP get_Protection(MsoBarProtection*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Protection(MsoBarProtection) override { return E_NOTIMPL; }
    STDMETHODIMP Reset() override { return E_NOTIMPL; }
    STDMETHODIMP ShowPopup(VARIANT, VARIANT) override { return E_NOTIMPL; }
    STDMETHODIMP get_Top(int*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Top(int) override { return E_NOTIMPL; }
    STDMETHODIMP get_Type(MsoBarType*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Visible(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Visible(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_Width(int*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Width(int) override { return E_NOTIMPL; }
    STDMETHODIMP get_AdaptiveMenu(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_AdaptiveMenu(VARIANT_BOOL) override { return E_NOTIMPL; }
};

class UnusedControls : public CommandBarControls
{
public:
    STDMETHODIMP get_Application(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Creator(LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP Add(VARIANT, VARIANT, VARIANT, VARIANT, VARIANT, CommandBarControl**) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP get_Count(int*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Item(VARIANT, CommandBarControl**) override { return E_NOTIMPL; }
    STDMETHODIMP get__NewEnum(IUnknown**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Parent(CommandBar**) override { return E_NOTIMPL; }
};

class UnusedBars : public _CommandBars
{
public:
    STDMETHODIMP get_Application(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Creator(LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP get_ActionControl(CommandBarControl**) override { return E_NOTIMPL; }
    STDMETHODIMP get_ActiveMenuBar(CommandBar**) override { return E_NOTIMPL; }
    STDMETHODIMP Add(VARIANT, VARIANT, VARIANT, VARIANT, CommandBar**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Count(int*) override { return E_NOTIMPL; }
    STDMETHODIMP get_DisplayTooltips(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_DisplayTooltips(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_DisplayKeysInTooltips(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_DisplayKeysInTooltips(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP FindControl(VARIANT, VARIANT, VARIANT, VARIANT, CommandBarControl**) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP get_Item(VARIANT, CommandBar**) override { return E_NOTIMPL; }
    STDMETHODIMP get_LargeButtons(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_LargeButtons(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_MenuAnimationStyle(MsoMenuAnimation*) override { return E_NOTIMPL; }
    STDMETHODIMP put_MenuAnimationStyle(MsoMenuAnimation) override { return E_NOTIMPL; }
    STDMETHODIMP get__NewEnum(IUnknown**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Parent(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP ReleaseFocus() override { return E_NOTIMPL; }
};

class UnusedApplication : public _Application
{
public:
    STDMETHODIMP get_Application(_Application**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Class(LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Session(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Parent(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Assistant(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Name(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Version(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP ActiveExplorer(_Explorer**) override { return E_NOTIMPL; }
    STDMETHODIMP ActiveInspector(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP CreateItem(LONG, IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP CreateItemFromTemplate(BSTR, VARIANT, IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP CreateObject(BSTR, IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP GetNamespace(BSTR, IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP Quit() override { return E_NOTIMPL; }
    STDMETHODIMP get_COMAddIns(IDispatch**) override { return E_NOTIMPL; }
};

class UnusedExplorer : public _Explorer
{
public:
    STDMETHODIMP get_Application(_Application**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Class(LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Session(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Parent(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP get_CommandBars(_CommandBars**) override { return E_NOTIMPL; }
    STDMETHODIMP get_CurrentFolder(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP put_CurrentFolder(IDispatch*) override { return E_NOTIMPL; }
    STDMETHODIMP Close() override { return E_NOTIMPL; }
    STDMETHODIMP Display() override { return E_NOTIMPL; }
    STDMETHODIMP get_Caption(BSTR*) override { return E_NOTIMPL; }
};
