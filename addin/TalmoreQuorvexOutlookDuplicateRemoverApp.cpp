#include "addin/TalmoreQuorvexOutlookDuplicateRemoverApp.h"

CTalmoreQuorvexOutlookDuplicateRemoverApp& TheApp()
{
    // Never destroyed: that would end a MAPI session while the system holds its lock on loaded libraries.
    static auto& app = *new CTalmoreQuorvexOutlookDuplicateRemoverApp;
    return app;
}
