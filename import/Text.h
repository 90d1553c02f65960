#pragma once

#include <string>
#include <string_view>

// All results are valid UTF-8 without NUL characters: what cannot be decoded becomes U+FFFD, never an error.

// True when `bytes` is valid UTF-8 and holds no NUL.
bool IsCleanUtf8(std::string_view bytes);

// Replaces every byte that is not part of valid UTF-8, and every NUL, by U+FFFD.
std::string RepairUtf8(std::string_view bytes);

// Text whose charset nobody names: UTF-8 when it is valid as such, else Windows-1252.
std::string GuessUtf8(std::string_view bytes);

// Text in the charset that a mail names. An unknown or empty name, and plain ASCII with 8-bit characters, is
// guessed.
std::string DecodeCharset(std::string_view bytes, std::string_view charset);

// Every line end (CR LF, LF, lone CR) as CR LF.
std::string WithCrLf(std::string_view text);

// ASCII letters lowered; other bytes as they are.
std::string AsciiLower(std::string_view text);

// Without spaces, tabs and line ends at both ends.
std::string_view Trimmed(std::string_view text);

// The form in which two names that differ only in case are equal.
std::string CaseFolded(const std::string& utf8);
