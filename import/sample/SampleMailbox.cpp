#include "import/sample/SampleMailbox.h"

#include "import/sample/SampleRandom.h"
#include "import/sample/SampleText.h"

#include <algorithm>
#include <set>
#include <tuple>

namespace
{
constexpr uint64_t seed = 20231;
constexpr int64_t hour = 3600;
constexpr int64_t newYear2022 = 1'640'995'200;
constexpr int64_t newYear2023 = 1'672'531'200;
constexpr int64_t newYear2024 = 1'704'067'200;
constexpr size_t copiesOfAKind = 20;
constexpr size_t copiesWithoutTextAndSubject = 6;

struct FolderOutline
{
    const char* path;
    SampleForm form;
    size_t letters;
    const char* project;
    int64_t begin;      // seconds since 1970 UTC
    int64_t spacing;    // from one letter to the next
};

constexpr FolderOutline outlines[] = {
    {"Inbox", SampleForm::maildir, 520, "Harbour crane", newYear2024, 15 * hour},
    {"Inbox/Lists/Build", SampleForm::maildir, 260, "Nightly build", newYear2024, 26 * hour},
    {"Inbox/Lists/Gardening", SampleForm::maildir, 180, "Allotment", newYear2024, 44 * hour},
    {"Inbox/Newsletters", SampleForm::maildir, 160, "Harbour weekly", newYear2024, 48 * hour},
    {"Sent Items", SampleForm::mbox, 300, "Observatory", newYear2024, 26 * hour},
    {"Archive/2022", SampleForm::mbox, 240, "Museum catalogue", newYear2022, 30 * hour},
    {"Archive/2023", SampleForm::mbox, 240, "River survey", newYear2023, 30 * hour},
    {"Projects/Harbour", SampleForm::messageFiles, 120, "Harbour crane", newYear2023, 60 * hour},
    {"Projects/Observatory", SampleForm::messageFiles, 110, "Observatory dome", newYear2023, 70 * hour}};

class SampleMaker
{
public:
    SampleMailbox Make()
    {
        for (const FolderOutline& outline : outlines)
            MakeFolder(outline);
        mailbox.originals = serial;
        for (int kind = 0; kind < static_cast<int>(CopyKind::count); ++kind)
            Plant(static_cast<CopyKind>(kind));
        return std::move(mailbox);
    }

private:
    void MakeFolder(const FolderOutline& outline)
    {
        SampleFolder& folder = mailbox.folders.emplace_back(SampleFolder{outline.path, outline.form, {}});
        while (folder.mails.size() < outline.letters)
            folder.mails.push_back(MakeUnlikeAll(outline, folder));
    }

    // Chance may say the same twice; a mailbox to be checked against must not.
    SampleMail MakeUnlikeAll(const FolderOutline& outline, const SampleFolder& folder)
    {
        while (true)
        {
            SampleMail mail = MakeMail(outline, folder);
            if (said.insert({mail.subject, mail.text + mail.html, mail.from.address}).second)
                return mail;
        }
    }

    SampleMail MakeMail(const FolderOutline& outline, const SampleFolder& folder)
    {
        SampleMail mail = MakeEnvelope(outline, folder.mails.size());
        const bool answers = !folder.mails.empty() && random.Below(5) < 2;
        if (mail.listId.empty() && random.OneIn(12))
            ApplyForeignLetter(mail);
        else if (answers && !folder.mails.back().text.empty() && folder.mails.back().charset == "us-ascii")
            ApplyAnswer(mail, folder.mails.back(), outline.project);
        else
            ApplyLetter(mail, outline);
        if (random.OneIn(9))
            AttachFiles(mail);
        return mail;
    }

