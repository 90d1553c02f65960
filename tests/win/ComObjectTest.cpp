// COM's rules of identity and counting, for objects alone, as part of others, and their class objects.
#include "tests/win/SampleComClass.h"
#include "win/ClassObjects.h"
#include "win/ComModule.h"

#include <windows.h>

#include <wrl/client.h>

#include <gtest/gtest.h>

using Microsoft::WRL::ComPtr;

namespace
{
class SampleObject : public testing::Test
{
protected:
    SampleObject() { CSample::constructed = S_OK; }
    ~SampleObject() override
    {
        EXPECT_EQ(CSample::living, 0);
        EXPECT_EQ(ComModule::GetLockCount(), locksBefore);
    }

    template <class Interface>
    static ComPtr<Interface> Query(IUnknown* object, REFIID iid)
    {
        ComPtr<Interface> found;
        object->QueryInterface(iid, reinterpret_cast<void**>(found.GetAddressOf()));
        return found;
    }

    static ComPtr<IPersist> Make()
    {
        ComPtr<IPersist> made;
        CSample::CreateInstance(nullptr, IID_IPersist, reinterpret_cast<void**>(made.GetAddressOf()));
        return made;
    }

    const long locksBefore = ComModule::GetLockCount();
};

TEST_F(SampleObject, CountsItsReferencesAndGoesWithTheLast)
{
    IPersist* object = nullptr;
    ASSERT_EQ(CSample::CreateInstance(nullptr, IID_IPersist, reinterpret_cast<void**>(&object)), S_OK);

    EXPECT_EQ(object->AddRef(), 2u);
    EXPECT_EQ(object->Release(), 1u);
    EXPECT_EQ(CSample::living, 1);
    EXPECT_EQ(object->Release(), 0u);
    EXPECT_EQ(CSample::living, 0);
}

TEST_F(SampleObject, KeepsTheModuleWhileItLives)
{
    const ComPtr<IPersist> object = Make();

    EXPECT_EQ(ComModule::GetLockCount(), locksBefore + 1);
}

TEST_F(SampleObject, AnswersForTheInterfacesOfItsMapOnly)
{
    const ComPtr<IPersist> object = Make();
    void* other = &other;

    EXPECT_TRUE(Query<IUnknown>(object.Get(), IID_ISupportErrorInfo));
    EXPECT_EQ(object->QueryInterface(IID_IDispatch, &other), E_NOINTERFACE);
    EXPECT_EQ(other, nullptr);
    EXPECT_EQ(object->QueryInterface(IID_IPersist, nullptr), E_POINTER);
}

TEST_F(SampleObject, FindsEveryInterfaceFromEveryOther)
{
    const ComPtr<IPersist> object = Make();

    for (const IID& from : {IID_IUnknown, IID_IPersist, IID_ISupportErrorInfo})
        for (const IID& to : {IID_IUnknown, IID_IPersist, IID_ISupportErrorInfo})
        {
            const ComPtr<IUnknown> first = Query<IUnknown>(object.Get(), from);
            EXPECT_TRUE(Query<IUnknown>(first.Get(), to));
        }
}

TEST_F(SampleObject, HasOneIdentity)
{
    const ComPtr<IPersist> object = Make();
    const ComPtr<ISupportErrorInfo> other = Query<ISupportErrorInfo>(object.Get(), IID_ISupportErrorInfo);

    EXPECT_EQ(Query<IUnknown>(object.Get(), IID_IUnknown), Query<IUnknown>(other.Get(), IID_IUnknown));
}

TEST_F(SampleObject, IsNotMadeWhenItsConstructionFails)
{
    CSample::constructed = E_ACCESSDENIED;
    void* object = &object;

    EXPECT_EQ(CSample::CreateInstance(nullptr, IID_IPersist, &object), E_ACCESSDENIED);
    EXPECT_EQ(object, nullptr);
}

TEST_F(SampleObject, IsNotMadeForAnInterfaceItHasNot)
{
    void* object = &object;

    EXPECT_EQ(CSample::CreateInstance(nullptr, IID_IDispatch, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
}

// An object that has a sample as a part of itself.
class Outer : public IUnknown
{
public:
    Outer() { CSample::CreateInstance(this, IID_IUnknown, reinterpret_cast<void**>(inner.GetAddressOf())); }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override
    {
        if (iid != IID_IUnknown)
            return inner ? inner->QueryInterface(iid, object) : E_NOINTERFACE;
        *object = static_cast<IUnknown*>(this);
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references; }
    STDMETHODIMP_(ULONG) Release() noexcept override { return --references; }

    ULONG references = 1;    // on the stack
    ComPtr<IUnknown> inner;
};

TEST_F(SampleObject, AsAPartCountsTheOuterObject)
{
    Outer outer;
    ASSERT_TRUE(outer.inner);

    {
        const ComPtr<IPersist> part = Query<IPersist>(&outer, IID_IPersist);
        EXPECT_EQ(outer.references, 2u);
    }

    EXPECT_EQ(outer.references, 1u);
}

TEST_F(SampleObject, AsAPartHasTheOuterObjectsIdentity)
{
    Outer outer;

    const ComPtr<IPersist> part = Query<IPersist>(&outer, IID_IPersist);
    const ComPtr<ISupportErrorInfo> other = Query<ISupportErrorInfo>(part.Get(), IID_ISupportErrorInfo);

    EXPECT_EQ(Query<IUnknown>(part.Get(), IID_IUnknown).Get(), &outer);
    EXPECT_EQ(Query<IUnknown>(other.Get(), IID_IUnknown).Get(), &outer);
}

TEST_F(SampleObject, AsAPartHasAnIdentityOfItsOwnForTheOuterObjectOnly)
{
    Outer outer;

    EXPECT_EQ(Query<IUnknown>(outer.inner.Get(), IID_IUnknown), outer.inner);
    EXPECT_NE(outer.inner.Get(), &outer);
    EXPECT_EQ(outer.references, 1u);
}

TEST_F(SampleObject, AsAPartIsAskedForByItsIdentityFirst)
{
    Outer outer;
    void* part = &part;

    EXPECT_EQ(CSample::CreateInstance(&outer, IID_IPersist, &part), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(part, nullptr);
}

TEST_F(SampleObject, AsAPartIsNotMadeWhenItsConstructionFails)
{
    CSample::constructed = E_ACCESSDENIED;

    const Outer outer;

    EXPECT_FALSE(outer.inner);
}

class SampleClassObject : public SampleObject
{
protected:
    HRESULT Get(REFCLSID classId, REFIID iid, void** result)
    {
        static constexpr ObjectEntry map[] = {{&CLSID_Sample, &CSample::CreateInstance, 0, {}}};
        return classObjects.Get(map, classId, iid, result);
    }
    ComPtr<IClassFactory> Factory()
    {
        ComPtr<IClassFactory> factory;
        Get(CLSID_Sample, IID_IClassFactory, reinterpret_cast<void**>(factory.GetAddressOf()));
        return factory;
    }

    ClassObjects classObjects;
};

TEST_F(SampleClassObject, IsMadeOnceAndKept)
{
    const ComPtr<IClassFactory> first = Factory();

    EXPECT_TRUE(first);
    EXPECT_EQ(Factory(), first);
}

TEST_F(SampleClassObject, KeepsTheModuleOnlyWhileSomebodyHasIt)
{
    {
        const ComPtr<IClassFactory> first = Factory();
        const ComPtr<IClassFactory> second = Factory();
        EXPECT_EQ(ComModule::GetLockCount(), locksBefore + 1);
    }

    EXPECT_EQ(ComModule::GetLockCount(), locksBefore);
}

TEST_F(SampleClassObject, MakesObjects)
{
    ComPtr<IPersist> object;
    CLSID id = CLSID_NULL;

    EXPECT_EQ(
        Factory()->CreateInstance(nullptr, IID_IPersist, reinterpret_cast<void**>(object.GetAddressOf())),
        S_OK);

    object->GetClassID(&id);
    EXPECT_EQ(id, CLSID_Sample);
    EXPECT_EQ(Factory()->CreateInstance(nullptr, IID_IPersist, nullptr), E_POINTER);
}

TEST_F(SampleClassObject, KeepsTheModuleWhileItIsLocked)
{
    Factory()->LockServer(TRUE);
    EXPECT_EQ(ComModule::GetLockCount(), locksBefore + 1);

    Factory()->LockServer(FALSE);
    EXPECT_EQ(ComModule::GetLockCount(), locksBefore);
}

TEST_F(SampleClassObject, IsThereForTheModulesClassesOnly)
{
    void* object = &object;

    EXPECT_EQ(Get(CLSID_NULL, IID_IClassFactory, &object), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(Get(CLSID_Sample, IID_IClassFactory, nullptr), E_POINTER);
    EXPECT_EQ(Get(CLSID_Sample, IID_IDispatch, &object), E_NOINTERFACE);
}
}    // namespace
