#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// The lines of a text in file order; any thread, as long as none changes it.
class TextLines
{
public:
    TextLines() = default;

    // Lines end in CR LF or LF; a final line end starts no further line. A tab becomes blanks.
    explicit TextLines(std::wstring_view text);

    std::size_t Count() const noexcept { return ends.size(); }
    std::wstring_view operator[](std::size_t line) const noexcept;    // borrowed; without its line end

private:
    void Add(std::wstring_view line);

    std::wstring text;                // all lines, one after the other
    std::vector<std::size_t> ends;    // where each line ends in it
};

// The text of a file: UTF-8, with or without byte-order mark, else in the ANSI code page. No lines when the
// file cannot be read or is larger than 64 MB.
TextLines ReadTextLines(const std::wstring& path);
