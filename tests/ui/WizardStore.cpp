#include "tests/ui/WizardStore.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace
{
constexpr std::int64_t deletedItems = 6;

// The columns of a row that a query has put into one text.
std::vector<std::string> Fields(const std::string& line)
{
    std::istringstream stream(line);
    std::vector<std::string> fields;
    for (std::string field; std::getline(stream, field, '|');)
        fields.push_back(field);
    return fields;
}

// A message is known by its Message-ID wherever it goes.
constexpr char messageLines[] =
    "SELECT m.id || '|' || p.value || '|' || m.folder_id || '|' || (coalesce(m.flag_status, 0) = 2) || '|' "
    "|| "
    "EXISTS (SELECT 1 FROM message_property e WHERE e.message_id = m.id AND e.tag = 0x00150040) "
    "FROM message m JOIN message_property p ON p.message_id = m.id AND p.tag = 0x1035001F ORDER BY m.id";

std::string Line(const std::string& name, std::int64_t folder, bool flagged, bool expired)
{
    return name + " in " + std::to_string(folder) + (flagged ? " flagged" : "") + (expired ? " expired" : "");
}

// A few hundred messages of seventeen kinds, in folders 3 and 5.
constexpr char madeUpMail[] = R"(
WITH RECURSIVE number(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM number WHERE n < 160)
INSERT INTO message (folder_id, message_class, subject, sender_name, sender_address_type, sender_address,
                     display_to, display_cc, display_bcc, client_submit_time, delivery_time)
SELECT CASE n % 2 WHEN 0 THEN 3 ELSE 5 END, 'IPM.Note',
       CASE n % 17 WHEN 0 THEN '' WHEN 1 THEN 'Minutes of meeting ' || n ELSE 'Re: plans of week ' || (n % 60) END,
       'Writer ' || (n % 9), 'SMTP', 'writer' || (n % 9) || '@example.org', 'Reader ' || (n % 4), '', '',
       133000000000000000 + n * 36000000000, NULL
FROM number;
INSERT INTO message_text (message_id, headers, body)
SELECT id, 'Received: by example.org; number ' || id || char(13, 10), 'This is text ' || (id % 70) || '.' FROM message;
INSERT INTO recipient (message_id, row_id, type, name, address_type, address)
SELECT id, 0, 1, display_to, 'SMTP', 'reader@example.org' FROM message;
INSERT INTO attachment (message_id, number, method, file_name, display_name, size)
SELECT id, 0, 1, 'plan' || (id % 3) || '.txt', 'plan' || (id % 3) || '.txt', 0 FROM message WHERE id % 5 = 0;
INSERT INTO attachment_data (message_id, number, data) SELECT message_id, number, x'' FROM attachment;
)";

// Of real mail, some from each folder.
constexpr char fewOfMany[] = R"(
DELETE FROM message WHERE id IN
    (SELECT id FROM (SELECT id, row_number() OVER (PARTITION BY folder_id ORDER BY id) AS place FROM message)
     WHERE place > 50);
)";

// Twenty folders, some deep; the mail spread over those that hold mail. Every fourth message gets a copy that
// differs from it in nothing, or in what one of the criteria looks at.
constexpr char spreadAndPlant[] = R"(
INSERT INTO folder (id, parent_id, name, container_class) VALUES
    (101, 2, 'Projects', 'IPF.Note'), (102, 101, 'Alpha', 'IPF.Note'), (103, 102, 'Gamma', 'IPF.Note'),
    (104, 101, 'Beta', NULL), (105, 2, 'Archive', 'IPF.Note'), (106, 105, 'Last year', 'IPF.Note'),
    (107, 3, 'Lists', 'IPF.Note'), (108, 3, 'Meetings', 'IPF.Appointment'), (109, 108, 'Notes of meetings', 'IPF.Note'),
    (110, 2, 'Kept', 'IPF.Note');
CREATE TEMP TABLE place AS
    SELECT row_number() OVER (ORDER BY id) - 1 AS number, id FROM folder
    WHERE id > 2 AND coalesce(container_class, 'IPF.Note') = 'IPF.Note' AND name <> 'Kept';
