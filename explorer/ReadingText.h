#pragma once

#include <string>

struct MessageRow;

// What the reading pane shows: who sent the message, when, about what, and its text. Lines end with CR LF.
std::wstring ReadingText(const MessageRow& row, const std::wstring& text);
