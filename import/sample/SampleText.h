#pragma once

#include "import/sample/SampleMail.h"
#include "import/sample/SampleRandom.h"

#include <cstddef>
#include <string>
#include <vector>

// The words of the sample mailbox: people, subjects and prose, all made up.

const std::vector<SamplePerson>& SamplePeople();

// The owner of the mailbox.
SamplePerson SampleOwner();

// A machine that sends bare messages. A scan that keeps such a message takes every message of its sender
// without a subject for a duplicate, so nobody else may send from there.
SamplePerson SampleDevice(std::size_t number);

// "Harbour crane: drawings for review"
std::string MakeSubject(SampleRandom& random, const std::string& project);

// Some lines of plausible talk, a greeting and a signature included.
std::string MakeLetter(SampleRandom& random, const std::string& project, const SamplePerson& writer);

// A paragraph of `count` sentences about the project, wrapped at 72 columns.
std::string MakeParagraph(SampleRandom& random, const std::string& project, size_t count);

// A letter in another language, with the charset that such mail is sent in.
struct ForeignLetter
{
    std::string subject;
    std::string text;
    std::string charset;
    std::string transferEncoding;
};
ForeignLetter MakeForeignLetter(SampleRandom& random);

// "> " before every line, and who wrote it above.
std::string Quoted(const SampleMail& mail);

// UTF-8 text as simple HTML, paragraph by paragraph.
std::string AsHtml(const std::string& title, const std::string& text);
