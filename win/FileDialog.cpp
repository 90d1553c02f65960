#include "win/FileDialog.h"

#include "win/Wnd.h"

#include <windows.h>

#include <commdlg.h>

#include <algorithm>

namespace
{
// The longest path that the system knows, with its zero.
constexpr DWORD longestPath = 32768;
}    // namespace

CFileDialog::CFileDialog(DWORD flags, const std::wstring& filter, const CWnd* owner)
    : flags(flags),
      filter(filter),
      owner(owner ? owner->GetSafeHwnd() : nullptr)
{
    std::ranges::replace(this->filter, L'|', L'\0');
    // A filter that bars do not end still ends here: its last pair, and the whole.
    this->filter.append(2, L'\0');
}

INT_PTR CFileDialog::DoModal()
{
    std::wstring chosen(longestPath, L'\0');
    OPENFILENAMEW request{};
    request.lStructSize = sizeof request;
    request.hwndOwner = owner;
    request.lpstrFilter = filter.c_str();
    request.nFilterIndex = 1;
    request.lpstrFile = chosen.data();
    request.nMaxFile = longestPath;
    // Without a hook or a template of ours this shows the newest dialog that the system has.
    request.Flags = flags | OFN_EXPLORER | OFN_NOCHANGEDIR;
    const bool saved = ::GetSaveFileNameW(&request);
    path = saved ? std::wstring(chosen.c_str()) : std::wstring();
    return saved ? IDOK : IDCANCEL;
}

std::wstring CFileDialog::GetFileName() const
{
    return path.substr(path.find_last_of(L'\\') + 1);
}
