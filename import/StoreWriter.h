#pragma once

#include "import/Database.h"
#include "import/MailRecord.h"

#include <map>
#include <set>
#include <string>
#include <utility>

// Puts folders and messages into a store. The database must outlive the writer; nothing is committed here.
class StoreWriter
{
public:
    explicit StoreWriter(Database& database);

    // The folder of this name below `parentId`, case ignored: the one that is there, else a new one. Each
    // folder goes to one caller only: a second one with the same name gets "name (2)", the next "name (3)"
    // and so on.
    int64_t OpenFolder(int64_t parentId, const std::string& name);

    // Adds the message behind all that the folder holds. Throws ImportError when the store refuses it.
    void AddMessage(int64_t folderId, const MailRecord& mail);

    // Marks the folders that messages were added to as changed.
    void Finish();

    int64_t MessageCount() const { return messageCount; }

    // The visible top folder, below which imported folders lie.
    static constexpr int64_t topFolderId = 2;

private:
    using FolderKey = std::pair<int64_t, std::string>;    // parent, case-folded name

    int64_t CreateFolder(int64_t parentId, const std::string& name);
    void InsertMessage(int64_t folderId, const MailRecord& mail);
    void InsertParts(int64_t messageId, const MailRecord& mail);
    void InsertProperty(int64_t messageId, const PropertyRecord& property);

    Database& database;
    FileTime now;    // when this import puts its messages into the store
    std::map<FolderKey, int64_t> folders;
    std::set<int64_t> openedFolders;
    std::set<int64_t> filledFolders;
    int64_t messageCount = 0;

    Statement insertMessage;
    Statement insertText;
    Statement insertProperty;
    Statement insertRecipient;
    Statement insertAttachment;
    Statement insertAttachmentData;
};
