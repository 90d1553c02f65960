#pragma once

#include "store/MapiHelper.h"

#include <windows.h>

// The library's application object: what the process has one of. On the host's user-interface thread.
class CTalmoreQuorvexOutlookDuplicateRemoverApp
{
public:
    BOOL exchangeProfile = FALSE;    // set by the MAPI helper, read by the scan
    MapiHelper mapiHelper;
};

CTalmoreQuorvexOutlookDuplicateRemoverApp& TheApp();