UPDATE message SET folder_id =
    (SELECT place.id FROM place WHERE number = message.id * 7 % (SELECT count(*) FROM place));

CREATE TEMP TABLE planted AS SELECT id AS origin, id + 100000 AS id FROM message WHERE id % 4 = 0;
INSERT INTO message (id, folder_id, message_class, subject, sender_name, sender_address_type, sender_address,
                     display_to, display_cc, display_bcc, client_submit_time, delivery_time, message_flags, message_size)
SELECT planted.id, (SELECT place.id FROM place WHERE number = m.id * 3 % (SELECT count(*) FROM place)),
       message_class, subject, CASE m.id % 7 WHEN 1 THEN 'Another name' ELSE sender_name END, sender_address_type,
       sender_address, CASE m.id % 7 WHEN 2 THEN 'Another reader' ELSE display_to END, display_cc, display_bcc,
       CASE m.id % 7 WHEN 3 THEN client_submit_time + 36000000000 ELSE client_submit_time END, delivery_time,
       message_flags, message_size
FROM message m JOIN planted ON planted.origin = m.id;
INSERT INTO message_text (message_id, headers, body)
SELECT planted.id, CASE planted.origin % 7 WHEN 4 THEN 'Received: another way' ELSE headers END, body
FROM message_text JOIN planted ON origin = message_id;
INSERT INTO message_property (message_id, tag, value)
SELECT planted.id, tag, value FROM message_property JOIN planted ON origin = message_id;
INSERT INTO recipient (message_id, row_id, type, name, address_type, address)
SELECT planted.id, row_id, type, CASE origin % 7 WHEN 2 THEN 'Another reader' ELSE name END, address_type, address
FROM recipient JOIN planted ON origin = message_id;
INSERT INTO attachment (message_id, number, method, file_name, display_name, mime_tag, content_id, size)
SELECT planted.id, number, method, CASE origin % 7 WHEN 5 THEN 'another.txt' ELSE file_name END,
       CASE origin % 7 WHEN 5 THEN 'another.txt' ELSE display_name END, mime_tag, content_id, size
FROM attachment JOIN planted ON origin = message_id;
INSERT INTO attachment_data (message_id, number, data)
SELECT planted.id, number, data FROM attachment_data JOIN planted ON origin = message_id;

INSERT OR REPLACE INTO message_property (message_id, tag, value)
SELECT id, 0x1035001F, '<' || id || '@walk>' FROM message;
DELETE FROM message_property WHERE tag = 0x00150040;
UPDATE message SET flag_status = NULL;
)";

// Well inside the spans that the wizard offers, and outside all.
std::string DeliverLately()
{
    return "UPDATE message SET delivery_time = (CAST(strftime('%s', 'now') AS INTEGER) + 11644473600 - 3600 "
           "* "
           "CASE id % 5 WHEN 0 THEN 2 WHEN 1 THEN 84 WHEN 2 THEN 900 WHEN 3 THEN 3600 ELSE 12000 END) * "
           "10000000;";
}

// Both UTF-8; what stands at `to` is replaced.
void Copy(const std::string& from, const std::string& to)
{
    if (!::CopyFileW(std::filesystem::path(from).c_str(), std::filesystem::path(to).c_str(), FALSE))
        throw std::runtime_error("cannot copy " + from);
}

// The mail that every walk begins with; made once.
const TemporaryStore& Model()
{
    static const TemporaryStore model;
    static const bool filled = []
    {
        const char* real = std::getenv("TQODR_REAL_MAIL");
        const bool isReal = real && std::filesystem::exists(real);
        if (isReal)
            Copy(real, model.Path());
        std::printf("walks over %s mail\n", isReal ? "real" : "made-up");
        model.Run(std::string("BEGIN;") + (isReal ? fewOfMany : madeUpMail) + spreadAndPlant +
                  DeliverLately() + "COMMIT; VACUUM;");
        return true;
    }();
    return filled ? model : throw std::logic_error("no mail");
}

