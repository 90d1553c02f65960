#include "tests/faults/SmallWorld.h"

#include <sstream>
#include <stdexcept>

namespace
{
// A's body is too long for one property read. Each of S, R, H, F and T differs from C in one thing.
constexpr char world[] = R"(
BEGIN;
INSERT INTO folder (id, parent_id, name, container_class) VALUES (101, 3, 'Kept', 'IPF.Note');
CREATE TEMP TABLE planned
    (name TEXT, folder_id INTEGER, kind TEXT, sender TEXT, reader TEXT, way TEXT, plan TEXT, hour INTEGER);
INSERT INTO planned VALUES
    ('A1', 3, 'A', 'A', 'A', 'A', 'A', 1), ('C1', 3, 'C', 'C', 'C', 'C', 'C', 2), ('A2', 3, 'A', 'A', 'A', 'A', 'A', 1),
    ('S1', 5, 'C', 'S', 'C', 'C', 'C', 2), ('R1', 5, 'C', 'C', 'R', 'C', 'C', 2), ('A3', 5, 'A', 'A', 'A', 'A', 'A', 1),
    ('H1', 5, 'C', 'C', 'C', 'H', 'C', 2), ('F1', 5, 'C', 'C', 'C', 'C', 'F', 2), ('T1', 5, 'C', 'C', 'C', 'C', 'C', 3);
INSERT INTO message (folder_id, message_class, subject, sender_name, sender_address_type, sender_address,
                     display_to, display_cc, display_bcc, client_submit_time, delivery_time, message_flags,
                     message_size)
SELECT folder_id, 'IPM.Note', 'Subject of ' || kind, 'Writer ' || sender, 'SMTP', 'writer@example.org',
       'Reader ' || reader || '; Second reader', 'Copied ' || reader, '',
       133000000000000000 + hour * 36000000000,
       (CAST(strftime('%s', 'now') AS INTEGER) + 11644473600 - 3600 * CASE name WHEN 'C1' THEN 1440 ELSE 9 END)
       * 10000000, 17, 100
FROM planned ORDER BY rowid;
INSERT INTO message_property (message_id, tag, value) SELECT rowid, 0x1035001F, name FROM planned;
INSERT INTO message_text (message_id, headers, body)
SELECT rowid, 'Received: ' || way, CASE kind WHEN 'A' THEN hex(zeroblob(30000)) ELSE 'This is text.' END FROM planned;
INSERT INTO recipient (message_id, row_id, type, name, address_type, address)
SELECT planned.rowid, row_id, type, who || CASE row_id WHEN 1 THEN '' ELSE reader END, 'SMTP', 'reader@example.org'
FROM planned JOIN (SELECT 0 AS row_id, 1 AS type, 'Reader ' AS who UNION SELECT 1, 1, 'Second reader' UNION
                   SELECT 2, 2, 'Copied ');
INSERT INTO attachment (message_id, number, method, file_name, display_name, size)
SELECT rowid, 0, 1, 'plan ' || plan || '.txt', 'plan ' || plan || '.txt', 5 FROM planned;
INSERT INTO attachment_data (message_id, number, data) SELECT rowid, 0, x'0102030405' FROM planned;
COMMIT;
)";

// Everything that a message is but its folder, its marks and the times of its changes.
constexpr char contents[] = R"(
SELECT p.value || '|' || m.id || '|' || m.folder_id || '|' || (coalesce(m.flag_status, 0) = 2) || '|' ||
       EXISTS (SELECT 1 FROM message_property e WHERE e.message_id = m.id AND e.tag = 0x00150040) || '|' ||
       m.subject || '/' || m.sender_name || '/' || m.sender_address || '/' || m.display_to || '/' || m.display_cc ||
       '/' || m.client_submit_time || '/' || m.delivery_time || '/' || (m.message_flags & ~1) || '/' || t.headers ||
       '/' || length(t.body) || substr(t.body, 1, 20) || '/' ||
       (SELECT group_concat(r.row_id || r.type || r.name || r.address, ';') FROM recipient r
        WHERE r.message_id = m.id) || '/' ||
       (SELECT group_concat(a.number || a.method || a.file_name || hex(d.data), ';') FROM attachment a
        JOIN attachment_data d ON d.message_id = a.message_id AND d.number = a.number WHERE a.message_id = m.id)
FROM message m JOIN message_property p ON p.message_id = m.id AND p.tag = 0x1035001F
JOIN message_text t ON t.message_id = m.id ORDER BY p.value, m.id;
)";
}    // namespace

const TemporaryStore& SmallWorldModel()
{
    static const TemporaryStore model;
    static const bool filled = (model.Run(world), true);
    return filled ? model : throw std::logic_error("no world");
}

std::vector<WorldMessage> ReadWorld(const TemporaryStore& store)
{
    std::vector<WorldMessage> messages;
    for (const std::string& line : ReadLines(store, contents))
    {
        std::istringstream stream(line);
        std::string id, folder, flagged, expired;
        WorldMessage message;
        std::getline(stream, message.name, '|');
        std::getline(stream, id, '|');
        std::getline(stream, folder, '|');
        std::getline(stream, flagged, '|');
        std::getline(stream, expired, '|');
        std::getline(stream, message.content);
        message.id = std::stoll(id);
        message.folder = std::stoll(folder);
        message.flagged = flagged == "1";
        message.expired = expired == "1";
        messages.push_back(std::move(message));
    }
    return messages;
}

std::string GroupOf(const WorldMessage& message, const RunChoice& choice)
{
    const char kind = message.name.front();
    const bool standsOut = (kind == 'S' && choice.senderName) || (kind == 'R' && choice.recipientName) ||
                           (kind == 'H' && choice.internetHeader) || (kind == 'F' && choice.attachments) ||
                           (kind == 'T' && choice.sendTime);
    return kind == 'A' || standsOut ? std::string(1, kind) : "C";
}

RunChoice SmallRun(int action, Criteria criteria)
{
    RunChoice choice;
    choice.folders = {inboxId, sentItemsId};
    choice.action = action;
    choice.destination = keptId;
    const bool all = criteria == Criteria::all;
    choice.senderName = all || criteria == Criteria::senderName;
    choice.recipientName = all || criteria == Criteria::recipientName;
    choice.internetHeader = all || criteria == Criteria::internetHeader;
    choice.attachments = all || criteria == Criteria::attachments;
    choice.sendTime = all || criteria == Criteria::sendTime;
    choice.days = criteria == Criteria::timeSpan ? 30 : all ? 365 : 0;
    return choice;
}

std::string NameOf(const RunChoice& choice)
{
    constexpr const char* actions[] = {"delete", "expire", "copy", "move", "flag", "delete for good"};
    std::string name = actions[choice.action];
    name += " by subject, text, address";
    name += choice.senderName ? ", sender" : "";
    name += choice.recipientName ? ", recipients" : "";
    name += choice.internetHeader ? ", headers" : "";
    name += choice.attachments ? ", attachments" : "";
    name += choice.sendTime ? ", time" : "";
    return name + (choice.days ? ", " + std::to_string(choice.days) + " days" : "");
}
