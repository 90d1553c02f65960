#include "ui/TextLines.h"

#include <windows.h>

#include <filesystem>
#include <fstream>

namespace
{
constexpr std::wstring_view tabBlanks = L"    ";
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::streamoff largestFile = 64 * 1024 * 1024;    // far more than a text to be read by people

std::string ReadBytes(const std::wstring& path)
{
    std::ifstream file(std::filesystem::path(path), std::ios::binary | std::ios::ate);
    const std::streamoff size = file ? std::streamoff(file.tellg()) : 0;
    if (size <= 0 || size > largestFile)
        return {};
    std::string bytes(static_cast<std::size_t>(size), '\0');
    file.seekg(0);
    file.read(bytes.data(), size);
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

std::wstring Decode(std::string_view bytes, UINT codePage, DWORD flags)
{
    const int length = static_cast<int>(bytes.size());
    const int needed = ::MultiByteToWideChar(codePage, flags, bytes.data(), length, nullptr, 0);
    std::wstring text(static_cast<std::size_t>(needed), L'\0');
    ::MultiByteToWideChar(codePage, flags, bytes.data(), length, text.data(), needed);
    return text;
}

std::wstring Decode(std::string_view bytes)
{
    if (bytes.starts_with(byteOrderMark))
        bytes.remove_prefix(byteOrderMark.size());
    const std::wstring text = Decode(bytes, CP_UTF8, MB_ERR_INVALID_CHARS);
    return text.empty() ? Decode(bytes, CP_ACP, 0) : text;
}
}    // namespace

TextLines::TextLines(std::wstring_view source)
{
    text.reserve(source.size());
    while (!source.empty())
    {
        const std::size_t lineEnd = source.find(L'\n');
        std::wstring_view line = source.substr(0, lineEnd);
        if (line.ends_with(L'\r') && lineEnd != std::wstring_view::npos)
            line.remove_suffix(1);
        Add(line);
        source.remove_prefix(lineEnd == std::wstring_view::npos ? source.size() : lineEnd + 1);
    }
}

void TextLines::Add(std::wstring_view line)
{
    for (std::size_t tab; (tab = line.find(L'\t')) != std::wstring_view::npos; line.remove_prefix(tab + 1))
        text.append(line.substr(0, tab)).append(tabBlanks);
    text.append(line);
    ends.push_back(text.size());
}

std::wstring_view TextLines::operator[](std::size_t line) const noexcept
{
    const std::size_t start = line == 0 ? 0 : ends[line - 1];
    return std::wstring_view(text).substr(start, ends[line] - start);
}

TextLines ReadTextLines(const std::wstring& path)
{
    return TextLines(Decode(ReadBytes(path)));
}
