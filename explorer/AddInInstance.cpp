#include "explorer/AddInInstance.h"

#include "explorer/office/ComBoundary.h"
#include "explorer/office/ModelObject.h"
#include "explorer/office/Refuse.h"
#include "win/Variant.h"

#include <windows.h>

#include <algorithm>
#include <iterator>

namespace
{
struct Property
{
    const wchar_t* name;
    DISPID id;
};
constexpr DISPID descriptionId = 0;
constexpr DISPID progIdId = 3;
constexpr Property properties[] = {{L"Description", descriptionId}, {L"ProgId", progIdId}};

class CAddInInstance final : public IDispatch, private CountedObject
{
public:
    CAddInInstance(std::wstring progId, std::wstring description)
        : progId(std::move(progId)),
          description(std::move(description))
    {
    }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override
    {
        if (!object)
            return E_POINTER;
        const bool ours = iid == IID_IUnknown || iid == IID_IDispatch;
        *object = ours ? static_cast<IDispatch*>(this) : nullptr;
        return ours ? AddRef(), S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references; }
    STDMETHODIMP_(ULONG) Release() noexcept override
    {
        const ULONG left = --references;
        if (left == 0)
            delete this;
        return left;
    }

    STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override
    {
        return ComBoundary(count, [] {});
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept override { return Refuse(info); }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept override
    {
        if (!names || !ids || count == 0)
            return E_INVALIDARG;
        std::fill_n(ids, count, DISPID_UNKNOWN);
        const auto found = std::ranges::find_if(properties, [&](const Property& one)
                                                { return ::lstrcmpiW(one.name, names[0]) == 0; });
        if (found != std::end(properties))
            ids[0] = found->id;
        return found != std::end(properties) && count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
    }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                        UINT*) noexcept override
    {
        const bool known = id == descriptionId || id == progIdId;
        if (!known || !(flags & DISPATCH_PROPERTYGET))
            return DISP_E_MEMBERNOTFOUND;
        return ComBoundary(result,
                           [&] { *result = TextVariant(id == progIdId ? progId : description).Detach(); });
    }

private:
    ~CAddInInstance() = default;

    const std::wstring progId;
    const std::wstring description;
    ULONG references = 0;
};
}    // namespace

Microsoft::WRL::ComPtr<IDispatch> MakeAddInInstance(const std::wstring& progId,
                                                    const std::wstring& description)
{
    return MakeModelObject<CAddInInstance>(progId, description);
}
