#include "tests/explorer/TestAddIn.h"

#include "tests/explorer/ClipboardPicture.h"
#include "win/Variant.h"

#include <windows.h>

#include <comdef.h>
#include <ocidl.h>

#include <cwchar>
#include <stdexcept>
#include <utility>

using Microsoft::WRL::ComPtr;

namespace
{
constexpr GUID classId = {0x9b0f6e0c, 0x5f0e, 0x4f0b, {0x9c, 0x55, 0x4a, 0x2e, 0x6d, 0x10, 0x77, 0x31}};
constexpr wchar_t classIdText[] = L"{9B0F6E0C-5F0E-4F0B-9C55-4A2E6D107731}";
constexpr wchar_t classKey[] = L"Software\\Classes\\TalmorexTests.AddIn";
constexpr wchar_t addInKey[] = L"Software\\Microsoft\\Office\\Outlook\\Addins\\TalmorexTests.AddIn";

void Check(HRESULT result)
{
    _com_util::CheckError(result);
}

// Hears the clicks of one button; owned by the connection point alone.
class ClickSink final : public IDispatch
{
public:
    explicit ClickSink(AddInScript& script) : script(script) { ++script.alive; }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override
    {
        const bool ours = iid == IID_IUnknown || iid == IID_IDispatch || iid == DIID__CommandBarButtonEvents;
        *object = ours ? this : nullptr;
        return ours ? AddRef(), S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references; }
    STDMETHODIMP_(ULONG) Release() noexcept override
    {
        const ULONG left = --references;
        if (left == 0)
            delete this;
        return left;
    }
    STDMETHODIMP GetTypeInfoCount(UINT*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                        UINT*) noexcept override
    {
        if (id != 1 || arguments->cArgs != 2 || arguments->rgvarg[1].vt != VT_DISPATCH ||
            arguments->rgvarg[0].vt != (VT_BYREF | VT_BOOL))
            return DISP_E_BADPARAMCOUNT;
        ComPtr<_CommandBarButton> button;
        Check(arguments->rgvarg[1].pdispVal->QueryInterface(IID_PPV_ARGS(&button)));
        _bstr_t caption;
        Check(button->get_Caption(caption.GetAddress()));
        script.clicked.push_back(caption.GetBSTR());
        if (script.cancels)
            *arguments->rgvarg[0].pboolVal = VARIANT_TRUE;
        script.onClick();
        return S_OK;
    }

private:
    ~ClickSink() { --script.alive; }

    AddInScript& script;
    ULONG references = 0;
};

class TestAddIn final : public _IDTExtensibility2
{
public:
    explicit TestAddIn(AddInScript& script) : script(script) { ++script.alive; }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override
    {
        const bool ours = iid == IID_IUnknown || iid == IID_IDispatch || iid == __uuidof(_IDTExtensibility2);
        *object = ours ? this : nullptr;
        return ours ? AddRef(), S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references; }
    STDMETHODIMP_(ULONG) Release() noexcept override
    {
        const ULONG left = --references;
        if (left == 0)
            delete this;
        return left;
    }
    STDMETHODIMP GetTypeInfoCount(UINT*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                        UINT*) noexcept override
    {
        return E_NOTIMPL;
    }

