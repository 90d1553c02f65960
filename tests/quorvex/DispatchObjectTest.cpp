#include "quorvex/DispatchObject.h"

#include "quorvex/MapiError.h"
#include "quorvex/Module.h"
#include "tests/quorvex/Automation.h"
#include "tests/quorvex/FakeMapiMemory.h"

#include <windows.h>

#include <mapicode.h>

#include <stdexcept>
#include <thread>

namespace
{
// An automation object whose operations give back what they were given.
class CEcho final : public CDispatchObject
{
public:
    static constexpr DISPID sum = 1, text = 2, object = 3, any = 4, stored = 5, fail = 6, leak = 7, date = 8,
                            badIndex = 9, flag = 10;

protected:
    std::span<const Operation> Operations() const noexcept override
    {
        static constexpr Operation operations[] = {
            Method<&CEcho::Sum>(sum),           ::Get<&CEcho::Text>(text),    Method<&CEcho::Object>(object),
            Method<&CEcho::Any>(any),           ::Put<&CEcho::Store>(stored), ::Get<&CEcho::Stored>(stored),
            Method<&CEcho::Fail>(fail),         Method<&CEcho::Leak>(leak),   Method<&CEcho::Date>(date),
            Method<&CEcho::BadIndex>(badIndex), Method<&CEcho::Flag>(flag),
        };
        return operations;
    }

private:
    long Sum(long first, long second) { return 10 * first + second; }
    std::wstring Text(const std::wstring& value) { return value; }
    ComPtr<IDispatch> Object(IDispatch* value) { return value; }
    _variant_t Any(const VARIANT& value) { return _variant_t(static_cast<long>(value.vt), VT_I4); }
    void Store(long value) { last = value; }
    long Stored() { return last; }
    void Fail() { throw MapiError(MAPI_E_NO_ACCESS, L"The door is locked."); }
    void Leak() { throw std::runtime_error("not for the caller"); }
    DATE Date(DATE value) { return value; }
    void BadIndex() { throw MapiError(DISP_E_BADINDEX, L"none"); }
    bool Flag(bool value) { return !value; }

    long last = 0;
};

class DispatchObject : public testing::Test
{
protected:
    automation::Outcome Invoke(DISPID id, WORD flags, std::vector<_variant_t> arguments = {})
    {
        return automation::Invoke(echo.Get(), id, flags, std::move(arguments));
    }