std::vector<std::int64_t> ReadIds(const TemporaryStore& store, const std::string& sql)
{
    std::vector<std::int64_t> ids;
    for (const std::string& line : ReadLines(store, sql))
        ids.push_back(std::stoll(line));
    return ids;
}

std::string FolderTree(const std::string& condition)
{
    return "WITH RECURSIVE tree(id, path) AS (SELECT 2, '' UNION ALL SELECT f.id, path || printf('/%09d', "
           "f.id) "
           "FROM folder f JOIN tree ON f.parent_id = tree.id) "
           "SELECT tree.id FROM tree JOIN folder ON folder.id = tree.id WHERE " +
           condition + " ORDER BY path";
}

constexpr char holdsMail[] = "coalesce(container_class, 'IPF.Note') = 'IPF.Note'";

std::string Names(int type)
{
    return "(SELECT upper(group_concat(name, '; ')) FROM (SELECT name FROM recipient WHERE message_id = k.id "
           "AND "
           "type = " +
           std::to_string(type) + " ORDER BY row_id))";
}

// Whether message o agrees with message k, which is kept: what k lacks is not asked of o.
std::string Agreement(const RunChoice& choice)
{
    std::string sql = "k.subject = o.subject AND (k.body = '' OR k.body = o.body) AND "
                      "(k.sender_address = '' OR k.sender_address = o.sender_address)";
    if (choice.senderName)
        sql += " AND k.sender_name = o.sender_name";
    if (choice.recipientName)
        sql += " AND coalesce(" + Names(1) + " = upper(o.display_to), 1) AND coalesce(" + Names(2) +
               " = upper(o.display_cc), 1) AND coalesce(" + Names(3) + " = upper(o.display_bcc), 1)";
    if (choice.internetHeader)
        sql += " AND (k.headers = '' OR k.headers = o.headers)";
    if (choice.attachments)
        sql += " AND NOT EXISTS (SELECT 1 FROM attachment w WHERE w.message_id = k.id AND NOT EXISTS (SELECT "
               "1 FROM "
               "attachment h WHERE h.message_id = o.id AND upper(h.display_name) = upper(w.display_name)))";
    if (choice.sendTime)
        sql += " AND (k.client_submit_time IS NULL OR o.client_submit_time / 10000000 BETWEEN "
               "k.client_submit_time / 10000000 - 5 AND k.client_submit_time / 10000000 + 4)";
    if (choice.days != 0)
        sql += " AND o.delivery_time >= (CAST(strftime('%s', 'now') AS INTEGER) + 11644473600 - 86400 * " +
               std::to_string(choice.days) + ") * 10000000";
    return sql;
}

// Pairs of messages in the order in which a run comes upon them: the kept one, and one that agrees with it
// in its own folder or a later one.
std::string Pairs(const RunChoice& choice, const std::vector<std::int64_t>& mailFolders)
{
    std::string order;
    for (const std::int64_t folder : choice.folders)
        if (std::ranges::find(mailFolders, folder) != mailFolders.end())
            order += (order.empty() ? "(" : "), (") + std::to_string(folder);
    if (order.empty())
        return "SELECT 1 WHERE 0";
    return "WITH place(folder) AS (VALUES " + order +
           ")), number(folder, place) AS (SELECT folder, row_number() OVER () FROM place), item AS "
           "MATERIALIZED (SELECT m.id, place, "
           "subject, coalesce(sender_address, '') AS sender_address, coalesce(sender_name, '') AS "
           "sender_name, "
           "display_to, display_cc, display_bcc, client_submit_time, delivery_time, coalesce(headers, '') AS "
           "headers, "
           "coalesce(body, '') AS body FROM message m JOIN number ON number.folder = m.folder_id "
           "LEFT JOIN message_text t ON t.message_id = m.id) "
           "SELECT k.id || '|' || o.id FROM item k JOIN item o ON o.place >= k.place AND " +
           Agreement(choice) + " ORDER BY k.place, k.id, o.place, o.id";
}

