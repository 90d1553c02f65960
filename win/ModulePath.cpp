#include "win/ModulePath.h"

#include "win/OleException.h"
#include "win/ThisModule.h"

#include <windows.h>

std::wstring ThisModulePath()
{
    std::wstring path(MAX_PATH, L'\0');
    for (;;)
    {
        const DWORD length = ::GetModuleFileNameW(ThisModule(), path.data(), static_cast<DWORD>(path.size()));
        if (length == 0)
            throw COleException(HRESULT_FROM_WIN32(::GetLastError()));
        if (length < path.size())
        {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}
