#include "explorer/office/OutlookObjects.h"
#include "tests/explorer/ClipboardPicture.h"
#include "win/ComInitialization.h"
#include "win/Variant.h"

#include <windows.h>

#include <comdef.h>
#include <ocidl.h>
#include <olectl.h>

#include <gtest/gtest.h>

using Microsoft::WRL::ComPtr;

namespace
{
class Watcher final : public CommandBarsWatcher
{
public:
    void OnCommandBarsChanged() override { ++changes; }
    void OnBuiltInCommand(UINT) override {}
    void OnDisplay() override {}
    void OnCloseAsked() override {}
    HWND GetWindow() const override { return nullptr; }

    int changes = 0;
};

// A listener that only counts; it lives on the test's stack.
class CountingSink final : public IDispatch
{
public:
    STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override
    {
        const bool ours = iid == IID_IUnknown || iid == IID_IDispatch;
        *object = ours ? this : nullptr;
        return ours ? AddRef(), S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references; }
    STDMETHODIMP_(ULONG) Release() noexcept override { return --references; }
    STDMETHODIMP GetTypeInfoCount(UINT*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                        UINT*) noexcept override
    {
        ++clicks;
        return E_FAIL;    // which must not keep the others from hearing it
    }

    ULONG references = 0;
    int clicks = 0;
};
}    // namespace

class CommandBarsOfTheHost : public testing::Test
{
protected:
    CommandBarsOfTheHost()
        : application(MakeModelObject<CApplication>(static_cast<CommandBarsWatcher&>(watcher)))
    {
        ComPtr<_Explorer> explorer;
        _com_util::CheckError(application->ActiveExplorer(&explorer));
        _com_util::CheckError(explorer->get_CommandBars(&bars));
    }

    ComPtr<CommandBar> AddBar(const wchar_t* name)
    {
        ComPtr<CommandBar> bar;
        _com_util::CheckError(
            bars->Add(TextVariant(name), LongVariant(msoBarTop), MissingVariant(), MissingVariant(), &bar));
        return bar;
    }

    ComPtr<_CommandBarButton> AddButton(const ComPtr<CommandBar>& bar)
    {
        ComPtr<CommandBarControls> controls;
        _com_util::CheckError(bar->get_Controls(&controls));
        ComPtr<CommandBarControl> control;
        _com_util::CheckError(controls->Add(MissingVariant(), MissingVariant(), MissingVariant(),
                                            MissingVariant(), MissingVariant(), &control));
        ComPtr<_CommandBarButton> button;
        _com_util::CheckError(control.As(&button));
        return button;
    }

    ComPtr<IConnectionPoint> PointOf(const ComPtr<_CommandBarButton>& button)
    {
        ComPtr<IConnectionPointContainer> container;
        _com_util::CheckError(button.As(&container));
        ComPtr<IConnectionPoint> point;
        _com_util::CheckError(container->FindConnectionPoint(DIID__CommandBarButtonEvents, &point));
        return point;
    }

    const ComInitialization com;
    Watcher watcher;
    ComPtr<CApplication> application;
    ComPtr<_CommandBars> bars;
};

TEST_F(CommandBarsOfTheHost, AreFoundByNumberAndByName)
{
    const ComPtr<CommandBar> made = AddBar(L"Mine");

    ComPtr<CommandBar> byNumber;
    ComPtr<CommandBar> byName;
    ComPtr<CommandBar> none;
    EXPECT_EQ(bars->get_Item(LongVariant(2), &byNumber), S_OK);
    EXPECT_EQ(bars->get_Item(TextVariant(L"mine"), &byName), S_OK);

    EXPECT_EQ(byNumber, made);
    EXPECT_EQ(byName, made);
    EXPECT_EQ(bars->get_Item(LongVariant(0), &none), E_INVALIDARG);
    EXPECT_EQ(bars->get_Item(LongVariant(3), &none), E_INVALIDARG);
    EXPECT_FALSE(none);
}

TEST_F(CommandBarsOfTheHost, RefuseASecondBarOfTheSameName)
{
    AddBar(L"Mine");

    ComPtr<CommandBar> second;
    const HRESULT result =
        bars->Add(TextVariant(L"Mine"), MissingVariant(), MissingVariant(), MissingVariant(), &second);

    EXPECT_EQ(result, E_INVALIDARG);
    EXPECT_FALSE(second);
}

