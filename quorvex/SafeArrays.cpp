#include "quorvex/SafeArrays.h"

#include "quorvex/DispatchArguments.h"
#include "quorvex/MapiError.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace
{
// The elements of an array of one dimension, locked in place while this lives.
class ArrayElements
{
public:
    explicit ArrayElements(SAFEARRAY* lockedArray) : array(lockedArray)
    {
        CheckMapi(SafeArrayAccessData(array, &data), L"look into an array");
    }
    ~ArrayElements() { SafeArrayUnaccessData(array); }
    ArrayElements(const ArrayElements&) = delete;
    ArrayElements& operator=(const ArrayElements&) = delete;

    std::size_t Count() const noexcept { return array->rgsabound[0].cElements; }

    template <class T>
    std::span<const T> As() const noexcept
    {
        return {static_cast<const T*>(data), Count()};
    }

private:
    SAFEARRAY* array;
    void* data = nullptr;
};

// VT_EMPTY when the array does not say.
VARTYPE ElementTypeOf(SAFEARRAY* array)
{
    VARTYPE type = VT_EMPTY;
    return SUCCEEDED(SafeArrayGetVartype(array, &type)) ? type : VARTYPE{VT_EMPTY};
}

// Elements of other types may be as large: pointers, above all.
bool MayBeInteger(VARTYPE type)
{
    constexpr VARTYPE types[] = {VT_EMPTY, VT_I4, VT_UI4, VT_INT, VT_UINT, VT_I8, VT_UI8};
    return std::ranges::find(types, type) != std::end(types);
}

std::vector<ULONG> TagsOfVariants(const ArrayElements& elements)
{
    std::vector<ULONG> tags;
    for (const VARIANT& element : elements.As<VARIANT>())
        tags.push_back(static_cast<ULONG>(LongOf(element)));
    return tags;
}

template <class T>
std::vector<ULONG> TagsOfIntegers(const ArrayElements& elements)
{
    std::vector<ULONG> tags;
    for (const T element : elements.As<T>())
        tags.push_back(static_cast<ULONG>(element));
    return tags;
}
}    // namespace

SafeArray MakeArray(VARTYPE type, std::size_t count)
{
    SafeArray array(SafeArrayCreateVector(type, 0, static_cast<ULONG>(count)));
    if (!array)
        throw MapiError(E_OUTOFMEMORY, L"There is not enough memory for the values.");
    return array;
}

_variant_t ArrayVariant(SafeArray array, VARTYPE type)
{
    VARIANT value;
    VariantInit(&value);
    value.vt = static_cast<VARTYPE>(VT_ARRAY | type);
    value.parray = array.release();
    return _variant_t(value, false);    // takes the array over
}

_variant_t VariantsAsArray(std::vector<_variant_t> values)
{
    SafeArray array = MakeArray(VT_VARIANT, values.size());
    auto* element = static_cast<VARIANT*>(array->pvData);
    for (_variant_t& value : values)
        *element++ = value.Detach();    // the array's from then on
    return ArrayVariant(std::move(array), VT_VARIANT);
}

std::optional<std::vector<std::uint8_t>> BytesOfArray(SAFEARRAY* array)
{
    if (!array || SafeArrayGetDim(array) != 1 || SafeArrayGetElemsize(array) != 1)
        return std::nullopt;
    const ArrayElements elements(array);
    const auto bytes = elements.As<std::uint8_t>();
    return std::vector<std::uint8_t>(bytes.begin(), bytes.end());
}

std::vector<ULONG> TagsOfArray(SAFEARRAY* array)
{
    if (array && SafeArrayGetDim(array) == 1)
    {
        const ArrayElements elements(array);
        const VARTYPE type = ElementTypeOf(array);
        if (type == VT_VARIANT)
            return TagsOfVariants(elements);
        if (MayBeInteger(type) && SafeArrayGetElemsize(array) == sizeof(std::uint32_t))
            return TagsOfIntegers<std::uint32_t>(elements);
        if (MayBeInteger(type) && SafeArrayGetElemsize(array) == sizeof(std::uint64_t))
            return TagsOfIntegers<std::uint64_t>(elements);
    }
    throw MapiError(DISP_E_TYPEMISMATCH, L"Columns are an array of 32-bit property tags with one dimension.");
}
