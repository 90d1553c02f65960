#pragma once

#include "tests/ui/WizardStore.h"

#include <cstdint>
#include <string>
#include <vector>

// A few messages in two folders of a store. A1, A2 and A3 agree in all that can be compared. C1, S1, R1, H1,
// F1 and T1 agree but for one thing that one of the criteria looks at: the sender's name, the readers, the
// headers, the attached file, the time. C1 was delivered two months ago, the others today.
const TemporaryStore& SmallWorldModel();

// One of its messages with all that belongs to it.
struct WorldMessage
{
    std::string name;
    std::int64_t id = 0;
    std::int64_t folder = 0;
    bool flagged = false;
    bool expired = false;
    std::string content;    // of everything that no action changes

    bool operator==(const WorldMessage&) const = default;
};

// All messages of a store, by name and then by id.
std::vector<WorldMessage> ReadWorld(const TemporaryStore& store);

// The name of those that agree with the message by the criteria of the run, whatever its time span.
std::string GroupOf(const WorldMessage& message, const RunChoice& choice);

// The folders of the world that a run looks through, and the one that messages are copied and moved to.
inline constexpr std::int64_t inboxId = 3;
inline constexpr std::int64_t sentItemsId = 5;
inline constexpr std::int64_t deletedItemsId = 6;
inline constexpr std::int64_t keptId = 101;

// Places in the list of actions.
inline constexpr int actionCount = 6;
inline constexpr int actionDeleteToFolder = 0;
inline constexpr int actionExpire = 1;
inline constexpr int actionCopy = 2;
inline constexpr int actionMove = 3;
inline constexpr int actionFlag = 4;
inline constexpr int actionDeleteForGood = 5;

// Every set of criteria that a run is made with: the constant ones alone, with one more each, with a time
// span, and with all.
enum class Criteria
{
    constant,
    senderName,
    recipientName,
    internetHeader,
    attachments,
    sendTime,
    timeSpan,
    all
};
inline constexpr int criteriaCount = 8;

RunChoice SmallRun(int action, Criteria criteria);
std::string NameOf(const RunChoice& choice);