TEST_F(CommandBarsOfTheHost, FindAControlByItsTagUntilItIsDeleted)
{
    const ComPtr<_CommandBarButton> button = AddButton(AddBar(L"Mine"));
    button->put_Tag(_bstr_t(L"the tag"));
    ComPtr<CommandBarControl> found;
    ComPtr<CommandBarControl> deleted;

    bars->FindControl(MissingVariant(), MissingVariant(), TextVariant(L"the tag"), MissingVariant(), &found);
    EXPECT_EQ(button->Delete(MissingVariant()), S_OK);
    bars->FindControl(MissingVariant(), MissingVariant(), TextVariant(L"the tag"), MissingVariant(),
                      &deleted);

    EXPECT_TRUE(found);
    EXPECT_FALSE(deleted);
    EXPECT_EQ(button->Delete(MissingVariant()), CO_E_OBJNOTCONNECTED);
}

TEST_F(CommandBarsOfTheHost, AnswerLateBoundCalls)
{
    const ComPtr<_CommandBarButton> button = AddButton(AddBar(L"Mine"));
    wchar_t name[] = L"Caption";
    LPOLESTR names[] = {name};
    DISPID id = 0;

    const HRESULT named = button->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
    _variant_t caption(L"Late");
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS arguments{&caption, &put, 1, 1};
    const HRESULT called = button->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &arguments,
                                          nullptr, nullptr, nullptr);

    EXPECT_EQ(named, S_OK);
    EXPECT_EQ(called, S_OK);
    _bstr_t read;
    button->get_Caption(read.GetAddress());
    EXPECT_STREQ(read, L"Late");
}

TEST_F(CommandBarsOfTheHost, LetEveryListenerHearAClickUntilItLeaves)
{
    const ComPtr<_CommandBarButton> button = AddButton(AddBar(L"Mine"));
    const ComPtr<IConnectionPoint> point = PointOf(button);
    CountingSink first;
    CountingSink second;
    DWORD firstCookie = 0;
    DWORD secondCookie = 0;
    ASSERT_EQ(point->Advise(&first, &firstCookie), S_OK);
    ASSERT_EQ(point->Advise(&second, &secondCookie), S_OK);

    button->Execute();
    EXPECT_EQ(point->Unadvise(firstCookie), S_OK);
    button->Execute();

    EXPECT_NE(firstCookie, secondCookie);
    EXPECT_EQ(first.clicks, 1);
    EXPECT_EQ(second.clicks, 2);
    EXPECT_EQ(first.references, 0U);
    EXPECT_EQ(point->Unadvise(firstCookie), CONNECT_E_NOCONNECTION);
    button->Delete(MissingVariant());
    EXPECT_EQ(second.references, 0U);
}

TEST_F(CommandBarsOfTheHost, TakeAPictureFromTheClipboardAlone)
{
    const ComPtr<_CommandBarButton> button = AddButton(AddBar(L"Mine"));
    ASSERT_TRUE(::OpenClipboard(nullptr));
    ::EmptyClipboard();
    ::CloseClipboard();

    EXPECT_EQ(button->PasteFace(), DV_E_CLIPFORMAT);
    PutPictureOnClipboard(RGB(0, 0, 200));
    EXPECT_EQ(button->PasteFace(), S_OK);
}

TEST_F(CommandBarsOfTheHost, RefuseWhatTheyDoNotOffer)
{
    const ComPtr<_CommandBarButton> button = AddButton(AddBar(L"Mine"));
    ComPtr<CommandBarControl> copy;

    EXPECT_EQ(button->Copy(MissingVariant(), MissingVariant(), &copy), E_NOTIMPL);
    EXPECT_FALSE(copy);
}

TEST_F(CommandBarsOfTheHost, DoNoHarmToWhomKeepsThemTooLong)
{
    const ComPtr<CommandBar> bar = AddBar(L"Mine");
    const ComPtr<_CommandBarButton> button = AddButton(bar);
    CountingSink sink;
    DWORD cookie = 0;
    PointOf(button)->Advise(&sink, &cookie);

    application->Close();
    application.Reset();

    ComPtr<CommandBar> more;
    ComPtr<IDispatch> host;
    EXPECT_EQ(sink.references, 0U);
    EXPECT_EQ(button->put_Caption(_bstr_t(L"Late")), S_OK);
    EXPECT_EQ(button->get_Application(&host), CO_E_OBJNOTCONNECTED);
    EXPECT_EQ(bars->Add(TextVariant(L"More"), MissingVariant(), MissingVariant(), MissingVariant(), &more),
              CO_E_OBJNOTCONNECTED);
}

TEST(ObjectModel, IsGoneWithItsLastReference)
{
    const ComInitialization com;
    const long before = CountedObject::GetCount();
    Watcher watcher;
    {
        const auto application = MakeModelObject<CApplication>(static_cast<CommandBarsWatcher&>(watcher));
        ComPtr<CommandBar> bar;
        application->GetBars().Add(TextVariant(L"Mine"), MissingVariant(), MissingVariant(), MissingVariant(),
                                   &bar);
        EXPECT_GT(CountedObject::GetCount(), before);
    }

    EXPECT_EQ(CountedObject::GetCount(), before);
}