    SampleMail MakeEnvelope(const FolderOutline& outline, size_t position)
    {
        SampleMail mail;
        ++serial;
        const bool sent = std::string_view(outline.path) == "Sent Items";
        mail.from = sent ? SampleOwner() : random.PickFrom(SamplePeople());
        mail.to = {sent ? random.PickFrom(SamplePeople()) : SampleOwner()};
        for (size_t others = random.Below(3); others > 0; --others)
            (random.OneIn(2) ? mail.to : mail.cc).push_back(random.PickFrom(SamplePeople()));
        mail.sentAt = outline.begin + static_cast<int64_t>(position) * outline.spacing +
                      static_cast<int64_t>(random.Below(static_cast<size_t>(outline.spacing)));
        mail.zoneHours = static_cast<int>(random.Below(12)) - 5;
        mail.messageId =
            std::to_string(serial) + "." + std::to_string(random.Below(1'000'000'000)) + "@example.org";
        mail.relays = {"relay" + std::to_string(random.Below(9)) + ".example.net", "smtp.example.com"};
        mail.importance = random.OneIn(30) ? "high" : "";
        if (std::string_view(outline.path).find("Lists") != std::string_view::npos)
            mail.listId = "<" + std::string(outline.project) + ".lists.example.org>";
        return mail;
    }

    void ApplyLetter(SampleMail& mail, const FolderOutline& outline)
    {
        mail.subject = MakeSubject(random, outline.project);
        mail.text = MakeLetter(random, outline.project, mail.from);
        if (std::string_view(outline.path) == "Inbox/Newsletters")
            mail.html = AsHtml(mail.subject, mail.text);
        else if (random.OneIn(15))
        {
            mail.html = AsHtml(mail.subject, mail.text);
            mail.text.clear();
        }
        else if (random.OneIn(60))
            mail.calendar =
                "BEGIN:VCALENDAR\nVERSION:2.0\nMETHOD:REQUEST\nBEGIN:VEVENT\nUID:" + mail.messageId +
                "\nSUMMARY:" + mail.subject + "\nEND:VEVENT\nEND:VCALENDAR\n";
        // A line that an mbox has to quote.
        if (!mail.text.empty() && random.OneIn(8))
            mail.text += "\nFrom next week on I am back in the office.\n";
    }

    void ApplyAnswer(SampleMail& mail, const SampleMail& original, const std::string& project)
    {
        mail.subject = original.subject.starts_with("Re: ") ? original.subject : "Re: " + original.subject;
        mail.references = original.references;
        mail.references.push_back(original.messageId);
        mail.text = MakeParagraph(random, project, 1 + random.Below(3)) + "\n" + Quoted(original);
    }

    void ApplyForeignLetter(SampleMail& mail)
    {
        const ForeignLetter letter = MakeForeignLetter(random);
        mail.subject = letter.subject;
        mail.text = letter.text;
        mail.charset = letter.charset;
        mail.transferEncoding = letter.transferEncoding;
    }

    void AttachFiles(SampleMail& mail)
    {
        static const SampleAttachment kinds[] = {{"drawing", "application/pdf", "%PDF-1.4\n"},
                                                 {"Zeichnung \xC3\xBC"
                                                  "bersicht",
                                                  "application/pdf", "%PDF-1.4\n"},
                                                 {"photo", "image/jpeg", "\xFF\xD8\xFF\xE0"},
                                                 {"figures", "text/csv", "day,count\n"}};
        for (size_t files = 1 + random.Below(2); files > 0; --files)
        {
            SampleAttachment file = random.PickFrom(kinds);
            const std::string extension = file.mimeType == "text/csv"     ? ".csv"
                                          : file.mimeType == "image/jpeg" ? ".jpg"
                                                                          : ".pdf";
            file.fileName += "-" + std::to_string(random.Below(1000)) + extension;
            for (size_t lines = 20 + random.Below(200); lines > 0; --lines)
                file.data += std::to_string(random.Below(1'000'000)) + "," + std::to_string(lines) + "\n";
            mail.attachments.push_back(file);
        }
    }

    void Plant(CopyKind kind)
    {
        static const char* const descriptions[] = {"exact copies in the same folder",
                                                   "exact copies in another folder",
                                                   "copies with another sender name",
                                                   "copies with other recipient names",
                                                   "copies with recipient names in capitals",
                                                   "copies with other transport headers",
                                                   "copies with other attachment file names",
                                                   "copies sent 3 seconds later",
                                                   "copies sent 7 minutes later",
                                                   "copies without text",
                                                   "copies without subject",
                                                   "copies without text and subject"};
        const size_t wanted = kind == CopyKind::emptyBoth ? copiesWithoutTextAndSubject : copiesOfAKind;
        for (size_t copy = 0; copy < wanted; ++copy)
            PlantCopy(kind, copy);
        mailbox.planted.push_back({kind, descriptions[static_cast<int>(kind)], static_cast<int>(wanted)});
    }

    void PlantCopy(CopyKind kind, size_t number)
    {
        const size_t folder = random.Below(mailbox.folders.size());
        const size_t original =
            IsEmptyKind(kind) ? AddEmptyOriginal(kind, number, folder) : PickOriginal(kind, folder);
        SampleMail copy = mailbox.folders[folder].mails[original];
        copied.insert(copy.messageId);
        Change(copy, kind);
        const size_t target =
            kind == CopyKind::otherFolder
                ? (folder + 1 + random.Below(mailbox.folders.size() - 1)) % mailbox.folders.size()
                : folder;
        mailbox.folders[target].mails.push_back(copy);
    }

    static bool IsEmptyKind(CopyKind kind)
    {
        return kind == CopyKind::emptyBody || kind == CopyKind::emptySubject || kind == CopyKind::emptyBoth;
    }

    size_t PickOriginal(CopyKind kind, size_t folder)
    {
        const std::vector<SampleMail>& mails = mailbox.folders[folder].mails;
        while (true)
        {
            const size_t index = random.Below(mails.size());
            const bool fits = kind != CopyKind::attachmentNames || !mails[index].attachments.empty();
            if (fits && !copied.contains(mails[index].messageId))
                return index;
        }
    }

    size_t AddEmptyOriginal(CopyKind kind, size_t number, size_t folder)
    {
        SampleMail mail = MakeEnvelope(outlines[folder], mailbox.folders[folder].mails.size());
        mail.listId.clear();
        if (kind == CopyKind::emptyBoth)
            mail.from = SampleDevice(number);
        if (kind == CopyKind::emptyBody)
            mail.subject = "Call me back, extension " + std::to_string(serial);
        if (kind == CopyKind::emptySubject)
            mail.text = "The code for the side door is " + std::to_string(serial) + " now.\n";
        ++mailbox.originals;
        mailbox.folders[folder].mails.push_back(mail);
        return mailbox.folders[folder].mails.size() - 1;
    }

    static void Change(SampleMail& mail, CopyKind kind)
    {
        if (kind == CopyKind::senderName)
            mail.from.name = mail.from.name + " (office)";
        else if (kind == CopyKind::recipientNames)
            mail.to.front().name = mail.to.front().name + ", reception";
        else if (kind == CopyKind::recipientCase)
            std::ranges::transform(
                mail.to.front().name, mail.to.front().name.begin(),
                [](char letter)
                { return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter; });
        else if (kind == CopyKind::transportHeaders)
            mail.relays.insert(mail.relays.begin(), "backup-mx.example.net");
        else if (kind == CopyKind::attachmentNames)
            mail.attachments.front().fileName.insert(0, "copy of ");
        else if (kind == CopyKind::secondsApart)
            mail.sentAt += 3;
        else if (kind == CopyKind::minutesApart)
            mail.sentAt += 7 * 60;
    }

    SampleRandom random{seed};
    SampleMailbox mailbox;
    int serial = 0;
    std::set<std::tuple<std::string, std::string, std::string>> said;
    std::set<std::string> copied;    // Message-IDs: each original has one copy
};
}    // namespace

SampleMailbox MakeSampleMailbox()
{
    return SampleMaker().Make();
}
