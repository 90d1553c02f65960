#include "ui/NoticeFont.h"

#include <windows.h>

#include <iterator>
#include <string_view>

FontHandle MakeNoticeFont()
{
    LOGFONTW description{};
    description.lfHeight = 30;
    description.lfWidth = 10;
    description.lfWeight = FW_BOLD;
    description.lfItalic = TRUE;
    description.lfUnderline = TRUE;
    description.lfCharSet = DEFAULT_CHARSET;
    std::wstring_view(L"Arial").copy(description.lfFaceName, std::size(description.lfFaceName) - 1);
    return FontHandle(::CreateFontIndirectW(&description));
}
