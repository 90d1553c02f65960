#include "addin/ExplorerButtons.h"

#include "addin/ButtonPicture.h"
#include "addin/OfficeCall.h"
#include "win/Variant.h"

#include <comutil.h>

using Microsoft::WRL::ComPtr;

namespace
{
constexpr wchar_t toolBarName[] = L"TalmoreQuorvexOutlookDuplicateRemover";
constexpr wchar_t toolBarCaption[] = L"Talmore Duplicate Remover";
constexpr wchar_t menuCaption[] = L"Talmore Quorvex Outlook Duplicate Remover";
constexpr LONG menuIndex = 5;

// Optional flags travel as 16-bit integers.
_variant_t TrueVariant()
{
    return _variant_t(static_cast<short>(VARIANT_TRUE), VT_I2);
}

ComPtr<CommandBarControl> AddButton(const ComPtr<CommandBarControls>& controls)
{
    const _variant_t missing = MissingVariant();
    return Fetch<CommandBarControl>(controls, &CommandBarControls::Add, LongVariant(msoControlButton),
                                    missing, missing, missing, TrueVariant());
}

template <typename Control>
void PutText(const ComPtr<Control>& control, HRESULT (STDMETHODCALLTYPE CommandBarControl::*put)(BSTR),
             const wchar_t* text)
{
    Call(control, put, _bstr_t(text).GetBSTR());
}

void PutFace(const ComPtr<_CommandBarButton>& button)
{
    const bool pictureIsThere = PutButtonPictureOnClipboard();
    Call(button, &_CommandBarButton::put_Style, msoButtonIconAndCaption);
    // Else the button would take on what somebody else has on the clipboard; its caption does without.
    if (pictureIsThere)
        Call(button, &_CommandBarButton::PasteFace);
}

void Describe(const ComPtr<_CommandBarButton>& button)
{
    Call(button, &CommandBarControl::put_Visible, VARIANT_TRUE);
    PutText(button, &CommandBarControl::put_Caption, toolBarCaption);
    Call(button, &CommandBarControl::put_Enabled, VARIANT_TRUE);
    PutText(button, &CommandBarControl::put_TooltipText, toolBarCaption);
    PutText(button, &CommandBarControl::put_Tag, toolBarCaption);
}

ComPtr<CommandBarControls> FindMenu(const ComPtr<_CommandBars>& bars)
{
    const auto menuBar = Fetch<CommandBar>(bars, &_CommandBars::get_ActiveMenuBar);
    const auto menus = Fetch<CommandBarControls>(menuBar, &CommandBar::get_Controls);
    const auto menu = Fetch<CommandBarControl>(menus, &CommandBarControls::get_Item, LongVariant(menuIndex));
    const auto popup = Query<CommandBarPopup>(Fetch<IDispatch>(menu, &CommandBarControl::get_Control));
    return Fetch<CommandBarControls>(popup, &CommandBarPopup::get_Controls);
}
}    // namespace

ComPtr<_CommandBarButton> AddToolBarButton(const ComPtr<_CommandBars>& bars)
{
    const auto bar = Fetch<CommandBar>(bars, &_CommandBars::Add, _variant_t(toolBarName),
                                       LongVariant(msoBarTop), MissingVariant(), TrueVariant());
    const auto controls = Fetch<CommandBarControls>(bar, &CommandBar::get_Controls);
    const auto button = Query<_CommandBarButton>(AddButton(controls));
    PutFace(button);
    Describe(button);
    Call(bar, &CommandBar::put_Visible, VARIANT_TRUE);
    return button;
}

ComPtr<_CommandBarButton> AddMenuButton(const ComPtr<_CommandBars>& bars)
{
    const auto control = AddButton(FindMenu(bars));
    PutText(control, &CommandBarControl::put_Caption, menuCaption);
    Call(control, &CommandBarControl::put_Enabled, VARIANT_TRUE);
    Call(control, &CommandBarControl::put_Visible, VARIANT_TRUE);
    const auto button = Query<_CommandBarButton>(control);
    PutFace(button);
    Call(button, &CommandBarControl::put_Visible, VARIANT_TRUE);
    return button;
}
