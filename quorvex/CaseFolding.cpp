#include "quorvex/CaseFolding.h"

#include <windows.h>

#include <algorithm>
#include <cstddef>

std::wstring FoldCase(std::wstring_view text)
{
    // The system's function takes lengths as int; surrogate pairs map to themselves, so any cut will do.
    constexpr std::size_t most = 1 << 20;
    std::wstring folded(text.size(), L'\0');
    for (std::size_t start = 0; start < text.size(); start += most)
    {
        const int length = static_cast<int>(std::min(most, text.size() - start));
        LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, text.data() + start, length,
                      folded.data() + start, length, nullptr, nullptr, 0);
    }
    return folded;
}
