#pragma once

#include "explorer/office/CommandBar.h"
#include "explorer/office/ModelObject.h"
#include "explorer/office/RefusedBars.h"

#include <windows.h>

#include <wrl/client.h>

#include <string>
#include <vector>

// All bars of the explorer window; the first is its menu bar.
class CCommandBars final : public ModelObject<RefusedCommandBars, _CommandBars, _IMsoDispObj>
{
public:
    explicit CCommandBars(const SharedContext& context);

    STDMETHODIMP get_Application(IDispatch** value) noexcept override
    {
        return GetApplication(context, value);
    }
    STDMETHODIMP get_ActionControl(CommandBarControl** value) noexcept override;    // null: no macro runs
    STDMETHODIMP get_ActiveMenuBar(CommandBar** value) noexcept override;
    STDMETHODIMP Add(VARIANT name, VARIANT position, VARIANT menuBar, VARIANT temporary,
                     CommandBar** bar) noexcept override;    // E_INVALIDARG when the name is taken
    STDMETHODIMP get_Count(int* value) noexcept override;
    STDMETHODIMP FindControl(VARIANT type, VARIANT id, VARIANT tag, VARIANT visible,
                             CommandBarControl** control) noexcept override;
    STDMETHODIMP get_Item(VARIANT index, CommandBar** value) noexcept override;
    STDMETHODIMP get_Parent(IDispatch** value) noexcept override;

    CCommandBar& GetMenuBar() noexcept { return *bars.front().Get(); }
    std::vector<CCommandBar*> GetToolBars() const;    // borrowed; all but the menu bar
    CCommandBar& AppendBuiltIn(const std::wstring& name);
    void Remove(CCommandBar& bar);
    void RemoveOwnedBy(OwnerNumber owner);    // its bars, and its controls on all others
    int IndexOf(const CCommandBar& bar) const;
    CommandControl* FindInstance(int instance) const;                  // null when it is gone
    CommandControl* FindCaption(const std::wstring& caption) const;    // without marks of keys
    void Detach() noexcept;

private:
    ~CCommandBars() override { Detach(); }
    CCommandBar& Append(const std::wstring& name, MsoBarPosition position, bool builtIn);
    CommandControl* Find(const std::function<bool(CommandControl&)>& condition) const;

    std::vector<Microsoft::WRL::ComPtr<CCommandBar>> bars;
};
