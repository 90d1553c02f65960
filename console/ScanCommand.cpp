#include "console/ScanCommand.h"

#include "console/ConsoleScanView.h"
#include "console/FolderSelection.h"
#include "console/LogFile.h"
#include "console/MailStore.h"
#include "console/StopSwitch.h"
#include "console/Text.h"
#include "engine/FolderTree.h"
#include "engine/ScanDriver.h"
#include "engine/ScanSettings.h"
#include "res/resource.h"
#include "win/StringTable.h"

#include <windows.h>

#include <algorithm>
#include <optional>
#include <set>
#include <string_view>

namespace
{
UINT NameOf(DuplicateAction action)
{
    switch (action)
    {
    case DuplicateAction::moveToDeletedItems:
        return IDS_ACTION_DELETE;
    case DuplicateAction::markAsExpired:
        return IDS_ACTION_EXPIRE;
    case DuplicateAction::copyToFolder:
        return IDS_ACTION_COPY;
    case DuplicateAction::moveToFolder:
        return IDS_ACTION_MOVE;
    case DuplicateAction::deletePermanently:
        return IDS_ACTION_DELETE_PERMANENTLY;
    default:
        return IDS_ACTION_FLAG;
    }
}

// One run from the opened store to the closing message, in the order in which the worker thread does it.
class ScanRun
{
public:
    ScanRun(const ScanOptions& options, Console& console, std::optional<LogFile>& log)
        : options(options),
          console(console),
          log(log),
          notices(console.errors),
          stopSwitch(state.stopRequested, [this](bool isFirst) { AcknowledgeStop(isFirst); })
    {
    }

    ExitCode Run()
    {
        LoadFolders(state, tree);
        LearnProfileKind(state, mapiHelper);
        // A tree that a stop has cut short says nothing about the folders named.
        if (!state.stopRequested)
            ApplyOptions();
        MarkSelectedFolders(state, tree);
        return RunJob();
    }

private:
    void AcknowledgeStop(bool isFirst)
    {
        if (isFirst && !options.quiet)
            notices.Write(L"\nStopping ...\n");
        console.GiveUpQuestion();
    }

    void ApplyOptions()
    {
        const FolderPaths paths = MakeFolderPaths(state, tree);
        TickFolders(state, tree, paths, options);
        ResetSettings(state);
        state.useSenderName = options.senderName;
        state.useRecipientName = options.recipientName;
        state.useInternetHeader = options.internetHeader;
        state.useSendTime = options.sendTime;
        state.useAttachments = options.attachments;
        ChooseTimeSpan(state, options.timeSpan, CurrentUnixSeconds());
        if (!options.destination.empty())
            ChooseDestination(state, tree, paths, options.destination);
        if (options.action)
            ChooseAction(state, *options.action, strings.Load(NameOf(*options.action)));
        else
            state.actionName = L"Report only";
    }

    ExitCode RunJob()
    {
        std::optional<ProgressBar> bar;
        if (!options.quiet && console.errors.IsTerminal())
            bar.emplace(console.errors);
        ConsoleScanView view({.rows = options.quiet ? nullptr : &console.out, .bar = bar ? &*bar : nullptr},
                             strings, ScanEstimate(CountMessages()), CountFolderColumns());
        state.progressDialog = &view;
        state.duplicateCount = 0;
        RunDuplicateScan(state, state.folderRoot);
        view.ClearProgress();
        if (options.action)
            TreatDuplicates();
        return Finish(view);
    }

    void TreatDuplicates()
    {
        if (options.action == DuplicateAction::deletePermanently && !options.yes && !ConfirmDeletion())
            state.stopRequested = 1;
        ApplyDuplicateAction(state);
    }

    bool ConfirmDeletion()
    {
        const std::set<std::wstring_view> ids(state.duplicateIds.begin(), state.duplicateIds.end());
        if (ids.empty() || state.stopRequested)
            return true;
        const std::wstring messages = ids.size() == 1 ? L" message" : L" messages";
        if (console.Ask(L"Delete " + std::to_wstring(ids.size()) + messages + L" for good? [y/N] ",
                        state.stopRequested))
            return true;
        console.errors.WriteLine(L"Nothing has been deleted.");
        return false;
    }

    ExitCode Finish(const ConsoleScanView& view)
    {
        const bool stopped = state.stopRequested != 0;
        const bool saved = SaveLog(view.GetRows());
        if (!options.quiet && !view.GetRows().empty())
            console.out.WriteLine(L"");
        console.out.WriteLine(
            stopped ? strings.Format(IDS_RUN_ABORTED, {state.duplicateCount})
                    : strings.Format(IDS_RUN_COMPLETED, {state.duplicateCount, OnOneLine(state.actionName)}));
        state.folders.clear();
        state.progressDialog = nullptr;
        state.stopRequested = 0;
        if (stopped)
            return ExitCode::stopped;
        return saved ? ExitCode::done : ExitCode::failed;
    }

    bool SaveLog(const std::vector<LogRow>& rows)
    {
        if (!log)
            return true;
        std::string report;
        LogWriter(strings, [&report](std::string_view bytes) { report += bytes; }).WriteReport(rows);
        const std::wstring failure = log->Save(report);
        if (!failure.empty())
            console.Complain(L"the log " + Quoted(options.logFile) + L" could not be written: " + failure);
        return failure.empty();
    }

    bool IsSearched(const FOLDER_INFO& folder) const
    {
        return folder.selected && !tree.IsGreyed(folder.treeItem) && GetItemCount(folder, tree) > 0;
    }

    std::vector<long long> CountMessages() const
    {
        std::vector<long long> counts;
        for (const FOLDER_INFO& folder : state.folders)
        {
            if (IsSearched(folder))
                counts.push_back(GetItemCount(folder, tree));
        }
        return counts;
    }

    int CountFolderColumns() const
    {
        int columns = 0;
        for (const FOLDER_INFO& folder : state.folders)
        {
            if (IsSearched(folder))
                columns = std::max(columns, CountColumns(folder.name));
        }
        return columns;
    }

    const ScanOptions& options;
    Console& console;
    std::optional<LogFile>& log;
    StringTable strings{GetModuleHandleW(nullptr)};
    ScanState state;
    MapiHelper mapiHelper;    // its session ends before the one in `state`
    ConsoleFolderTree tree;
    OutputStream notices;    // a stream of its own: written to by the thread that hears Ctrl+C
    StopSwitch stopSwitch;
};

void RefuseDeletionWithoutAnswer(const ScanOptions& options, const Console& console)
{
    if (options.action == DuplicateAction::deletePermanently && !options.yes && !console.CanAsk())
    {
        throw UsageError(
            L"--action delete-permanently has nobody to ask here, away from a terminal: add --yes to "
            L"delete for good without a question");
    }
}
}    // namespace

ExitCode RunScan(const ScanOptions& options, Console& console)
{
    RefuseDeletionWithoutAnswer(options, console);
    std::optional<LogFile> log;
    if (!options.logFile.empty())
        log.emplace(options.logFile);
    const ComApartment apartment;
    return ScanRun(options, console, log).Run();
}
