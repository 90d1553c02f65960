#pragma once

#include "tests/localmapi/TemporaryStore.h"

#include <cstdint>
#include <string>
#include <vector>

// What a run was asked for, as its user saw it.
struct RunChoice
{
    std::vector<std::int64_t> folders;    // ticked, in the order of the tree
    bool senderName = false;
    bool recipientName = false;
    bool internetHeader = false;
    bool attachments = false;
    bool sendTime = false;
    int days = 0;      // 0 is any time
    int action = 0;    // its place in the list of actions
    std::int64_t destination = 0;
};

// A copy of the walks' mail, a few hundred messages with planted duplicates in about twenty folders: real
// mail when the environment's TQODR_REAL_MAIL names a store of it, else made-up mail.
class WizardStore
{
public:
    WizardStore();
    explicit WizardStore(const TemporaryStore& model);    // a copy of that one instead

    const TemporaryStore& File() const { return file; }
    bool IsWhole() const;    // the file passes SQLite's own check

    // The folders in the order of the wizard's tree, and those of them that hold mail.
    std::vector<std::int64_t> Folders() const;
    std::vector<std::int64_t> MailFolders() const;
    std::size_t PlaceOf(const std::string& name) const;    // of a folder, in that order
    std::int64_t IdOf(const std::string& name) const;

    // Every message with its folder and marks, sorted: one line each.
    std::vector<std::string> Messages() const;
    // Those of one folder, by the name that each keeps on its ways.
    std::vector<std::string> MessagesIn(const std::string& folder) const;

private:
    TemporaryStore file;
};

// What a run has to do, reckoned from the store before it by SQL of its own and plain loops.
class ExpectedRun
{
public:
    ExpectedRun(const WizardStore& store, const RunChoice& choice);

    std::size_t CountDuplicates() const { return duplicates.size(); }
    // WizardStore::Messages() when the first `treated` duplicates have been treated.
    std::vector<std::string> MessagesAfter(std::size_t treated) const;
    std::vector<std::string> MessagesAfter() const { return MessagesAfter(duplicates.size()); }

private:
    struct Message
    {
        std::int64_t id;
        std::string name;
        std::int64_t folder;
        bool flagged;
        bool expired;
    };
    using Messages = std::vector<Message>;

    void Treat(Messages& messages, std::int64_t duplicate) const;

    RunChoice choice;
    Messages before;
    std::vector<std::int64_t> duplicates;    // as found; one may be found again
};