std::vector<std::int64_t> FindDuplicates(const std::vector<std::string>& pairs)
{
    std::vector<std::int64_t> found;
    std::set<std::int64_t> known;
    std::int64_t kept = 0;
    for (const std::string& pair : pairs)
    {
        const std::vector<std::string> ids = Fields(pair);
        const std::int64_t id = std::stoll(ids.at(0));
        const bool firstOfAll = id != kept;
        kept = id;
        // The first that agrees is taken to be the kept message itself.
        if (firstOfAll || known.contains(id))
            continue;
        found.push_back(std::stoll(ids.at(1)));
        known.insert(found.back());
    }
    return found;
}
}    // namespace

WizardStore::WizardStore() : WizardStore(Model()) {}

WizardStore::WizardStore(const TemporaryStore& model)
{
    Copy(model.Path(), file.Path());
}

bool WizardStore::IsWhole() const
{
    return ReadLines(file, "PRAGMA integrity_check") == std::vector<std::string>{"ok"} &&
           ReadLines(file, "PRAGMA foreign_key_check").empty();
}

std::vector<std::int64_t> WizardStore::Folders() const
{
    return ReadIds(file, FolderTree("1"));
}

std::vector<std::int64_t> WizardStore::MailFolders() const
{
    return ReadIds(file, FolderTree(holdsMail));
}

std::int64_t WizardStore::IdOf(const std::string& name) const
{
    return file.ReadInteger("SELECT id FROM folder WHERE name = '" + name + "'");
}

std::size_t WizardStore::PlaceOf(const std::string& name) const
{
    const std::vector<std::int64_t> folders = Folders();
    return static_cast<std::size_t>(std::ranges::find(folders, IdOf(name)) - folders.begin());
}

std::vector<std::string> WizardStore::Messages() const
{
    std::vector<std::string> lines;
    for (const std::string& row : ReadLines(file, messageLines))
    {
        const std::vector<std::string> fields = Fields(row);
        lines.push_back(
            Line(fields.at(1), std::stoll(fields.at(2)), fields.at(3) == "1", fields.at(4) == "1"));
    }
    std::ranges::sort(lines);
    return lines;
}

std::vector<std::string> WizardStore::MessagesIn(const std::string& folder) const
{
    return ReadLines(file, "SELECT value FROM message_property JOIN message ON id = message_id WHERE tag = "
                           "0x1035001F AND folder_id = " +
                               std::to_string(IdOf(folder)) + " ORDER BY value");
}

ExpectedRun::ExpectedRun(const WizardStore& store, const RunChoice& choice)
    : choice(choice),
      duplicates(FindDuplicates(ReadLines(store.File(), Pairs(choice, store.MailFolders()))))
{
    for (const std::string& row : ReadLines(store.File(), messageLines))
    {
        const std::vector<std::string> fields = Fields(row);
        before.push_back({std::stoll(fields.at(0)), fields.at(1), std::stoll(fields.at(2)),
                          fields.at(3) == "1", fields.at(4) == "1"});
    }
}

std::vector<std::string> ExpectedRun::MessagesAfter(std::size_t treated) const
{
    Messages messages = before;
    for (std::size_t i = 0; i < treated; ++i)
        Treat(messages, duplicates[i]);
    std::vector<std::string> lines;
    for (const Message& message : messages)
        lines.push_back(Line(message.name, message.folder, message.flagged, message.expired));
    std::ranges::sort(lines);
    return lines;
}

void ExpectedRun::Treat(Messages& messages, std::int64_t duplicate) const
{
    const auto found = std::ranges::find(messages, duplicate, &Message::id);
    if (found == messages.end())
        return;
    switch (choice.action)
    {
    case 0:
        found->folder = deletedItems;
        break;
    case 1:
        found->expired = true;
        break;
    case 2:
        messages.push_back({0, found->name, choice.destination, found->flagged, found->expired});
        break;
    case 3:
        found->folder = choice.destination;
        break;
    case 4:
        found->flagged = true;
        break;
    default:
        messages.erase(found);
    }
}
