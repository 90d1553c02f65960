#pragma once

// Puts the buttons' picture on the clipboard, in place of whatever the user has there, for a button to take
// its face from. False when that does not work, as when another program holds the clipboard just then.
bool PutButtonPictureOnClipboard() noexcept;
