// How many calls the engine makes on the mail-store server: loads the folder tree of the store file named by
// LOCALMAPI_STORE, scans it without changing it, and prints
//     FOLDERS TREE-CALLS FOLDERS-FETCHED   VISITED KEPT QUESTIONS MATCHES SCAN-CALLS
// VISITED are the messages that were looked at, KEPT those that were compared with others, QUESTIONS the
// searches made for them, MATCHES the rows that were found.
#include "benchmark/scan/CountingDispatch.h"
#include "console/ConsoleFolderTree.h"
#include "contracts/DispatchIds.h"
#include "engine/FolderTree.h"
#include "engine/ScanDriver.h"
#include "engine/ScanProgressView.h"
#include "engine/ScanSettings.h"
#include "win/ComInitialization.h"
#include "win/OleException.h"

#include <windows.h>

#include <cstdio>

namespace
{
class NobodyWatches : public ScanProgressView
{
public:
    void AddResultRow(const std::wstring&, const std::wstring&, LONG, LONG) override {}
    void StepProgress() override {}
};

void PrintTree(const ScanState& state, const CallCounts& counts)
{
    std::printf("%zu %lld %lld ", state.folders.size(), counts.Total(),
                counts.Of(dispid::folderCollection::item, DISPATCH_METHOD, 1));
}

void PrintScan(const CallCounts& counts)
{
    std::printf("%lld %lld %lld %lld %lld\n", counts.Of(dispid::mailItem::entryId, DISPATCH_PROPERTYGET, 0),
                counts.Of(dispid::mailItem::bodyText, DISPATCH_PROPERTYGET, 0),
                counts.Of(dispid::tableFilter::findFirst, DISPATCH_METHOD, 1),
                counts.Of(dispid::itemTable::getRow, DISPATCH_METHOD, 0), counts.Total());
}

void Run()
{
    CallCounts counts;
    ScanState state;
    ConsoleFolderTree tree;
    NobodyWatches view;
    CRDOSession session;
    if (!session.Create())
        throw COleException(REGDB_E_CLASSNOTREG);
    state.storeSession = CRDOSession(CountingDispatch::Before(session.GetDispatch(), counts));
    state.storeSession.LogOn();
    if (!OpenDefaultStore(state))
        throw COleException(E_FAIL);
    EnumerateFolder(state, tree, state.folderRoot, TreeItem::none);
    PrintTree(state, counts);
    counts = CallCounts();
    ResetSettings(state);
    MarkSelectedFolders(state, tree);
    state.progressDialog = &view;
    RunDuplicateScan(state, state.folderRoot);
    PrintScan(counts);
}
}    // namespace

int main()
{
    try
    {
        const ComInitialization com;
        Run();
        return 0;
    }
    catch (const COleException& failure)
    {
        std::fprintf(stderr, "scancalls: 0x%08lX\n", static_cast<unsigned long>(failure.GetCode()));
        return 2;
    }
}
