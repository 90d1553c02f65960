// Event sinks over a source of events with a real connection point.
#include "win/ComCoClass.h"
#include "win/ComModule.h"
#include "win/ComObjectRoot.h"
#include "win/ComThreadModel.h"
#include "win/DispEventImpl.h"
#include "win/OleException.h"
#include "win/Variant.h"

#include <windows.h>

#include <oaidl.h>
#include <objidl.h>
#include <ocidl.h>
#include <wrl/client.h>

#include <gtest/gtest.h>

#include <map>
#include <vector>

using Microsoft::WRL::ComPtr;

namespace
{
constexpr IID firstEvents = {0x0B5F1C11, 0x2F0B, 0x4F7E, {0x8A, 0x10, 0x6A, 0x5D, 0x31, 0x0E, 0xA1, 0x01}};
constexpr IID otherEvents = {0x0B5F1C12, 0x2F0B, 0x4F7E, {0x8A, 0x10, 0x6A, 0x5D, 0x31, 0x0E, 0xA1, 0x01}};

// A source with one connection point; lives on the stack and counts what is held of it.
class Source : public IConnectionPointContainer, public IConnectionPoint
{
public:
    STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override
    {
        *object = nullptr;
        if (iid == IID_IConnectionPointContainer || iid == IID_IUnknown)
            *object = static_cast<IConnectionPointContainer*>(this);
        else if (iid == IID_IConnectionPoint)
            *object = static_cast<IConnectionPoint*>(this);
        else
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references; }
    STDMETHODIMP_(ULONG) Release() noexcept override { return --references; }

    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** point) noexcept override
    {
        *point = iid == firstEvents ? this : nullptr;
        if (!*point)
            return CONNECT_E_NOCONNECTION;
        AddRef();
        return S_OK;
    }

    STDMETHODIMP GetConnectionInterface(IID*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer**) noexcept override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) noexcept override
    {
        if (FAILED(adviseResult))
            return adviseResult;
        ComPtr<IDispatch> events;
        const HRESULT asked =
            sink->QueryInterface(firstEvents, reinterpret_cast<void**>(events.GetAddressOf()));
        if (FAILED(asked))
            return CONNECT_E_CANNOTCONNECT;
        *cookie = ++lastCookie;
        sinks[*cookie] = events;
        return S_OK;
    }
    STDMETHODIMP Unadvise(DWORD cookie) noexcept override
    {
        if (FAILED(unadviseResult))
            return unadviseResult;
        return sinks.erase(cookie) ? S_OK : CONNECT_E_NOCONNECTION;
    }
    STDMETHODIMP EnumConnections(IEnumConnections**) noexcept override { return E_NOTIMPL; }

    HRESULT Fire(DISPID id, std::vector<VARIANT> arguments, VARIANT* result = nullptr)
    {
        const std::map<DWORD, ComPtr<IDispatch>> now = sinks;
        DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
        HRESULT last = E_UNEXPECTED;
        for (const auto& [cookie, sink] : now)
            last = sink->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, result,
                                nullptr, nullptr);
        return last;
    }

    ULONG references = 1;
    HRESULT adviseResult = S_OK;
    HRESULT unadviseResult = S_OK;
    DWORD lastCookie = 41;
    std::map<DWORD, ComPtr<IDispatch>> sinks;
};