    FakeMapiMemory memory;
    const long countBefore = Module::count;
    ComPtr<IDispatch> echo = MakeObject<CEcho>();
};

TEST_F(DispatchObject, HandsArgumentsOverInTheirOrder)
{
    const auto outcome = Invoke(CEcho::sum, DISPATCH_METHOD, {4L, 2L});

    EXPECT_EQ(outcome.result, S_OK);
    EXPECT_EQ(automation::LongOf(outcome.value), 42);
}

TEST_F(DispatchObject, RefusesAnIdThatItDoesNotHave)
{
    EXPECT_EQ(Invoke(77, DISPATCH_METHOD).result, DISP_E_MEMBERNOTFOUND);
}

TEST_F(DispatchObject, RefusesAnOperationInvokedInAnotherWay)
{
    EXPECT_EQ(Invoke(CEcho::sum, DISPATCH_PROPERTYGET, {4L, 2L}).result, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(Invoke(CEcho::text, DISPATCH_METHOD, {L"a"}).result, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(Invoke(CEcho::sum, DISPATCH_PROPERTYPUT, {4L}).result, DISP_E_MEMBERNOTFOUND);
}

TEST_F(DispatchObject, TakesMethodAndGetTogetherForEither)
{
    EXPECT_EQ(Invoke(CEcho::sum, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {4L, 2L}).result, S_OK);
    EXPECT_EQ(Invoke(CEcho::text, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {L"a"}).result, S_OK);
}

TEST_F(DispatchObject, RefusesTooFewAndTooManyArguments)
{
    EXPECT_EQ(Invoke(CEcho::sum, DISPATCH_METHOD, {4L}).result, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(Invoke(CEcho::sum, DISPATCH_METHOD, {4L, 2L, 1L}).result, DISP_E_BADPARAMCOUNT);
}

TEST_F(DispatchObject, ConvertsArgumentsAsAutomationDoes)
{
    EXPECT_EQ(automation::LongOf(Invoke(CEcho::sum, DISPATCH_METHOD, {L"4", 2.0}).value), 42);
    EXPECT_EQ(automation::TextOf(Invoke(CEcho::text, DISPATCH_PROPERTYGET, {7L}).value), L"7");
    EXPECT_EQ(Invoke(CEcho::flag, DISPATCH_METHOD, {1L}).value.boolVal, VARIANT_FALSE);
    EXPECT_EQ(Invoke(CEcho::date, DISPATCH_METHOD, {2L}).value.vt, VT_DATE);
}

TEST_F(DispatchObject, SaysWhichArgumentIsOfNoUse)
{
    const auto outcome = Invoke(CEcho::sum, DISPATCH_METHOD, {L"four", 2L});

    EXPECT_EQ(outcome.result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(outcome.badArgument, 1u);
}

TEST_F(DispatchObject, RefusesAMissingArgumentWhereANumberIsNeeded)
{
    EXPECT_EQ(Invoke(CEcho::sum, DISPATCH_METHOD, {automation::Missing(), 2L}).result, DISP_E_TYPEMISMATCH);
}

TEST_F(DispatchObject, LooksThroughReferences)
{
    long four = 4;
    VARIANT byReference{};
    byReference.vt = VT_BYREF | VT_I4;
    byReference.plVal = &four;
    VARIANT outer{};
    outer.vt = VT_BYREF | VT_VARIANT;
    VARIANT inner = _variant_t(2L, VT_I4);
    outer.pvarVal = &inner;
    VARIANT arguments[] = {outer, byReference};
    DISPPARAMS parameters{arguments, nullptr, 2, 0};
    _variant_t result;

    echo->Invoke(CEcho::sum, IID_NULL, 0, DISPATCH_METHOD, &parameters, &result, nullptr, nullptr);

    EXPECT_EQ(automation::LongOf(result), 42);
}

TEST_F(DispatchObject, RefusesReferencesToNothing)
{
    VARIANT toVariant{};
    toVariant.vt = VT_BYREF | VT_VARIANT;
    VARIANT toNumber{};
    toNumber.vt = VT_BYREF | VT_I4;
    VARIANT toBoth{};
    toBoth.vt = VT_BYREF | VT_VARIANT;
    toBoth.pvarVal = &toNumber;
    for (VARIANT argument : {toVariant, toNumber, toBoth})
        for (const DISPID id : {CEcho::any, CEcho::date, CEcho::object})
        {
            DISPPARAMS parameters{&argument, nullptr, 1, 0};
            UINT place = 99;

            const HRESULT result =
                echo->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, &place);

            EXPECT_EQ(result, DISP_E_TYPEMISMATCH) << id;
            EXPECT_EQ(place, 0u) << id;
        }
}

TEST_F(DispatchObject, RefusesAPutThatHoldsBackItsNames)
{
    VARIANT value = _variant_t(5L, VT_I4);
    DISPPARAMS parameters{&value, nullptr, 1, 1};

    const HRESULT result = echo->Invoke(CEcho::stored, IID_NULL, 0, DISPATCH_PROPERTYPUT, &parameters,
                                        nullptr, nullptr, nullptr);

    EXPECT_EQ(result, DISP_E_PARAMNOTFOUND);
}

TEST_F(DispatchObject, PassesAMissingVariantOnAsItIs)
{
    const auto outcome = Invoke(CEcho::any, DISPATCH_METHOD, {automation::Missing()});

    EXPECT_EQ(automation::LongOf(outcome.value), VT_ERROR);
}

TEST_F(DispatchObject, PutsAValueGivenByName)
{
    automation::Put(echo.Get(), CEcho::stored, 5L);

    EXPECT_EQ(automation::LongOf(automation::Get(echo.Get(), CEcho::stored)), 5);
}

TEST_F(DispatchObject, RefusesAPutWithoutTheNameOfItsValue)
{
    VARIANT value = _variant_t(5L, VT_I4);
    DISPPARAMS parameters{&value, nullptr, 1, 0};

    const HRESULT result = echo->Invoke(CEcho::stored, IID_NULL, 0, DISPATCH_PROPERTYPUT, &parameters,
                                        nullptr, nullptr, nullptr);

    EXPECT_EQ(result, DISP_E_PARAMNOTFOUND);
}

TEST_F(DispatchObject, RefusesNamedArgumentsElsewhere)
{
    VARIANT values[] = {_variant_t(2L, VT_I4), _variant_t(4L, VT_I4)};
    DISPID name = 0;
    DISPPARAMS parameters{values, &name, 2, 1};

    const HRESULT result =
        echo->Invoke(CEcho::sum, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr);

    EXPECT_EQ(result, DISP_E_NONAMEDARGS);
}

TEST_F(DispatchObject, DescribesAFailureInTheCallersExceptionRecord)
{
    const auto outcome = Invoke(CEcho::fail, DISPATCH_METHOD);

    EXPECT_EQ(outcome.result, DISP_E_EXCEPTION);
    EXPECT_EQ(outcome.code, MAPI_E_NO_ACCESS);
    EXPECT_EQ(outcome.description, L"The door is locked.");
    EXPECT_EQ(outcome.source, L"QuorvexDll.RDOSession");
}

TEST_F(DispatchObject, LeavesAnErrorInfoWhenTheCallerTakesNoExceptionRecord)
{
    DISPPARAMS parameters{};

    const HRESULT result =
        echo->Invoke(CEcho::fail, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr);

    EXPECT_EQ(result, MAPI_E_NO_ACCESS);
    ComPtr<IErrorInfo> info;
    ASSERT_EQ(GetErrorInfo(0, &info), S_OK);
    _bstr_t description;
    info->GetDescription(description.GetAddress());
    EXPECT_STREQ(description, L"The door is locked.");
}

TEST_F(DispatchObject, LetsNoForeignExceptionOut)
{
    const auto outcome = Invoke(CEcho::leak, DISPATCH_METHOD);

    EXPECT_EQ(outcome.result, DISP_E_EXCEPTION);
    EXPECT_EQ(outcome.code, E_UNEXPECTED);
}

TEST_F(DispatchObject, ReturnsAutomationsOwnCodesPlainly)
{
    EXPECT_EQ(Invoke(CEcho::badIndex, DISPATCH_METHOD).result, DISP_E_BADINDEX);
}

TEST_F(DispatchObject, GivesTheSameObjectBackThatItWasGiven)
{
    const auto outcome = Invoke(CEcho::object, DISPATCH_METHOD, {_variant_t(echo.Get())});

    EXPECT_EQ(outcome.value.pdispVal, echo.Get());
}

TEST_F(DispatchObject, KnowsNoNames)
{
    wchar_t name[] = L"Sum";
    LPOLESTR names[] = {name};
    DISPID id = 0;

    const HRESULT result = echo->GetIDsOfNames(IID_NULL, names, 1, 0, &id);

    EXPECT_EQ(result, DISP_E_UNKNOWNNAME);
    EXPECT_EQ(id, DISPID_UNKNOWN);
}

TEST_F(DispatchObject, HasNoTypeInformation)
{
    UINT count = 7;

    echo->GetTypeInfoCount(&count);

    EXPECT_EQ(count, 0u);
}

TEST_F(DispatchObject, RefusesAnInterfaceIdInInvoke)
{
    DISPPARAMS parameters{};

    EXPECT_EQ(
        echo->Invoke(CEcho::fail, IID_IUnknown, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr),
        DISP_E_UNKNOWNINTERFACE);
}

TEST_F(DispatchObject, SupportsErrorInformationForItsDispatchInterface)
{
    ComPtr<ISupportErrorInfo> support;
    ASSERT_EQ(echo.As(&support), S_OK);

    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IDispatch), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IPersist), S_FALSE);
}

TEST_F(DispatchObject, KeepsTheModuleInUseWhileItLives)
{
    EXPECT_EQ(Module::count, countBefore + 1);

    echo.Reset();

    EXPECT_EQ(Module::count, countBefore);
}

TEST_F(DispatchObject, CountsReferencesOfManyThreads)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back(
            [this]
            {
                for (int j = 0; j < 5000; ++j)
                    ComPtr<IDispatch>(echo).Reset();
            });
    for (std::thread& thread : threads)
        thread.join();

    echo->AddRef();
    EXPECT_EQ(echo->Release(), 1u);
}
}    // namespace
