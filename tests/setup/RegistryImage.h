#pragma once

#include <windows.h>

#include <set>
#include <string>

// All of the registry's software, for the machine and for the user, at one time. Wine writes it out as text
// in one go; to ask for each value would take a hundred times as long. A key that has values, or no keys
// below it, is "HKLM\Software\..." or "HKCU\Software\...", a value the key, a bar, and name and data as the
// text has them: HKCU\Software\Talmorex\Talmore Outlook Manager|"Path"="C:\\somewhere".
class RegistryImage
{
public:
    using Entries = std::set<std::wstring>;

    // Throws std::runtime_error when the registry cannot be written out.
    static RegistryImage Take();

    // What is here and was not, or not so, in `before`.
    Entries Since(const RegistryImage& before) const;

private:
    Entries entries;
};

// A text of the registry, in the view of 64-bit programs; empty where there is none.
std::wstring RegistryText(HKEY root, const std::wstring& key, const wchar_t* name);
void SetRegistryText(HKEY root, const std::wstring& key, const wchar_t* name, const std::wstring& text);
