#include "win/ClassObjects.h"

#include "win/ComBoundary.h"

HRESULT ClassObjects::Get(std::span<const ObjectEntry> objects, REFCLSID classId, REFIID iid,
                          void** result) noexcept
{
    if (!result)
        return E_POINTER;
    *result = nullptr;
    return ComBoundary(
        [&]
        {
            for (const ObjectEntry& object : objects)
                if (classId == *object.classId)
                    return Find(object)->QueryInterface(iid, result);
            return CLASS_E_CLASSNOTAVAILABLE;
        });
}

CComClassFactory* ClassObjects::Find(const ObjectEntry& object)
{
    const std::lock_guard lock(mutex);
    for (const auto& [entry, factory] : made)
        if (entry == &object)
            return factory.Get();
    const Microsoft::WRL::ComPtr<CComClassFactory> factory(new CComClassFactory(object.create));
    made.emplace_back(&object, factory);
    return made.back().second.Get();
}
