#include "ui/StopQuestion.h"

#include "engine/ScanState.h"
#include "res/resource.h"
#include "win/StringTable.h"
#include "win/ThisModule.h"

#include <windows.h>

bool AskWhetherToStop(const CWnd& dialog, ScanState& state)
{
    if (!state.workerThread)
        return false;
    const StringTable strings(ThisModule());
    const int answer = dialog.MessageBox(strings.Load(IDS_ASK_STOP), strings.Load(IDS_PRODUCT_TITLE),
                                         MB_YESNO | MB_ICONQUESTION);
    // The job may have ended while the question was open: then there is nothing to stop.
    if (answer == IDYES && state.workerThread)
        state.stopRequested = 1;
    return true;
}
