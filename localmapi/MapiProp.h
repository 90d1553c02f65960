#pragma once

#include "localmapi/ComBoundary.h"
#include "localmapi/ComObject.h"
#include "localmapi/PropertyMethods.h"

// An object of the store with the interface `Interface`, which begins with IMAPIProp; its properties are what
// the deriving class says as a PropertyHolder.
template <typename Interface, const IID&... iids>
class MapiProp : public ComObject<Interface, IID_IMAPIProp, iids...>, public PropertyHolder
{
public:
    STDMETHODIMP GetLastError(HRESULT result, ULONG flags, MAPIERROR** error) noexcept override
    {
        return lastError.Get(result, flags, error);
    }
    STDMETHODIMP SaveChanges(ULONG) noexcept override
    {
        return ComBoundary(lastError, [&] { Save(); });
    }
    STDMETHODIMP GetProps(SPropTagArray* tags, ULONG flags, ULONG* count,
                          SPropValue** values) noexcept override
    {
        return ComBoundary(lastError,
                           [&] { return property_methods::GetProps(*this, tags, flags, count, values); });
    }
    STDMETHODIMP GetPropList(ULONG flags, SPropTagArray** tags) noexcept override
    {
        return ComBoundary(lastError, [&] { return property_methods::GetPropList(*this, flags, tags); });
    }
    STDMETHODIMP OpenProperty(ULONG tag, const IID* iid, ULONG, ULONG flags,
                              IUnknown** opened) noexcept override
    {
        return ComBoundary(lastError, [&]
                           { return property_methods::OpenProperty(*this, *this, tag, iid, flags, opened); });
    }
    STDMETHODIMP SetProps(ULONG count, SPropValue* values, SPropProblemArray** problems) noexcept override
    {
        return ComBoundary(lastError,
                           [&] { return property_methods::SetProps(*this, count, values, problems); });
    }
    STDMETHODIMP DeleteProps(SPropTagArray* tags, SPropProblemArray** problems) noexcept override
    {
        return ComBoundary(lastError, [&] { return property_methods::DeleteProps(*this, tags, problems); });
    }
    STDMETHODIMP CopyTo(ULONG, const IID*, SPropTagArray* excluded, ULONG, IMAPIProgress*, const IID*,
                        void* destination, ULONG flags, SPropProblemArray** problems) noexcept override
    {
        return ComBoundary(
            lastError, [&]
            { return property_methods::CopyProps(*this, nullptr, excluded, destination, flags, problems); });
    }
    STDMETHODIMP CopyProps(SPropTagArray* included, ULONG, IMAPIProgress*, const IID*, void* destination,
                           ULONG flags, SPropProblemArray** problems) noexcept override
    {
        return ComBoundary(lastError,
                           [&]
                           {
                               if (!included)
                                   throw MapiError(MAPI_E_INVALID_PARAMETER);
                               return property_methods::CopyProps(*this, included, nullptr, destination,
                                                                  flags, problems);
                           });
    }
    STDMETHODIMP GetNamesFromIDs(SPropTagArray** tags, GUID* set, ULONG flags, ULONG* count,
                                 MAPINAMEID*** names) noexcept override
    {
        return ComBoundary(
            lastError,
            [&] { return property_methods::GetNamesFromIDs(*Store().file, tags, set, flags, count, names); });
    }
    STDMETHODIMP GetIDsFromNames(ULONG count, MAPINAMEID** names, ULONG flags,
                                 SPropTagArray** tags) noexcept override
    {
        return ComBoundary(
            lastError,
            [&] { return property_methods::GetIDsFromNames(*Store().file, count, names, flags, tags); });
    }

protected:
    LastError lastError;
};
