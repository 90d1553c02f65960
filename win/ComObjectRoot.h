#pragma once

#include <windows.h>

#include <unknwn.h>

#include <span>

// One line of a COM class's interface map: the interface's id, and how to come by it.
template <class T>
struct InterfaceEntry
{
    const IID* iid;
    IUnknown* (*pointerOf)(T*) noexcept;

    // The interface `iid`, answered by the base `Interface` of T.
    template <class Interface>
    static constexpr InterfaceEntry By(const IID* iid) noexcept
    {
        return {iid, [](T* object) noexcept -> IUnknown* { return static_cast<Interface*>(object); }};
    }
};

// The object's own IUnknown: the first interface of its map. Borrowed. In an aggregated object its AddRef and
// Release count for the outer object, as those of every interface given out do.
template <class T>
IUnknown* UnknownOf(T* object) noexcept
{
    return T::GetInterfaceMap().front().pointerOf(object);
}

// The root of every COM class: counts the references of an object that has IUnknown's three methods from
// CComObject or CComAggObject. The class itself, T, supplies
//   static std::span<const InterfaceEntry<T>> GetInterfaceMap() noexcept
// with at least one entry.
template <class Model>
class CComObjectRootEx
{
public:
    using ThreadModel = Model;

    CComObjectRootEx() noexcept = default;
    CComObjectRootEx(const CComObjectRootEx&) = delete;
    CComObjectRootEx& operator=(const CComObjectRootEx&) = delete;

    // For a class that needs more than its constructor: called once, with the object counted, before anybody
    // else has it; a failure ends the creation with that code.
    HRESULT FinalConstruct() noexcept { return S_OK; }
    // Called once when the last reference is gone, the object still whole.
    void FinalRelease() noexcept {}

protected:
    ~CComObjectRootEx() = default;

    ULONG InternalAddRef() noexcept { return Model::Increment(references); }

    // References taken and given back while the object goes must not end it a second time.
    ULONG InternalRelease() noexcept
    {
        const ULONG left = Model::Decrement(references);
        if (left == 0)
            references = ending;
        return left;
    }

public:
    // Looks `iid` up in T's map; the interface given out is the caller's to release.
    template <class T>
    static HRESULT InternalQueryInterface(T* object, REFIID iid, void** result) noexcept
    {
        if (!result)
            return E_POINTER;
        *result = nullptr;
        IUnknown* found = Find(object, iid);
        if (!found)
            return E_NOINTERFACE;
        found->AddRef();
        *result = found;
        return S_OK;
    }

private:
    template <class T>
    static IUnknown* Find(T* object, REFIID iid) noexcept
    {
        if (iid == IID_IUnknown)
            return UnknownOf(object);
        for (const InterfaceEntry<T>& entry : T::GetInterfaceMap())
            if (iid == *entry.iid)
                return entry.pointerOf(object);
        return nullptr;
    }

    static constexpr ULONG ending = 0x40000000;
    ULONG references = 0;
};
