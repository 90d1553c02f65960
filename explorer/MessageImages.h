#pragma once

#include "win/ImageList.h"

struct MessageRow;

// Small pictures of a message: an envelope, closed while the message is unread, with a red flag when it is
// flagged and a cross when it is expired.
CImageList MakeMessageImages();
int ImageOf(const MessageRow& row) noexcept;    // its index there
