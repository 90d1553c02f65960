#pragma once

#include <future>
#include <thread>

// Keeps the clipboard open from another thread, as another program may, from here until its end.
class ClipboardHolder
{
public:
    ClipboardHolder();
    ClipboardHolder(const ClipboardHolder&) = delete;
    ClipboardHolder& operator=(const ClipboardHolder&) = delete;
    ~ClipboardHolder();

private:
    void Hold();

    std::promise<bool> opened;
    std::promise<void> enough;
    std::thread thread;
};

// Puts a text of the user's on the clipboard.
void PutTextOnClipboard(const wchar_t* text);
