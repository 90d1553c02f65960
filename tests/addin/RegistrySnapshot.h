#pragma once

#include <map>
#include <string>

// Everything that stands in the registry where registration writes: the machine's classes and the user's
// software. Keys in lower case without values as "hklm\software\classes\...", values as "key|name" with their
// data as text.
class RegistrySnapshot
{
public:
    using Entries = std::map<std::wstring, std::wstring>;

    static RegistrySnapshot Take();

    // What is here and was not, or not so, in `before`; the system's own mirror of classes for the other kind
    // of programs is left out.
    Entries Since(const RegistrySnapshot& before) const;

private:
    Entries entries;
};
