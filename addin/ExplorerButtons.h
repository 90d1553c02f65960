#pragma once

#include "contracts/Office.h"

#include <wrl/client.h>

// The add-in's two entry points in the host's explorer window. Both are temporary: the host discards them
// when it ends. Whatever the host refuses is thrown as `_com_error`; what was made until then stays.

// On a new tool bar, which it shows.
Microsoft::WRL::ComPtr<_CommandBarButton> AddToolBarButton(const Microsoft::WRL::ComPtr<_CommandBars>& bars);

// On the fifth menu of the menu bar.
Microsoft::WRL::ComPtr<_CommandBarButton> AddMenuButton(const Microsoft::WRL::ComPtr<_CommandBars>& bars);
