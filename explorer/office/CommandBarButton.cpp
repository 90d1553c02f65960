#include "explorer/office/CommandBarButton.h"

#include "explorer/office/Clipboard.h"

#include <windows.h>

#include <utility>

using Microsoft::WRL::ComPtr;

CCommandBarButton::CCommandBarButton(const SharedContext& context, ControlState begin)
    : ControlObject(context, std::move(begin)),
      events(new CClickEvents(this))
{
}

void* CCommandBarButton::Find(REFIID iid) noexcept
{
    return iid == IID_IConnectionPointContainer ? static_cast<IConnectionPointContainer*>(this)
                                                : ControlObject::Find(iid);
}

STDMETHODIMP CCommandBarButton::Execute() noexcept
{
    return ComBoundary([&] { Press(); });
}

STDMETHODIMP CCommandBarButton::get_Type(MsoControlType* value) noexcept
{
    return ComBoundary(value, [&] { *value = msoControlButton; });
}

STDMETHODIMP CCommandBarButton::PasteFace() noexcept
{
    return ComBoundary(
        [&]
        {
            face = CopyBitmapFromClipboard(context->watcher ? context->watcher->GetWindow() : nullptr);
            context->Changed();
        });
}

STDMETHODIMP CCommandBarButton::get_Style(MsoButtonStyle* value) noexcept
{
    return ComBoundary(value, [&] { *value = style; });
}

STDMETHODIMP CCommandBarButton::put_Style(MsoButtonStyle value) noexcept
{
    if (value < msoButtonAutomatic || value > msoButtonIconAndCaption)
        return E_INVALIDARG;
    return PutValue(style, value);
}

STDMETHODIMP CCommandBarButton::get_State(MsoButtonState* value) noexcept
{
    return ComBoundary(value, [&] { *value = buttonState; });
}

STDMETHODIMP CCommandBarButton::put_State(MsoButtonState value) noexcept
{
    return PutValue(buttonState, value);
}

STDMETHODIMP CCommandBarButton::EnumConnectionPoints(IEnumConnectionPoints** points) noexcept
{
    return Refuse(points);
}

STDMETHODIMP CCommandBarButton::FindConnectionPoint(REFIID iid, IConnectionPoint** point) noexcept
{
    if (iid != DIID__CommandBarButtonEvents)
        return Refuse(point), CONNECT_E_NOCONNECTION;
    return ComBoundary(point, [&] { (*point = events.Get())->AddRef(); });
}

void CCommandBarButton::Detach() noexcept
{
    ControlObject::Detach();
    events->Disconnect();
}

void CCommandBarButton::Press()
{
    const ComPtr<CommandBarControl> alive(this);    // a listener may delete it
    const bool cancelled = events->Fire(static_cast<_CommandBarButton*>(this));
    if (!cancelled && state.builtIn && context->watcher)
        context->watcher->OnBuiltInCommand(static_cast<UINT>(state.id));
}

template <typename Value>
HRESULT CCommandBarButton::PutValue(Value& place, Value value) noexcept
{
    return ComBoundary(
        [&]
        {
            place = value;
            context->Changed();
        });
}