class CListener : public CComObjectRootEx<CComSingleThreadModel>,
                  public IPersist,
                  public IDispEventSimpleImpl<1, CListener, &firstEvents>,
                  public IDispEventSimpleImpl<2, CListener, &firstEvents>
{
public:
    using First = IDispEventSimpleImpl<1, CListener, &firstEvents>;
    using Second = IDispEventSimpleImpl<2, CListener, &firstEvents>;

    static inline CListener* last = nullptr;    // the one made last

    static std::span<const InterfaceEntry<CListener>> GetInterfaceMap() noexcept
    {
        static const InterfaceEntry<CListener> map[] = {
            InterfaceEntry<CListener>::By<IPersist>(&IID_IPersist)};
        return map;
    }
    static std::span<const EventSinkEntry> GetSinkMap() noexcept
    {
        static const EventFunctionInfo click{CC_STDCALL, VT_EMPTY, 2, {VT_DISPATCH, VT_BYREF | VT_BOOL}};
        static const EventFunctionInfo number{CC_STDCALL, VT_EMPTY, 1, {VT_I4}};
        static const EventFunctionInfo none{CC_STDCALL, VT_EMPTY, 0, {}};
        static const EventSinkEntry map[] = {
            {1, &otherEvents, 1, EventHandlerOf<&CListener::OnForeign>::Address(), &none},
            {1, &firstEvents, 1, EventHandlerOf<&CListener::OnClick>::Address(), &click},
            {1, &firstEvents, 2, EventHandlerOf<&CListener::OnNumber>::Address(), &number},
            {1, &firstEvents, 3, EventHandlerOf<&CListener::OnFailing>::Address(), &none},
            {1, &firstEvents, 4, EventHandlerOf<&CListener::OnForeign>::Address(), nullptr},
            {2, &firstEvents, 2, EventHandlerOf<&CListener::OnForeign>::Address(), &none},
        };
        return map;
    }

    CListener() { last = this; }

    void OnClick(IDispatch* control, VARIANT_BOOL* cancel)
    {
        ++clicks;
        clicked = control;
        *cancel = VARIANT_TRUE;
    }
    void OnNumber(LONG value) { number = value; }
    void OnFailing() { throw COleException(STG_E_MEDIUMFULL); }
    void OnForeign() { ++foreign; }

    STDMETHODIMP GetClassID(CLSID*) noexcept override { return E_NOTIMPL; }

    int clicks = 0;
    int foreign = 0;
    IDispatch* clicked = nullptr;
    LONG number = 0;

protected:
    ~CListener() { last = nullptr; }
};

class EventSinks : public testing::Test
{
protected:
    EventSinks()
    {
        CComObject<CListener>::Create(IID_IPersist, reinterpret_cast<void**>(object.GetAddressOf()));
        listener = CListener::last;
    }
    ~EventSinks() override
    {
        object.Reset();
        source.sinks.clear();
        EXPECT_EQ(source.references, 1u);
        EXPECT_EQ(ComModule::GetLockCount(), locksBefore);
    }

    IUnknown* SourceUnknown() { return static_cast<IConnectionPointContainer*>(&source); }
    HRESULT AdviseFirst() { return listener->First::DispEventAdvise(SourceUnknown()); }
    HRESULT UnadviseFirst() { return listener->First::DispEventUnadvise(SourceUnknown()); }

    static VARIANT Boolean(VARIANT_BOOL* value)
    {
        VARIANT variant = {};
        V_VT(&variant) = VT_BYREF | VT_BOOL;
        V_BOOLREF(&variant) = value;
        return variant;
    }
    static VARIANT Dispatch(IDispatch* value)
    {
        VARIANT variant = {};
        V_VT(&variant) = VT_DISPATCH;
        V_DISPATCH(&variant) = value;
        return variant;
    }

    const long locksBefore = ComModule::GetLockCount();
    Source source;
    ComPtr<IPersist> object;
    CListener* listener = nullptr;
};

TEST_F(EventSinks, AreNotAdvisedAtFirst)
{
    EXPECT_EQ(listener->First::GetEventCookie(), 0xFEFEFEFEu);
    EXPECT_EQ(listener->Second::GetEventCookie(), 0xFEFEFEFEu);
}

TEST_F(EventSinks, KeepTheCookieOfTheirConnection)
{
    EXPECT_EQ(AdviseFirst(), S_OK);

    EXPECT_EQ(listener->First::GetEventCookie(), source.lastCookie);
    EXPECT_EQ(listener->Second::GetEventCookie(), 0xFEFEFEFEu);
}

TEST_F(EventSinks, AreAdvisedOnceOnly)
{
    AdviseFirst();

    EXPECT_EQ(AdviseFirst(), E_FAIL);
    EXPECT_EQ(source.sinks.size(), 1u);
}

TEST_F(EventSinks, HandOnWhatTheSourceAnswers)
{
    source.adviseResult = CONNECT_E_ADVISELIMIT;

    EXPECT_EQ(AdviseFirst(), CONNECT_E_ADVISELIMIT);
    EXPECT_EQ(listener->First::GetEventCookie(), 0xFEFEFEFEu);
    EXPECT_EQ(listener->First::DispEventAdvise(nullptr), E_INVALIDARG);
    EXPECT_EQ(listener->First::DispEventAdvise(object.Get()), E_NOINTERFACE) << "no source of events at all";
}

TEST_F(EventSinks, AreFreeAgainWhateverUnadvisingSays)
{
    AdviseFirst();
    source.unadviseResult = E_ACCESSDENIED;

    EXPECT_EQ(UnadviseFirst(), E_ACCESSDENIED);
    EXPECT_EQ(listener->First::GetEventCookie(), 0xFEFEFEFEu);
}

