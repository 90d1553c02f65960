#pragma once

#include "explorer/office/ClickEvents.h"
#include "explorer/office/ControlObject.h"
#include "win/GdiObject.h"

#include <windows.h>

#include <ocidl.h>
#include <wrl/client.h>

// A button of a bar or an entry of a menu. Its picture is what was on the clipboard when it was pasted.
class CCommandBarButton final : public ControlObject<RefusedButton, _CommandBarButton>,
                                public IConnectionPointContainer
{
public:
    explicit CCommandBarButton(const SharedContext& context, ControlState begin = {});

    STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override
    {
        return ControlObject::QueryInterface(iid, object);
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ControlObject::AddRef(); }
    STDMETHODIMP_(ULONG) Release() noexcept override { return ControlObject::Release(); }

    STDMETHODIMP Execute() noexcept override;
    STDMETHODIMP get_Type(MsoControlType* value) noexcept override;
    STDMETHODIMP PasteFace() noexcept override;
    STDMETHODIMP get_Style(MsoButtonStyle* value) noexcept override;
    STDMETHODIMP put_Style(MsoButtonStyle value) noexcept override;
    STDMETHODIMP get_State(MsoButtonState* value) noexcept override;
    STDMETHODIMP put_State(MsoButtonState value) noexcept override;
    STDMETHODIMP get_ShortcutText(BSTR* value) noexcept override { return GetText(shortcut, value); }
    STDMETHODIMP put_ShortcutText(BSTR value) noexcept override { return Put(shortcut, value); }

    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** points) noexcept override;
    STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** point) noexcept override;

    CCommandBarButton* AsButton() noexcept override { return this; }
    void Detach() noexcept override;

    HBITMAP GetFace() const noexcept { return face.get(); }    // borrowed; null when it has none
    bool ShowsFace() const noexcept { return face && style != msoButtonCaption; }
    bool ShowsCaption() const noexcept { return !face || style != msoButtonIcon; }
    bool IsDown() const noexcept { return buttonState == msoButtonDown; }
    const std::wstring& GetShortcut() const noexcept { return shortcut; }

    // What a click does: its listeners hear of it, then a button of the host's own carries out its command,
    // unless one of them forbids it.
    void Press();

private:
    ~CCommandBarButton() override { events->Disconnect(); }
    void* Find(REFIID iid) noexcept override;
    template <typename Value>
    HRESULT PutValue(Value& place, Value value) noexcept;

    BitmapHandle face;
    MsoButtonStyle style = msoButtonAutomatic;
    MsoButtonState buttonState = msoButtonUp;
    std::wstring shortcut;
    Microsoft::WRL::ComPtr<CClickEvents> events;
};
