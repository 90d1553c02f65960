#include "tests/life/SystemResidue.h"

#include "tests/faults/HeapBlocks.h"
#include "win/ActivationContext.h"
#include "win/ThisModule.h"

#include <windows.h>

#include <algorithm>
#include <stdexcept>

namespace
{
INT_PTR CALLBACK DoNothing(HWND, UINT, WPARAM, LPARAM)
{
    return FALSE;
}

void MakeAndDestroy(int dialogTemplate)
{
    const ActivationContext commonControls;
    const HWND dialog =
        ::CreateDialogParamW(ThisModule(), MAKEINTRESOURCEW(dialogTemplate), nullptr, &DoNothing, 0);
    if (!dialog)
        throw std::runtime_error("a dialog cannot be made");
    ::ShowWindow(dialog, SW_SHOW);
    ::UpdateWindow(dialog);
    ::DestroyWindow(dialog);
}

std::size_t BlocksLeftBy(int dialogTemplate)
{
    constexpr std::size_t rounds = 20;
    // What is made once is made before.
    MakeAndDestroy(dialogTemplate);
    const std::size_t before = CountHeapBlocks();
    for (std::size_t i = 0; i < rounds; ++i)
        MakeAndDestroy(dialogTemplate);
    return (std::max(CountHeapBlocks(), before) - before) / rounds;
}
}    // namespace

SystemResidue::SystemResidue(const std::vector<int>& templates)
{
    for (const int dialogTemplate : templates)
        blocks[dialogTemplate] = BlocksLeftBy(dialogTemplate);
}

std::size_t SystemResidue::Of(const std::vector<int>& shown) const
{
    std::size_t sum = 0;
    for (const int dialogTemplate : shown)
        sum += blocks.at(dialogTemplate);
    return sum;
}
