#pragma once

#include <windows.h>

#include <string>

class CWnd;

// The system's dialog that asks under which name to save a file, in the style of the system that runs. It
// proposes no name, adds no extension, and leaves the process's current folder as it is.
class CFileDialog
{
public:
    // `flags` are OFN_.... `filter` holds pairs of a kind of file and its pattern, each text ended by a bar
    // and the whole by one more: "Log File (*.TXT)|*.TXT||". Without an owner the dialog stands for itself.
    CFileDialog(DWORD flags, const std::wstring& filter, const CWnd* owner = nullptr);

    // IDOK when a name was chosen; IDCANCEL when none was, or the dialog cannot be shown.
    INT_PTR DoModal();

    // After IDOK.
    const std::wstring& GetPathName() const noexcept { return path; }    // with its folder, of any length
    std::wstring GetFileName() const;                                    // without

private:
    DWORD flags;
    std::wstring filter;    // with zeros in place of the bars
    HWND owner;
    std::wstring path;
};
