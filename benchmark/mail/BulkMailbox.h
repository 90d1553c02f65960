#pragma once

#include "import/sample/SampleMail.h"
#include "import/sample/SampleRandom.h"

#include <cstddef>

// A mailbox of any size for measurements, the same on every machine: each message is made from its number
// alone, so messages may be made in any order and on several threads. A message is about 4 KB. Of twenty,
// fifteen are plain text, two are quoted-printable with encoded words in the header, two are text beside HTML
// and one carries a file.
class BulkMailbox
{
public:
    enum class Kind
    {
        ordinary,    // every fifth message is an exact copy of one before it; three messages share a subject
        equalSubjects,    // one subject and one sender everywhere; no two texts are equal
    };

    BulkMailbox(std::size_t size, Kind kind) : size(size), kind(kind) {}

    std::size_t Size() const { return size; }

    // How many of the messages are copies.
    std::size_t Copies() const { return kind == Kind::ordinary ? size / copyEvery : 0; }

    // Message `index`, from 0.
    SampleMail Mail(std::size_t index) const;

private:
    static constexpr std::size_t copyEvery = 5;

    std::size_t OriginalOf(std::size_t index) const;
    void Address(SampleMail& mail, SampleRandom& random) const;
    static void Write(SampleMail& mail, SampleRandom& random, std::size_t number);

    std::size_t size;
    Kind kind;
};
