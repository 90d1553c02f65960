#include "win/OleDispatchDriver.h"

#include "tests/win/FakeDispatch.h"
#include "tests/win/MemoryGone.h"

#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <gtest/gtest.h>

namespace
{
using Microsoft::WRL::ComPtr;

// A driver that lends its calls to the tests.
class CTestDriver : public COleDispatchDriver
{
public:
    using COleDispatchDriver::CallMethod;
    using COleDispatchDriver::COleDispatchDriver;
    using COleDispatchDriver::GetProperty;
    using COleDispatchDriver::PutProperty;
};

class OleDispatchDriver : public testing::Test
{
protected:
    CallLog log;
    ComPtr<FakeDispatch> object = FakeDispatch::Make(log, "Object");
    CTestDriver driver{ComPtr<IDispatch>(object.Get())};

    // What `call` throws as COleException or one of its kin; S_OK when it throws nothing.
    template <typename Call>
    HRESULT CodeOf(Call call)
    {
        try
        {
            call();
            return S_OK;
        }
        catch (const COleException& error)
        {
            return error.GetCode();
        }
    }
};

TEST_F(OleDispatchDriver, PassesArgumentsInTheOrderGivenWithTheTypesTheyHave)
{
    object->OnMethod(7, [](const FakeArguments&) { return _variant_t(); });

    driver.CallMethod<void>(7, TextVariant(L"one"), LongVariant(2), BoolVariant(true), MissingVariant());

    EXPECT_EQ(log.lines,
              std::vector<std::string>{"Object 7 method(BSTR one, I4 2, BOOL -1, ERROR 0x80020004)"});
}

TEST_F(OleDispatchDriver, PutsAValueAsTheNamedPropertyPutArgument)
{
    object->OnPut(3, [](const FakeArguments&) { return _variant_t(); });

    driver.PutProperty(3, LongVariant(5));

    EXPECT_EQ(log.lines, std::vector<std::string>{"Object 3 put(I4 5)"});
}

TEST_F(OleDispatchDriver, MakesOneInvokeForOneGet)
{
    object->OnGet(1, [](const FakeArguments&) { return LongVariant(12); });

    const LONG value = driver.GetProperty<LONG>(1);

    EXPECT_EQ(value, 12);
    EXPECT_EQ(log.lines, std::vector<std::string>{"Object 1 get()"});
}

TEST_F(OleDispatchDriver, CoercesTheResultToTheTypeAskedFor)
{
    object->OnGet(1, [](const FakeArguments&) { return TextVariant(L"42"); });

    EXPECT_EQ(driver.GetProperty<LONG>(1), 42);
}

TEST_F(OleDispatchDriver, ThrowsTheCoercionsCodeForAResultOfAnotherKind)
{
    object->OnGet(1, [](const FakeArguments&) { return TextVariant(L"not a number"); });

    EXPECT_EQ(CodeOf([&] { driver.GetProperty<LONG>(1); }), DISP_E_TYPEMISMATCH);
}

TEST_F(OleDispatchDriver, HandsAVariantResultOverAsItComes)
{
    object->OnGet(1, [](const FakeArguments&) { return BoolVariant(true); });

    const _variant_t value = driver.GetProperty<_variant_t>(1);

    EXPECT_EQ(value.vt, VT_BOOL);
}

TEST_F(OleDispatchDriver, KeepsZerosInsideATextResult)
{
    const std::wstring text(L"a\0b", 3);
    object->OnGet(1, [&](const FakeArguments&) { return TextVariant(text); });

    EXPECT_EQ(driver.GetProperty<std::wstring>(1), text);
}

TEST_F(OleDispatchDriver, TakesANullTextForTheEmptyOne)
{
    object->OnGet(1,
                  [](const FakeArguments&)
                  {
                      _variant_t nothing;
                      nothing.vt = VT_BSTR;
                      return nothing;
                  });

    EXPECT_EQ(driver.GetProperty<std::wstring>(1), L"");
}

TEST_F(OleDispatchDriver, ThrowsUnspecifiedFailureWhenThereIsNoStringToReceiveAText)
{
    _variant_t text = TextVariant(L"longer than a string holds within itself");

    const HRESULT code = CodeOf(
        [&]
        {
            const MemoryGone gone;
            DispatchResult<std::wstring>::Take(std::move(text));
        });

    EXPECT_EQ(code, E_FAIL);
}

TEST_F(OleDispatchDriver, OwnsTheObjectThatACallReturns)
{
    object->OnGet(1, [&](const FakeArguments&) { return ObjectVariant(FakeDispatch::Make(log, "Child")); });

    CTestDriver child = driver.GetProperty<CTestDriver>(1);
    const int alive = log.liveObjects;
    child.ReleaseDispatch();

    EXPECT_EQ(alive, 2);
    EXPECT_EQ(log.liveObjects, 1);
}

TEST_F(OleDispatchDriver, ReturnsAnEmptyDriverForNoObject)
{
    object->OnGet(1, [](const FakeArguments&) { return DispatchVariant(nullptr); });

    EXPECT_FALSE(driver.GetProperty<CTestDriver>(1));
}

TEST_F(OleDispatchDriver, ThrowsTheObjectsOwnWordsWhenItGivesExceptionInformation)
{
    log.failAt = 1;
    log.failure = CallLog::Failure::withInfo;

    try
    {
        driver.CallMethod<void>(1);
        FAIL() << "nothing was thrown";
    }
    catch (const COleDispatchException& error)
    {
        EXPECT_EQ(error.GetDescription(), L"The store is busy.");
        EXPECT_EQ(error.GetSource(), L"FakeStore");
        EXPECT_EQ(error.GetCode(), E_ACCESSDENIED);
    }
}

TEST_F(OleDispatchDriver, ThrowsThePlainCodeWithoutExceptionInformation)
{
    log.failAt = 1;

    try
    {
        driver.CallMethod<void>(1);
        FAIL() << "nothing was thrown";
    }
    catch (const COleException& error)
    {
        EXPECT_EQ(dynamic_cast<const COleDispatchException*>(&error), nullptr);
        EXPECT_EQ(error.GetCode(), E_OUTOFMEMORY);
    }
}

TEST_F(OleDispatchDriver, RefusesACallOnAnEmptyDriver)
{
    const CTestDriver empty;

    EXPECT_EQ(CodeOf([&] { empty.CallMethod<void>(1); }), E_POINTER);
}

TEST_F(OleDispatchDriver, ReleasesItsObjectWhenItGoes)
{
    object.Reset();

    driver = CTestDriver();

    EXPECT_EQ(log.liveObjects, 0);
}

// An object that names its texts only when asked, as an EXCEPINFO allows.
HRESULT STDAPICALLTYPE FillInLater(EXCEPINFO* info)
{
    info->bstrDescription = ::SysAllocString(L"late");
    info->scode = E_FAIL;
    return S_OK;
}

class CLateObject : public IDispatch
{
public:
    STDMETHODIMP QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO* exception,
                        UINT*) override
    {
        exception->pfnDeferredFillIn = FillInLater;
        return DISP_E_EXCEPTION;
    }
};