    // Not noexcept: a badly written add-in throws.
    STDMETHODIMP OnConnection(IDispatch* host, ext_ConnectMode mode, IDispatch* instance,
                              SAFEARRAY** custom) override
    {
        script.calls.push_back("OnConnection " + std::to_string(mode));
        if (!instance || !custom || !*custom)
            return E_POINTER;
        Connect(host);
        if (script.throws)
            throw std::runtime_error("a badly written add-in");
        return script.connectResult;
    }
    STDMETHODIMP OnDisconnection(ext_DisconnectMode mode, SAFEARRAY**) noexcept override
    {
        script.calls.push_back("OnDisconnection " + std::to_string(mode));
        Unadvise(barButton, barCookie);
        Unadvise(menuButton, menuCookie);
        Unadvise(hostButton, hostCookie);
        return S_OK;
    }
    STDMETHODIMP OnAddInsUpdate(SAFEARRAY**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP OnStartupComplete(SAFEARRAY**) noexcept override
    {
        script.calls.push_back("OnStartupComplete");
        return E_NOTIMPL;
    }
    STDMETHODIMP OnBeginShutdown(SAFEARRAY**) noexcept override
    {
        script.calls.push_back("OnBeginShutdown");
        return E_NOTIMPL;
    }

private:
    ~TestAddIn() { --script.alive; }

    void Connect(IDispatch* host)
    {
        Check(host->QueryInterface(IID_PPV_ARGS(&application)));
        ComPtr<_Explorer> explorer;
        Check(application->ActiveExplorer(&explorer));
        ComPtr<_CommandBars> bars;
        Check(explorer->get_CommandBars(&bars));
        ComPtr<CommandBar> bar;
        Check(bars->Add(TextVariant(L"Bar of the tests"), LongVariant(msoBarTop), MissingVariant(),
                        _variant_t(true), &bar));
        ComPtr<CommandBarControls> controls;
        Check(bar->get_Controls(&controls));
        barButton = AddButton(*controls.Get(), L"Bar Button", barCookie);
        Check(bar->put_Visible(VARIANT_TRUE));

        ComPtr<CommandBar> menuBar;
        Check(bars->get_ActiveMenuBar(&menuBar));
        ComPtr<CommandBarControls> menus;
        Check(menuBar->get_Controls(&menus));
        ComPtr<CommandBarControl> tools;
        Check(menus->get_Item(LongVariant(5), &tools));
        ComPtr<CommandBarPopup> popup;
        Check(tools.As(&popup));
        ComPtr<CommandBarControls> entries;
        Check(popup->get_Controls(&entries));
        menuButton = AddButton(*entries.Get(), L"Menu Entry", menuCookie);
        if (script.hostCommand)
            ListenToTheHost(*bars.Get());
    }

    void ListenToTheHost(_CommandBars& bars)
    {
        ComPtr<CommandBarControl> control;
        Check(bars.FindControl(MissingVariant(), LongVariant(script.hostCommand), MissingVariant(),
                               MissingVariant(), &control));
        Check(control.As(&hostButton));
        Listen(hostButton, hostCookie);
    }

    ComPtr<_CommandBarButton> AddButton(CommandBarControls& controls, const wchar_t* caption, DWORD& cookie)
    {
        ComPtr<CommandBarControl> control;
        Check(controls.Add(LongVariant(msoControlButton), MissingVariant(), MissingVariant(),
                           MissingVariant(), _variant_t(true), &control));
        ComPtr<_CommandBarButton> button;
        Check(control.As(&button));
        Check(button->put_Caption(_bstr_t(caption)));
        Check(button->put_TooltipText(_bstr_t(L"Tip of the tests")));
        Check(button->put_Tag(_bstr_t(caption)));
        Check(button->put_Style(msoButtonIconAndCaption));
        if (script.pastesFace)
        {
            PutPictureOnClipboard(RGB(0, 128, 0));
            Check(button->PasteFace());
        }
        Listen(button, cookie);
        return button;
    }

    void Listen(const ComPtr<_CommandBarButton>& button, DWORD& cookie)
    {
        const ComPtr<IUnknown> sink(new ClickSink(script));
        Check(PointOf(button)->Advise(sink.Get(), &cookie));
    }

    static ComPtr<IConnectionPoint> PointOf(const ComPtr<_CommandBarButton>& button)
    {
        ComPtr<IConnectionPointContainer> container;
        Check(button.As(&container));
        ComPtr<IConnectionPoint> point;
        Check(container->FindConnectionPoint(DIID__CommandBarButtonEvents, &point));
        return point;
    }

    static void Unadvise(const ComPtr<_CommandBarButton>& button, DWORD& cookie)
    {
        if (button && cookie)
            PointOf(button)->Unadvise(std::exchange(cookie, 0));
    }

    AddInScript& script;
    ULONG references = 0;
    ComPtr<_Application> application;
    ComPtr<_CommandBarButton> barButton;
    ComPtr<_CommandBarButton> menuButton;
    ComPtr<_CommandBarButton> hostButton;
    DWORD barCookie = 0;
    DWORD menuCookie = 0;
    DWORD hostCookie = 0;
};

class Factory final : public IClassFactory
{
public:
    explicit Factory(AddInScript& script) : script(script) {}

    STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override
    {
        const bool ours = iid == IID_IUnknown || iid == IID_IClassFactory;
        *object = ours ? this : nullptr;
        return ours ? AddRef(), S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references; }
    STDMETHODIMP_(ULONG) Release() noexcept override
    {
        const ULONG left = --references;
        if (left == 0)
            delete this;
        return left;
    }
    STDMETHODIMP CreateInstance(IUnknown*, REFIID iid, void** object) noexcept override
    {
        const ComPtr<_IDTExtensibility2> made(new TestAddIn(script));
        return made.CopyTo(iid, object);
    }
    STDMETHODIMP LockServer(BOOL) noexcept override { return S_OK; }

private:
    ~Factory() = default;

    AddInScript& script;
    ULONG references = 0;
};

void SetText(HKEY root, const std::wstring& key, const wchar_t* name, const wchar_t* value)
{
    ::RegSetKeyValueW(root, key.c_str(), name, REG_SZ, value,
                      static_cast<DWORD>((std::wcslen(value) + 1) * sizeof *value));
}
}    // namespace

RegisteredAddIn::RegisteredAddIn(AddInScript& script, DWORD loadBehavior)
{
    // Wine looks for classes under the machine's key alone.
    SetText(HKEY_LOCAL_MACHINE, std::wstring(classKey) + L"\\CLSID", nullptr, classIdText);
    SetText(HKEY_CURRENT_USER, addInKey, L"FriendlyName", friendlyName);
    ::RegSetKeyValueW(HKEY_CURRENT_USER, addInKey, L"LoadBehavior", REG_DWORD, &loadBehavior,
                      sizeof loadBehavior);
    const ComPtr<IClassFactory> factory(new Factory(script));
    Check(::CoRegisterClassObject(classId, factory.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie));
}

RegisteredAddIn::~RegisteredAddIn()
{
    ::CoRevokeClassObject(cookie);
    ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, classKey);
    ::RegDeleteTreeW(HKEY_CURRENT_USER, addInKey);
}
