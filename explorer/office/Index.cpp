#include "explorer/office/Index.h"

#include "win/Variant.h"

#include <windows.h>

#include <comdef.h>

namespace
{
bool IsSameName(const std::wstring& one, const std::wstring& other)
{
    return ::CompareStringOrdinal(one.c_str(), static_cast<int>(one.size()), other.c_str(),
                                  static_cast<int>(other.size()), TRUE) == CSTR_EQUAL;
}
}    // namespace

_variant_t ArgumentOf(const VARIANT& argument)
{
    _variant_t value;
    _com_util::CheckError(::VariantCopyInd(&value, const_cast<VARIANT*>(&argument)));
    return value;
}

std::size_t PlaceInCollection(const VARIANT& index, std::size_t count,
                              const std::function<std::wstring(std::size_t)>& nameOf)
{
    const _variant_t value = ArgumentOf(index);
    if (value.vt != VT_BSTR)
    {
        const long number = value;
        if (number < 1 || static_cast<std::size_t>(number) > count)
            throw _com_error(E_INVALIDARG);
        return static_cast<std::size_t>(number) - 1;
    }
    const std::wstring name = TextOf(value.bstrVal);
    for (std::size_t place = 0; place < count; ++place)
        if (IsSameName(nameOf(place), name))
            return place;
    throw _com_error(E_INVALIDARG);
}
