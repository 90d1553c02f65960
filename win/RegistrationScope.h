#pragma once

// For whom a module registers itself.
enum class RegistrationScope
{
    Machine,
    User,    // below HKEY_CURRENT_USER\Software\Classes, which needs no administrator
};
