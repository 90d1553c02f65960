#pragma once

#include "explorer/office/CommandControl.h"
#include "explorer/office/ModelObject.h"
#include "explorer/office/RefusedBars.h"

#include <windows.h>

#include <comdef.h>

#include <wrl/client.h>

#include <functional>
#include <vector>

class CCommandBar;

// What FindControl looks for; whatever is empty does not matter.
struct ControlQuery
{
    ControlQuery(const VARIANT& type, const VARIANT& id, const VARIANT& tag, const VARIANT& visible);

    bool Matches(CommandControl& control) const;

    _variant_t type;
    _variant_t id;
    _variant_t tag;
    bool onlyVisible;
};

// The controls of one bar or pop-up, in the order in which they are shown; counted from 1.
class CCommandBarControls final
    : public ModelObject<RefusedCommandBarControls, CommandBarControls, _IMsoDispObj>
{
public:
    explicit CCommandBarControls(SharedContext context) noexcept : ModelObject(std::move(context)) {}

    STDMETHODIMP get_Application(IDispatch** value) noexcept override
    {
        return GetApplication(context, value);
    }
    STDMETHODIMP Add(VARIANT type, VARIANT id, VARIANT parameter, VARIANT before, VARIANT temporary,
                     CommandBarControl** control) noexcept override;
    STDMETHODIMP get_Count(int* value) noexcept override;
    STDMETHODIMP get_Item(VARIANT index, CommandBarControl** value) noexcept override;    // or by caption
    STDMETHODIMP get_Parent(CommandBar** value) noexcept override;

    void SetBar(CCommandBar* parent) noexcept { bar = parent; }    // borrowed; null when it is gone
    std::vector<CommandControl*> GetControls() const;              // borrowed
    template <typename Control>
    void Append(const Microsoft::WRL::ComPtr<Control>& control)
    {
        Insert(controls.size(), *control.Get());
    }
    void Remove(CommandControl& control);
    void RemoveOwnedBy(OwnerNumber owner);    // here and in every pop-up
    void RemoveAll() noexcept;
    int IndexOf(const CommandControl& control) const;

    // The first that the query or condition holds for; null when there is none. Borrowed.
    CommandControl* Find(const std::function<bool(CommandControl&)>& condition, bool recursive) const;

private:
    struct Entry
    {
        Microsoft::WRL::ComPtr<CommandBarControl> reference;
        CommandControl* control;
    };

    void Insert(std::size_t place, CommandControl& control);
    std::size_t PlaceOf(const VARIANT& index) const;

    std::vector<Entry> controls;
    CCommandBar* bar = nullptr;
};
