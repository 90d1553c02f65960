#pragma once

#include <windows.h>

#include <mapidefs.h>

#include <string>

// What an attachment's name is read as: its long file name, else its short one, else its display name; empty
// when it has none of them. Throws MapiError when the attachment fails.
std::wstring AttachmentFileName(IMAPIProp* attachment);
