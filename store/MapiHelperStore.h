#pragma once

#include "store/MapiHelper.h"

// Opens the default store of the helper's session and keeps the entry ids of its special folders. Of several
// that the profile calls its default the last one that opens is kept.
void OpenDefaultStore(MapiHelper& helper) noexcept;
