#include "fuzz/StoreWalk.h"

#include "fuzz/Requirement.h"
#include "localmapi/storage/Folders.h"
#include "localmapi/storage/MessageColumns.h"
#include "localmapi/storage/MessageDraft.h"
#include "localmapi/storage/MessageMoves.h"
#include "localmapi/storage/NamedProperties.h"
#include "localmapi/storage/StoreError.h"

#include <functional>

namespace
{
// Of SmallStore: the Inbox, folders of the user's, the one that holds all, and one that is not there.
constexpr std::int64_t changedFolders[] = {folder_id::inbox, 13, 12, folder_id::root, 999};

constexpr std::uint32_t furtherTag = 0x1035001F;
constexpr std::uint32_t namedTag = 0x80000003;

// Whether the step was taken.
bool Try(const std::function<void()>& step)
{
    try
    {
        step();
        return true;
    }
    catch (const StoreError& error)
    {
        Require(*error.what() != '\0', "a refusal says why");
        return false;
    }
}

std::vector<std::uint32_t> AllMessageTags()
{
    std::vector<std::uint32_t> tags = {furtherTag, namedTag};
    for (const MessageColumn& column : MessageColumns())
        tags.push_back(column.tag);
    return tags;
}

class Walker
{
public:
    explicit Walker(std::shared_ptr<StoreFile> file) : file(std::move(file)) {}

    void Walk()
    {
        Try([&] { ReadSettings(); });
        Try([&] { ListNamedProperties(*file); });
        const std::vector<std::int64_t> folders = Folders();
        for (const std::int64_t folder : folders)
            ReadFolder(folder);
        for (const std::int64_t folder : changedFolders)
            ChangeMessages(folder);
        for (const std::int64_t folder : changedFolders)
            ChangeFolder(folder);
    }

private:
    void ReadSettings()
    {
        file->ReadUid();
        file->ReadSetting("display_name");
    }

    // The root and what can be reached from it, the folder that nothing leads to, and one that is not there.
    std::vector<std::int64_t> Folders()
    {
        std::vector<std::int64_t> ids = {folder_id::root, 12, 999};
        for (const std::int64_t top : {folder_id::root, std::int64_t{12}})
            Try(
                [&]
                {
                    for (const FolderPlace& place : ListFolders(*file, top, true))
                        ids.push_back(place.id);
                });
        return ids;
    }

    void ReadFolder(std::int64_t folder)
    {
        Try([&] { ListFolders(*file, folder, false); });
        Try([&] { ReadFolderRows(*file, {&folder, 1}, FolderTags()); });
        Try([&] { CountMessages(*file, folder); });
        for (const std::int64_t message : Messages(folder))
            ReadOneMessage(message);
    }

    std::vector<std::int64_t> Messages(std::int64_t folder)
    {
        static const std::vector<std::uint32_t> tags = AllMessageTags();
        std::vector<std::int64_t> ids;
        Try([&] { ids = ReadMessageIds(*file, folder); });
        Try([&] { ReadMessageRows(*file, folder, ids, tags); });
        const std::vector<std::int64_t> backwards(ids.rbegin(), ids.rend());
        Try([&] { ReadMessageRows(*file, folder, backwards, tags); });
        return ids;
    }

    void ReadOneMessage(std::int64_t id)
    {
        Try(
            [&]
            {
                const auto draft = MessageDraft::Open(file, id);
                Try([&] { draft->Read(draft->ListTags(), [](std::size_t, const StoredValue&) {}); });
                Try([&] { draft->Recipients(); });
                Try(
                    [&]
                    {
                        for (const auto& [number, attachment] : draft->Attachments())
                            draft->AttachmentData(number);
                    });
            });
    }

    void ChangeMessages(std::int64_t folder)
    {
        const std::vector<std::int64_t> ids = Messages(folder);
        for (const std::int64_t id : ids)
            Try([&] { ChangeMessage(id); });
        Try([&] { SetMessagesRead(*file, folder, ids, false); });
        Try([&] { CopyMessages(*file, folder, ids, folder_id::deletedItems); });
        Try([&] { MakeMessage(folder); });
        if (!ids.empty())
            Try([&] { MoveMessages(*file, folder, {&ids.front(), 1}, folder_id::deletedItems); });
        Try([&] { DeleteMessages(*file, folder, ids); });
    }

    void ChangeMessage(std::int64_t id)
    {
        const auto draft = MessageDraft::Open(file, id);
        draft->Set(tag::subject, std::string("changed"));
        draft->Set(tag::body, {});
        draft->Set(furtherTag, std::string("<2@example.org>"));
        draft->SetRecipients(draft->Recipients());
        const std::int64_t number = draft->ReserveAttachmentNumber();
        draft->PutAttachment(number, {{1, std::string("new.txt"), {}, {}, {}, 0}, Blob{1, 2, 3}});
        draft->DeleteAttachment(0);
        draft->Save();
        draft->SetRead(true);
    }

    void MakeMessage(std::int64_t folder)
    {
        const auto draft = MessageDraft::Make(file, folder);
        draft->Set(tag::subject, std::string("made"));
        draft->Set(namedTag, std::int64_t{1});
        draft->Save();
        Require(draft->Id() > 0, "a message that was made has an id");
    }

    void ChangeFolder(std::int64_t folder)
    {
        Try([&] { UpdateFolder(*file, folder, {{tag::comment, std::string("seen")}}); });
        Try([&] { FindNamedProperty(*file, {Blob(16, 1), std::int64_t{folder}}, true); });
        std::int64_t made = 0;
        if (Try([&] { made = CreateFolder(*file, folder, "Made", {}); }))
            Try([&] { FindFolder(*file, folder, "made"); });
        Try([&] { EmptyFolder(*file, folder); });
        Try([&] { DeleteFolder(*file, made); });
        Try([&] { DeleteFolder(*file, folder); });
    }

    std::shared_ptr<StoreFile> file;
};
}    // namespace

void WalkStore(const std::filesystem::path& path)
{
    Try([&] { Walker(StoreFile::Open(path.string())).Walk(); });
}
