#pragma once

#include <windows.h>

#include <string>

// The delivered library, loaded for its exports without being registered.
class LoadedLibrary
{
public:
    LoadedLibrary();
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;
    ~LoadedLibrary();

    explicit operator bool() const { return module != nullptr; }
    std::wstring Path() const;
    std::wstring Folder() const;    // without a backslash at its end

    HRESULT Install(bool install, const wchar_t* commandLine) const;
    HRESULT Register() const;
    HRESULT Unregister() const;
    HRESULT CanUnloadNow() const;
    HRESULT GetClassObject(REFCLSID classId, REFIID iid, void** object) const;

private:
    template <class Signature>
    Signature* Export(const char* name) const
    {
        return reinterpret_cast<Signature*>(reinterpret_cast<void (*)()>(::GetProcAddress(module, name)));
    }

    HMODULE module;
};
