#pragma once

#include <windows.h>

#include <cstddef>
#include <string>
#include <string_view>

// Between the UTF-8 of the store's file, the UTF-16 of Windows and the ANSI code page of MAPI's PT_STRING8.
// What a text cannot be turned into is replaced, never refused.
std::wstring WideFromUtf8(std::string_view text);
// The same into a buffer with room for as many characters as `text` has bytes; gives how many were written,
// with no end set.
std::size_t WideFromUtf8(std::string_view text, wchar_t* buffer);
std::string Utf8FromWide(std::wstring_view text);
std::wstring WideFromAnsi(std::string_view text);
std::string AnsiFromWide(std::wstring_view text);