TEST_F(OleDispatchDriver, AsksForExceptionInformationThatWasPutOff)
{
    CLateObject late;
    const CTestDriver lateDriver{ComPtr<IDispatch>(&late)};

    try
    {
        lateDriver.CallMethod<void>(1);
        FAIL() << "nothing was thrown";
    }
    catch (const COleDispatchException& error)
    {
        EXPECT_EQ(error.GetDescription(), L"late");
    }
}

class OleDispatchDriverCreation : public testing::Test
{
protected:
    void SetUp() override { ASSERT_HRESULT_SUCCEEDED(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)); }
    void TearDown() override { ::CoUninitialize(); }
};

TEST_F(OleDispatchDriverCreation, MakesAnObjectOfARegisteredClass)
{
    CTestDriver driver;

    const bool made = driver.CreateDispatch(L"Scripting.Dictionary");

    EXPECT_TRUE(made);
    EXPECT_TRUE(driver);
}

TEST_F(OleDispatchDriverCreation, ReportsAnUnknownClassByFalseAndHoldsNothing)
{
    CallLog log;
    CTestDriver driver{ComPtr<IDispatch>(FakeDispatch::Make(log, "Old").Get())};

    const bool made = driver.CreateDispatch(L"No.Such.Class.Anywhere");

    EXPECT_FALSE(made);
    EXPECT_FALSE(driver);
    EXPECT_EQ(log.liveObjects, 0);
}
}    // namespace
