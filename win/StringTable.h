#pragma once

#include <windows.h>

#include <initializer_list>
#include <string>
#include <variant>

// One value put into a text in place of "%s" (a text) or "%d" (a number).
using TextArgument = std::variant<std::wstring, long>;

// `pattern` with each "%s" and "%d", from the left, replaced by the next argument; an argument's own percent
// signs stay as they are. A place without an argument is left out.
std::wstring FormatText(const std::wstring& pattern, std::initializer_list<TextArgument> arguments);

// The string table of one module; any thread.
class StringTable
{
public:
    explicit StringTable(HINSTANCE module) noexcept : module(module) {}

    std::wstring Load(UINT id) const;    // empty when the module has no such string
    std::wstring Format(UINT id, std::initializer_list<TextArgument> arguments) const;

private:
    HINSTANCE module;
};
