// The add-in's object as its host's COM sees it.
#include "addin/DuplicateRemover.h"

#include "tests/addin/AddInFixture.h"
#include "win/Variant.h"

#include <windows.h>

#include <oleauto.h>

#include <vector>

using Microsoft::WRL::ComPtr;

namespace
{
class DuplicateRemoverObject : public AddInFixture
{
protected:
    template <typename Interface>
    ComPtr<Interface> Query(REFIID iid) const
    {
        ComPtr<Interface> queried;
        addIn->QueryInterface(iid, reinterpret_cast<void**>(queried.ReleaseAndGetAddressOf()));
        return queried;
    }

    DISPID IdOf(const wchar_t* name) const
    {
        DISPID id = DISPID_UNKNOWN;
        wchar_t* names[] = {const_cast<wchar_t*>(name)};
        Query<IDispatch>(IID_IDispatch)->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
        return id;
    }

    HRESULT Invoke(const wchar_t* name, std::vector<_variant_t> arguments) const
    {
        const std::vector<_variant_t> reversed(arguments.rbegin(), arguments.rend());
        DISPPARAMS parameters{const_cast<_variant_t*>(reversed.data()), nullptr,
                              static_cast<UINT>(reversed.size()), 0};
        _variant_t result;
        EXCEPINFO exception{};
        return Query<IDispatch>(IID_IDispatch)
            ->Invoke(IdOf(name), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, &result,
                     &exception, nullptr);
    }

    // What hosts pass as `custom`: an array by reference.
    struct Custom
    {
        Custom()
        {
            value.vt = VT_BYREF | VT_ARRAY | VT_VARIANT;
            value.pparray = &array;
        }
        ~Custom() { ::SafeArrayDestroy(array); }
        Custom(const Custom&) = delete;
        Custom& operator=(const Custom&) = delete;

        SAFEARRAY* array = ::SafeArrayCreateVector(VT_VARIANT, 1, 1);
        VARIANT value{};
    };
    static _variant_t Borrowed(const Custom& custom)
    {
        _variant_t borrowed;
        static_cast<VARIANT&>(borrowed) = custom.value;
        return borrowed;
    }
};

TEST_F(DuplicateRemoverObject, HasTheInterfacesOfItsMapAndNoOthers)
{
    for (const IID& iid :
         {IID_IUnknown, IID_IDuplicateRemover, IID_IDispatch, IID_ISupportErrorInfo, IID__IDTExtensibility2})
        EXPECT_NE(Query<IUnknown>(iid), nullptr);
    for (const IID& iid : {IID_IMarshal, IID_IProvideClassInfo, DIID__CommandBarButtonEvents})
        EXPECT_EQ(Query<IUnknown>(iid), nullptr);
}

TEST_F(DuplicateRemoverObject, IsOneObjectWhicheverInterfaceIsAsked)
{
    const ComPtr<IUnknown> self = Query<IUnknown>(IID_IUnknown);

    for (const IID& iid : {IID_IDuplicateRemover, IID_IDispatch, IID_ISupportErrorInfo})
    {
        ComPtr<IUnknown> again;
        Query<IUnknown>(iid).As(&again);
        EXPECT_EQ(again, self);
    }
}

TEST_F(DuplicateRemoverObject, IsCalledLateThroughTheHostsInterface)
{
    EXPECT_EQ(Query<IUnknown>(IID_IDispatch).Get(), static_cast<IUnknown*>(addIn.Get()));
    EXPECT_EQ(IdOf(L"OnConnection"), 1);
    EXPECT_EQ(IdOf(L"OnDisconnection"), 2);
    EXPECT_EQ(IdOf(L"OnAddInsUpdate"), 3);
    EXPECT_EQ(IdOf(L"OnStartupComplete"), 4);
    EXPECT_EQ(IdOf(L"OnBeginShutdown"), 5);
}

TEST_F(DuplicateRemoverObject, ConnectsAndDisconnectsByLateBoundCalls)
{
    const Custom custom;

    const HRESULT connected =
        Invoke(L"OnConnection", {DispatchVariant(office.application.Get()), LongVariant(ext_cm_Startup),
                                 DispatchVariant(nullptr), Borrowed(custom)});
    const std::size_t sinks = office.ToolBarButton().events->sinks.size();
    const HRESULT disconnected =
        Invoke(L"OnDisconnection", {LongVariant(ext_dm_HostShutdown), Borrowed(custom)});

    EXPECT_EQ(connected, S_OK);
    EXPECT_EQ(sinks, 1u);
    EXPECT_EQ(disconnected, S_OK);
    EXPECT_TRUE(office.ToolBarButton().events->sinks.empty());
}

TEST_F(DuplicateRemoverObject, VouchesForErrorsOfItsOwnInterfaceOnly)
{
    const auto support = Query<ISupportErrorInfo>(IID_ISupportErrorInfo);

    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IDuplicateRemover), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID__IDTExtensibility2), S_FALSE);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IDispatch), S_FALSE);
}

TEST_F(DuplicateRemoverObject, MayBePartOfAnother)
{
    ComPtr<IUnknown> inner;

    const HRESULT created =
        CDuplicateRemover::CreateInstance(static_cast<_Application*>(office.application.Get()), IID_IUnknown,
                                          reinterpret_cast<void**>(inner.ReleaseAndGetAddressOf()));

    EXPECT_EQ(created, S_OK);
    ComPtr<IDuplicateRemover> own;
    EXPECT_EQ(
        inner->QueryInterface(IID_IDuplicateRemover, reinterpret_cast<void**>(own.ReleaseAndGetAddressOf())),
        S_OK);
    ComPtr<_Application> outer;
    EXPECT_EQ(own.As(&outer), S_OK) << "asks the outer object";
}
}    // namespace
