#pragma once

#include <windows.h>

// Everything that the wizard may have on the screen; `closed` is nothing more, for good.
enum class Page
{
    folders,
    settings,
    picker,
    progress,
    notice,    // the product's own message box
    stopQuestion,
    about,
    licence,
    saveDialog,
    overwriteQuestion,    // the save dialog's
    logQuestion,          // the page's, whether to replace a file
    logMessage,
    unknown,
    closed
};

const char* NameOf(Page page);

// What a shown dialog of this process is.
Page Identify(HWND window);
// Of the system's message boxes, the control that holds the text.
inline constexpr int messageBoxText = 0xFFFF;
