// duplicate_count STORE [--criteria LIST] [--exclude FOLDER]...
// duplicate_count STORE --list FOLDER
// duplicate_count STORE --whole
//
// Counts the duplicates in a store file by plain loops over its tables, without any code of the product: the
// second opinion that end-to-end tests compare a scan with. Prints "total N", the number of matches that a
// scan counts, then the ids of the messages that are duplicates, one a line, ascending.

#include <sqlite3.h>

#include <clocale>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cwctype>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace
{
struct Message
{
    std::int64_t id = 0;
    std::string subject, body, senderAddress, senderName, headers, displayTo, displayCc, displayBcc;
    std::int64_t submitTime = 0;    // FILETIME, 0 when the mail has none
    std::map<int, std::string> joinedNames;
    std::vector<std::string> attachments;
};

struct Criteria
{
    bool senderName = false, recipientName = false, internetHeader = false, attachments = false,
         sendTime = false;
};

class Database
{
public:
    explicit Database(const char* path)
    {
        if (sqlite3_open_v2(path, &handle, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(handle));
        // A program that has just ended or was killed holds its locks until Wine has cleaned up behind it.
        sqlite3_busy_timeout(handle, 20'000);
    }
    Database(const Database&) = delete;
    ~Database() { sqlite3_close(handle); }

    std::vector<std::vector<std::string>> Rows(const std::string& sql) const
    {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(handle, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(handle));
        std::vector<std::vector<std::string>> rows;
        while (sqlite3_step(statement) == SQLITE_ROW)
        {
            std::vector<std::string>& row = rows.emplace_back();
            for (int column = 0; column < sqlite3_column_count(statement); ++column)
            {
                const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
                row.emplace_back(text ? std::string(text, sqlite3_column_bytes(statement, column)) : "");
            }
        }
        sqlite3_finalize(statement);
        return rows;
    }

private:
    sqlite3* handle = nullptr;
};

std::wstring Folded(const std::string& text)
{
    std::wstring wide(text.size() + 1, L'\0');
    const std::size_t length = std::mbstowcs(wide.data(), text.c_str(), wide.size());
    if (length == static_cast<std::size_t>(-1))
        throw std::runtime_error("a text of the store is no UTF-8");
    wide.resize(length);
    for (wchar_t& letter : wide)
        letter = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(letter)));
    return wide;
}

std::vector<Message> ReadFolder(const Database& database, const std::string& folderId)
{
    std::vector<Message> messages;
    for (const auto& row :
         database.Rows("SELECT id, subject, coalesce(t.body, ''), coalesce(sender_address, ''), "
                       "coalesce(sender_name, ''), coalesce(t.headers, ''), display_to, display_cc, "
                       "display_bcc, coalesce(client_submit_time, 0) FROM message "
                       "LEFT JOIN message_text t ON t.message_id = id WHERE folder_id = " +
                       folderId + " ORDER BY id"))
    {
        Message message;
        message.id = std::stoll(row[0]);
        message.subject = row[1];
        message.body = row[2];
        message.senderAddress = row[3];
        message.senderName = row[4];
        message.headers = row[5];
        message.displayTo = row[6];
        message.displayCc = row[7];
        message.displayBcc = row[8];
        message.submitTime = std::stoll(row[9]);
        for (const auto& recipient : database.Rows(
                 "SELECT type, name FROM recipient WHERE message_id = " + row[0] + " ORDER BY row_id"))
        {
            std::string& names = message.joinedNames[std::stoi(recipient[0])];
            names += (names.empty() ? "" : "; ") + recipient[1];
        }
        for (const auto& attachment :
             database.Rows("SELECT coalesce(display_name, '') FROM attachment WHERE message_id = " + row[0] +
                           " ORDER BY number"))
            message.attachments.push_back(attachment[0]);
        messages.push_back(std::move(message));
    }
    return messages;
}

// The names of mail folders below `parentId`, each with its id, parents before children.
void WalkFolders(const Database& database, const std::string& parentId, const std::set<std::string>& excluded,
                 std::vector<std::string>& folderIds)
{
    for (const auto& row : database.Rows("SELECT id, name, coalesce(container_class, 'IPF.Note') FROM folder "
                                         "WHERE parent_id = " +
                                         parentId + " ORDER BY id"))
    {
        if (excluded.contains(row[1]))
            continue;
        if (row[2] == "IPF.Note")
            folderIds.push_back(row[0]);
        WalkFolders(database, row[0], excluded, folderIds);
    }
}

bool NamesAgree(const Message& kept, int type, const std::string& displayed)
{
    const auto names = kept.joinedNames.find(type);
    return names == kept.joinedNames.end() || Folded(names->second) == Folded(displayed);
}

bool AttachmentsAgree(const Message& kept, const Message& other)
{
    for (const std::string& wanted : kept.attachments)
    {
        bool found = false;
        for (const std::string& name : other.attachments)
            found = found || Folded(name) == Folded(wanted);
        if (!found)
            return false;
    }
    return true;
}

bool SentTogether(const Message& kept, const Message& other)
{
    constexpr std::int64_t second = 10'000'000;
    if (kept.submitTime == 0)
        return true;
    const std::int64_t whole = kept.submitTime / second * second;
    return other.submitTime >= whole - 5 * second && other.submitTime < whole + 5 * second;
}

// Whether a scan that keeps `kept` takes `other` for its duplicate. What `kept` lacks is not asked of
// `other`.
bool Matches(const Message& kept, const Message& other, const Criteria& criteria)
{
    return kept.subject == other.subject && (kept.body.empty() || kept.body == other.body) &&
           (kept.senderAddress.empty() || kept.senderAddress == other.senderAddress) &&
           (!criteria.senderName || kept.senderName == other.senderName) &&
           (!criteria.recipientName ||
            (NamesAgree(kept, 1, other.displayTo) && NamesAgree(kept, 2, other.displayCc) &&
             NamesAgree(kept, 3, other.displayBcc))) &&
           (!criteria.internetHeader || kept.headers.empty() || kept.headers == other.headers) &&
           (!criteria.attachments || AttachmentsAgree(kept, other)) &&
           (!criteria.sendTime || SentTogether(kept, other));
}

void Count(const Database& database, const Criteria& criteria, const std::set<std::string>& excluded)
{
    std::vector<std::string> folderIds{"2"};    // the visible top folder comes first
    WalkFolders(database, "2", excluded, folderIds);
    std::vector<std::vector<Message>> folders;
    for (const std::string& id : folderIds)
        folders.push_back(ReadFolder(database, id));

    std::set<std::int64_t> duplicates;
    int total = 0;
    for (std::size_t own = 0; own < folders.size(); ++own)
    {
        for (const Message& kept : folders[own])
        {
            if (duplicates.contains(kept.id))
                continue;
            bool passedOver = false;
            for (std::size_t folder = own; folder < folders.size(); ++folder)
            {
                for (const Message& other : folders[folder])
                {
                    if (!Matches(kept, other, criteria))
                        continue;
                    // The first match of all is taken to be the kept message itself.
                    if (!std::exchange(passedOver, true))
                        continue;
                    duplicates.insert(other.id);
                    ++total;
                }
            }
        }
    }
    std::printf("total %d\n", total);
    for (const std::int64_t id : duplicates)
        std::printf("%lld\n", static_cast<long long>(id));
}

void List(const Database& database, const std::string& folderName)
{
    for (const auto& row : database.Rows("SELECT m.id FROM message m JOIN folder f ON f.id = m.folder_id "
                                         "WHERE f.name = '" +
                                         folderName + "' ORDER BY m.id"))
        std::printf("%s\n", row[0].c_str());
}

void CountWhole(const Database& database)
{
    const std::string verdict = database.Rows("PRAGMA integrity_check").at(0).at(0);
    if (verdict != "ok" || !database.Rows("PRAGMA foreign_key_check").empty())
        throw std::runtime_error("the store is damaged: " + verdict);
    std::printf("%s whole messages\n",
                database
                    .Rows("SELECT count(*) FROM message m JOIN folder f ON f.id = m.folder_id "
                          "JOIN message_text t ON t.message_id = m.id")
                    .at(0)
                    .at(0)
                    .c_str());
}

Criteria ParseCriteria(const std::string& list)
{
    Criteria criteria;
    criteria.senderName = list.find("sender-name") != std::string::npos;
    criteria.recipientName = list.find("recipient-name") != std::string::npos;
    criteria.internetHeader = list.find("internet-header") != std::string::npos;
    criteria.attachments = list.find("attachments") != std::string::npos;
    criteria.sendTime = list.find("send-time") != std::string::npos;
    return criteria;
}
}    // namespace

int main(int argc, char** argv)
{
    std::setlocale(LC_ALL, "C.UTF-8");
    try
    {
        if (argc == 3 && std::string(argv[2]) == "--whole")
        {
            CountWhole(Database(argv[1]));
            return 0;
        }
        if (argc < 2 || argc % 2 != 0)
            throw std::runtime_error("usage: duplicate_count STORE [--criteria LIST] [--exclude FOLDER]...");
        const Database database(argv[1]);
        if (argc == 4 && std::string(argv[2]) == "--list")
        {
            List(database, argv[3]);
            return 0;
        }
        Criteria criteria;
        std::set<std::string> excluded;
        for (int i = 2; i + 1 < argc; i += 2)
        {
            if (std::string(argv[i]) == "--criteria")
                criteria = ParseCriteria(argv[i + 1]);
            else
                excluded.insert(argv[i + 1]);
        }
        Count(database, criteria, excluded);
        return 0;
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "duplicate_count: %s\n", error.what());
        return 1;
    }
}
