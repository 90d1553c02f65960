#include "benchmark/mail/BulkMailbox.h"

#include "import/sample/SampleText.h"

#include <string>

namespace
{
constexpr std::size_t textBytes = 3100;
constexpr std::size_t accountsOfAPerson = 50;
constexpr std::size_t messagesOfASubject = 3;
constexpr int64_t firstSent = 1'577'836'800;    // 2020-01-01 00:00 UTC
constexpr int64_t sentApart = 97;

constexpr const char* projects[] = {"Harbour crane",    "Nightly build", "Allotment",        "Observatory",
                                    "Museum catalogue", "River survey",  "Observatory dome", "Night train"};

SamplePerson MakePerson(SampleRandom& random)
{
    SamplePerson person = random.PickFrom(SamplePeople());
    const std::string account = std::to_string(random.Below(accountsOfAPerson));
    person.name += " " + account;
    person.address.insert(person.address.find('@'), account);
    return person;
}

// A part of the message beside its text must not make it much longer than others.
std::string MakeText(SampleRandom& random, const std::string& project, std::size_t length)
{
    std::string text;
    while (text.size() < length)
        text += MakeParagraph(random, project, 2 + random.Below(4)) + "\n";
    return text;
}

SampleAttachment MakeFile(SampleRandom& random, std::size_t number)
{
    SampleAttachment file{"figures-" + std::to_string(number) + ".csv", "text/csv", "day,count\n"};
    while (file.data.size() < textBytes / 2)
        file.data += std::to_string(random.Below(1'000'000)) + "," + std::to_string(random.Below(100)) + "\n";
    return file;
}
}    // namespace

std::size_t BulkMailbox::OriginalOf(std::size_t index) const
{
    if (kind != Kind::ordinary || index % copyEvery != copyEvery - 1)
        return index;
    SampleRandom random(~index);
    return random.Below(index / copyEvery + 1) * copyEvery + random.Below(copyEvery - 1);
}

void BulkMailbox::Address(SampleMail& mail, SampleRandom& random) const
{
    mail.from = kind == Kind::ordinary ? MakePerson(random) : SamplePeople().front();
    for (std::size_t others = 1 + random.Below(2); others > 0; --others)
        mail.to.push_back(MakePerson(random));
    if (random.OneIn(3))
        mail.cc.push_back(MakePerson(random));
    mail.relays = {"relay" + std::to_string(random.Below(9)) + ".example.net",
                   "filter" + std::to_string(random.Below(9)) + ".example.net", "smtp.example.com"};
}

void BulkMailbox::Write(SampleMail& mail, SampleRandom& random, std::size_t number)
{
    constexpr std::size_t mixture = 20;
    const std::string project = random.PickFrom(projects);
    const std::size_t form = number % mixture;
    mail.text = "Reference " + std::to_string(number) + ".\n\n";
    if (form < 15)
        mail.text += MakeText(random, project, textBytes);
    else if (form < 17)
    {
        mail.charset = "utf-8";
        mail.transferEncoding = "quoted-printable";
        mail.subject += " \xE2\x80\x93 \xC3\xBC"
                        "berarbeitet";
        mail.text += "Gr\xC3\xBC\xC3\x9F"
                     "e aus K\xC3\xB6ln.\n" +
                     MakeText(random, project, textBytes);
    }
    else if (form < 19)
    {
        mail.text += MakeText(random, project, textBytes / 2);
        mail.html = AsHtml(mail.subject, mail.text);
    }
    else
    {
        mail.text += MakeText(random, project, textBytes / 2);
        mail.attachments.push_back(MakeFile(random, number));
    }
}

SampleMail BulkMailbox::Mail(std::size_t index) const
{
    const std::size_t number = OriginalOf(index);
    SampleRandom random(number);
    SampleMail mail;
    mail.sentAt = firstSent + static_cast<int64_t>(number) * sentApart;
    mail.messageId =
        std::to_string(number) + "." + std::to_string(random.Below(1'000'000'000)) + "@example.org";
    mail.references = {std::to_string(number / messagesOfASubject) + "@example.org"};
    const std::string topic = random.PickFrom(projects);
    mail.subject = kind == Kind::ordinary ? topic + ": notes " + std::to_string(number / messagesOfASubject)
                                          : "Weekly report";
    Address(mail, random);
    if (kind == Kind::ordinary)
        Write(mail, random, number);
    else
    {
        const std::string subject = mail.subject;
        Write(mail, random, number);
        mail.subject = subject;
    }
    return mail;
}
