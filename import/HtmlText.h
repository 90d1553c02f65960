#pragma once

#include <string>
#include <string_view>

// HTML as a reader would see it in plain text: tags, comments, scripts and styles gone, entities decoded,
// white space joined, paragraphs and line breaks kept. UTF-8 in, UTF-8 with CR LF line ends out.
std::string HtmlToText(std::string_view html);

// Plain text as an HTML fragment that shows it unchanged.
std::string TextToHtml(std::string_view text);

// The charset that a <meta> element names, else empty.
std::string HtmlCharset(std::string_view html);
