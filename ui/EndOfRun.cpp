#include "ui/EndOfRun.h"

#include "res/resource.h"
#include "ui/MsgDlg.h"
#include "win/StringTable.h"
#include "win/ThisModule.h"

std::wstring EndOfRunMessage(bool stopped, LONG duplicateCount, const std::wstring& actionName)
{
    const StringTable strings(ThisModule());
    return stopped ? strings.Format(IDS_RUN_ABORTED, {duplicateCount})
                   : strings.Format(IDS_RUN_COMPLETED, {duplicateCount, actionName});
}

void ShowEndOfRun(const CWnd& dialog, bool stopped, LONG duplicateCount, const std::wstring& actionName)
{
    CMsgDlg message(&dialog);
    message.message = EndOfRunMessage(stopped, duplicateCount, actionName);
    message.DoModal();
}
