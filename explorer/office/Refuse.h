#pragma once

#include <windows.h>

// What this host does not offer: E_NOTIMPL, with every out-parameter empty.
template <typename... Values>
HRESULT Refuse(Values*... out) noexcept
{
    (void(out && (*out = Values(), true)), ...);
    return E_NOTIMPL;
}
