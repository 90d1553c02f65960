#pragma once

#include "import/sample/SampleMail.h"

#include <string>
#include <vector>

enum class SampleForm
{
    maildir,
    mbox,
    messageFiles
};

struct SampleFolder
{
    std::string path;    // "Inbox/Lists/Build"
    SampleForm form = SampleForm::maildir;
    std::vector<SampleMail> mails;
};

// How one planted copy differs from the message it is a copy of. Text, subject and sender address are always
// the same; what a mail's header fields say, its transport headers say as well.
enum class CopyKind
{
    sameFolder,     // in nothing
    otherFolder,    // in nothing but the folder
    senderName,
    recipientNames,
    recipientCase,       // recipients' names in capitals
    transportHeaders,    // one more relay on the way
    attachmentNames,
    secondsApart,    // sent three seconds later
    minutesApart,    // sent seven minutes later
    emptyBody,       // in nothing; neither has a text
    emptySubject,    // in nothing; neither has a subject
    emptyBoth,       // in nothing; neither has a text or a subject
    count
};

struct PlantedCopies
{
    CopyKind kind;
    const char* description;
    int count;
};

struct SampleMailbox
{
    std::vector<SampleFolder> folders;
    std::vector<PlantedCopies> planted;    // one entry for each kind
    int originals = 0;                     // no two of which agree in text, subject and sender address
};

// The same mailbox every time.
SampleMailbox MakeSampleMailbox();
