#include "import/SourceTree.h"

#include "import/Text.h"

#include <gmime/gmime.h>

#include <algorithm>
#include <string_view>

namespace
{
// One run between '&' and '-': UTF-16 in base64, with ',' where base64 has '/' (RFC 3501 5.1.3).
std::optional<std::string> DecodeShifted(std::string run)
{
    std::ranges::replace(run, ',', '/');
    while (run.size() % 4 != 0)
        run += '=';
    gsize length = 0;
    guchar* const bytes = g_base64_decode_inplace(run.data(), &length);
    const std::string text = DecodeCharset({reinterpret_cast<const char*>(bytes), length}, "utf-16be");
    if (length == 0 || text.find("\xEF\xBF\xBD") != std::string::npos)
        return std::nullopt;
    return text;
}

std::string DecodeModifiedUtf7(const std::string& name)
{
    std::string text;
    for (size_t index = 0; index < name.size();)
    {
        const size_t end = name[index] == '&' ? name.find('-', index) : std::string::npos;
        if (end == std::string::npos)
        {
            text += name[index++];
            continue;
        }
        const std::string run = name.substr(index + 1, end - index - 1);
        const std::optional<std::string> decoded = run.empty() ? "&" : DecodeShifted(run);
        text += decoded ? *decoded : name.substr(index, end - index + 1);
        index = end + 1;
    }
    return text;
}
}    // namespace

MailFlags ParseMaildirFlags(const std::string& fileName)
{
    const size_t info = fileName.rfind(":2,");
    const std::string_view letters =
        info == std::string::npos ? std::string_view() : std::string_view(fileName).substr(info + 3);
    const auto holds = [&](char letter) { return letters.find(letter) != std::string_view::npos; };
    return {holds('S'), holds('F'), holds('T'), holds('D'), holds('R'), holds('P')};
}

std::vector<std::string> ParseMaildirFolderName(const std::string& directoryName)
{
    std::vector<std::string> names;
    std::string_view rest = std::string_view(directoryName).substr(1);
    while (!rest.empty())
    {
        const size_t dot = std::min(rest.find('.'), rest.size());
        if (dot > 0)
            names.push_back(GuessUtf8(DecodeModifiedUtf7(std::string(rest.substr(0, dot)))));
        rest.remove_prefix(std::min(dot + 1, rest.size()));
    }
    return names;
}