TEST_F(EventSinks, CanBeAdvisedAnew)
{
    AdviseFirst();
    EXPECT_EQ(UnadviseFirst(), S_OK);
    EXPECT_TRUE(source.sinks.empty());

    EXPECT_EQ(AdviseFirst(), S_OK);
    source.Fire(2, {LongVariant(7)});

    EXPECT_EQ(listener->number, 7);
}

TEST_F(EventSinks, CallTheHandlerWithTheEventsArguments)
{
    AdviseFirst();
    VARIANT_BOOL cancel = VARIANT_FALSE;
    IDispatch* button = source.sinks.begin()->second.Get();    // any object will do

    EXPECT_EQ(source.Fire(1, {Boolean(&cancel), Dispatch(button)}), S_OK);

    EXPECT_EQ(listener->clicks, 1);
    EXPECT_EQ(listener->clicked, button);
    EXPECT_EQ(cancel, VARIANT_TRUE);
}

TEST_F(EventSinks, ConvertArguments)
{
    AdviseFirst();
    VARIANT small = {};
    V_VT(&small) = VT_I2;
    V_I2(&small) = -5;

    EXPECT_EQ(source.Fire(2, {small}), S_OK);
    EXPECT_EQ(listener->number, -5);

    VARIANT wrapped = {};
    V_VT(&wrapped) = VT_BYREF | VT_VARIANT;
    _variant_t text(L"12");
    V_VARIANTREF(&wrapped) = &text;
    EXPECT_EQ(source.Fire(2, {wrapped}), S_OK);
    EXPECT_EQ(listener->number, 12);
}

TEST_F(EventSinks, GiveTheHandlerACopyOfWhatCameByValue)
{
    AdviseFirst();
    const _variant_t cancel = BoolVariant(false);

    EXPECT_EQ(source.Fire(1, {cancel, Dispatch(nullptr)}), S_OK);

    EXPECT_EQ(listener->clicks, 1);
    EXPECT_EQ(V_BOOL(&cancel), VARIANT_FALSE);
}

TEST_F(EventSinks, RefuseArgumentsThatDoNotFit)
{
    AdviseFirst();
    LONG number = 0;
    VARIANT reference = {};
    V_VT(&reference) = VT_BYREF | VT_I4;
    V_I4REF(&reference) = &number;
    const _variant_t word(L"word");

    EXPECT_EQ(source.Fire(1, {reference, Dispatch(nullptr)}), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(source.Fire(2, {word}), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(source.Fire(2, {}), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(source.Fire(1, {LongVariant(1)}), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(listener->clicks, 0);
}

TEST_F(EventSinks, PassOverEventsOfOtherIdsInterfacesAndSinks)
{
    listener->Second::DispEventAdvise(SourceUnknown());

    EXPECT_EQ(source.Fire(1, {}), S_OK);
    EXPECT_EQ(source.Fire(99, {}), S_OK);
    EXPECT_EQ(listener->foreign, 0);
    EXPECT_EQ(listener->clicks, 0);

    EXPECT_EQ(source.Fire(2, {}), S_OK);
    EXPECT_EQ(listener->foreign, 1) << "the second sink's own handler";
}

TEST_F(EventSinks, PassOverAnEventWhoseShapeNobodyKnows)
{
    AdviseFirst();

    EXPECT_EQ(source.Fire(4, {}), S_OK);
    EXPECT_EQ(listener->foreign, 0);
}

TEST_F(EventSinks, AnswerWithTheHandlersFailure)
{
    AdviseFirst();

    EXPECT_EQ(source.Fire(3, {}), STG_E_MEDIUMFULL);
}

TEST_F(EventSinks, DoNotKeepTheirObjectAndOutliveIt)
{
    AdviseFirst();

    object.Reset();

    EXPECT_EQ(CListener::last, nullptr);
    EXPECT_EQ(ComModule::GetLockCount(), locksBefore + 1) << "the sink's code is still needed";
    EXPECT_EQ(source.Fire(2, {LongVariant(7)}), S_OK);
}

TEST_F(EventSinks, HaveAnIdentityOfTheirOwn)
{
    AdviseFirst();
    IDispatch* sink = source.sinks.begin()->second.Get();
    ComPtr<IUnknown> self;
    void* other = &other;

    EXPECT_EQ(sink->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(self.GetAddressOf())), S_OK);
    EXPECT_EQ(self.Get(), sink);
    EXPECT_EQ(sink->QueryInterface(IID_IPersist, &other), E_NOINTERFACE);
    EXPECT_EQ(other, nullptr);
}
}    // namespace
