#include "tests/faults/EngineSession.h"

#include "engine/FolderTree.h"
#include "engine/ProgressThread.h"
#include "engine/ScanSettings.h"
#include "localmapi/ComBoundary.h"
#include "localmapi/EntryId.h"
#include "tests/faults/SmallWorld.h"
#include "tests/localmapi/TemporaryStore.h"
#include "ui/SaveLog.h"
#include "win/OleException.h"
#include "win/ThisModule.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <utility>

namespace
{
// The longest that a run of a few messages takes on a busy machine, many times over.
constexpr DWORD deadline = 120'000;

void WaitFor(HANDLE handle, const char* what)
{
    if (::WaitForSingleObject(handle, deadline) == WAIT_OBJECT_0)
        return;
    std::fprintf(stderr, "%s does not end\n", what);
    ::TerminateProcess(::GetCurrentProcess(), 3);
}

// A job's end as seen from the thread that started it.
class JobEnd
{
public:
    // On the job's thread.
    void Tell(const std::function<void()>& endJob)
    {
        thread.reset(::OpenThread(SYNCHRONIZE, FALSE, ::GetCurrentThreadId()));
        endJob();
        ::SetEvent(told.get());
    }
    void Await()
    {
        WaitFor(told.get(), "a job");
        WaitFor(thread.get(), "a job's thread");
    }

private:
    KernelHandle told{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    KernelHandle thread;
};

// Saves under the one name that it is given.
class SaveUnder : public SaveLogPrompts
{
public:
    explicit SaveUnder(std::wstring path) : path(std::move(path)) {}

    std::optional<std::wstring> AskForPath() override { return std::exchange(path, std::nullopt); }
    int ShowMessage(const std::wstring&, UINT) override { return IDOK; }

private:
    std::optional<std::wstring> path;
};

std::string SavedReport(const std::vector<ResultRow>& rows)
{
    std::vector<LogRow> texts;
    for (const ResultRow& row : rows)
        texts.push_back({row.folderName, row.subject, std::to_wstring(row.count)});
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("report-" + std::to_string(::GetCurrentProcessId()) + "-" +
                                                  std::to_string(::GetCurrentThreadId()) + ".txt");
    SaveUnder prompts(path.wstring());
    SaveLog(StringTable(ThisModule()), texts, prompts);
    std::ifstream file(path, std::ios::binary);
    std::string report{std::istreambuf_iterator<char>(file), {}};
    file.close();
    std::filesystem::remove(path);
    return report;
}

std::int64_t MessageOf(const std::wstring& hex)
{
    Blob bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    try
    {
        return DecodeEntryId(static_cast<ULONG>(bytes.size()), bytes.data()).id;
    }
    catch (const MapiError&)
    {
        return 0;
    }
}

const std::map<std::int64_t, std::wstring> folderNames{
    {inboxId, L"Inbox"}, {sentItemsId, L"Sent Items"}, {keptId, L"Kept"}};
}    // namespace

class EngineSession::Tree : public RecordingTreeView
{
public:
    void Close() override { closed = true; }
    void FinishLoading(const std::function<void()>& endJob) override { end.Tell(endJob); }

    JobEnd end;
    bool closed = false;
};

class EngineSession::Progress : public RecordingProgressView
{
public:
    Progress(RunStory& story, const std::function<LONG()>& faults) : story(story), faults(faults) {}

    void StepProgress() override { story.faultsInSearch = faults(); }
    void ShowEnd(bool stopped, LONG duplicateCount, const std::wstring&) override
    {
        story.stopped = stopped;
        story.count = duplicateCount;
    }
    void FinishRun(const std::function<void()>& endJob) override { end.Tell(endJob); }

    JobEnd end;

private:
    RunStory& story;
    const std::function<LONG()>& faults;
};

EngineSession::EngineSession(std::function<LONG()> faults, Wrap wrap)
    : faults(std::move(faults)),
      wrap(std::move(wrap))
{
}

EngineSession::~EngineSession() = default;

bool EngineSession::LogOn()
{
    if (loggedOn)
        return true;
    if (!state->storeSession.Create())
        return false;
    if (wrap)
        state->storeSession = wrap(state->storeSession);
    try
    {
        state->storeSession.LogOn();
        loggedOn = true;
    }
    catch (const COleException&)
    {
        // The first page says so and closes.
    }
    return loggedOn;
}

bool EngineSession::LoadTree()
{
    tree = std::make_unique<Tree>();
    state->folders.clear();
    state->folderTree = tree.get();
    if (!StartTreeLoading(*state))
        return false;
    tree->end.Await();
    return !tree->closed;
}

// False when the user cannot choose the folder that the action needs.
bool EngineSession::Choose(const RunChoice& choice)
{
    ResetSettings(*state);
    state->destFolder.ReleaseDispatch();
    state->destFolderPath.clear();
    const auto isTicked = [&](const FOLDER_INFO& record)
    {
        return std::ranges::any_of(choice.folders, [&](std::int64_t folder)
                                   { return folderNames.at(folder) == record.name; });
    };
    for (const FOLDER_INFO& record : state->folders)
    {
        tree->SetCheckState(record.checkItem, isTicked(record) ? CheckState::checked : CheckState::unchecked);
        if (record.name != folderNames.at(choice.destination))
            continue;
        state->destFolder = record.folder;
        state->destFolderPath = record.name;
    }
    state->useSenderName = choice.senderName;
    state->useRecipientName = choice.recipientName;
    state->useInternetHeader = choice.internetHeader;
    state->useAttachments = choice.attachments;
    state->useSendTime = choice.sendTime;
    constexpr std::array days{1, 2, 5, 10, 20, 30, 50, 75, 100, 365};
    ChooseTimeSpan(*state, static_cast<int>(std::ranges::find(days, choice.days) - days.begin()),
                   CurrentUnixSeconds());
    return ChooseAction(*state, ActionOfIndex(choice.action), L"The action");
}

void EngineSession::Scan(RunStory& story)
{
    Progress progress(story, faults);
    if (!StartScan(*state, progress))
        return;
    progress.end.Await();
    story.scanned = true;
    story.rows = progress.rows;
    if (!progress.rows.empty())
        story.report = SavedReport(progress.rows);
    for (const std::wstring& id : state->duplicateIds)
        story.duplicates.push_back(MessageOf(id));
}

RunStory EngineSession::Run(const RunChoice& choice)
{
    RunStory story;
    story.loggedOn = LogOn();
    story.loaded = story.loggedOn && LoadTree();
    if (story.loaded && Choose(choice))
        Scan(story);
    state->folders.clear();
    return story;
}
