#include "fuzz/SmallStore.h"

#include "contracts/LocalStoreSchema.h"
#include "fuzz/ScratchFolder.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace
{
// Inbox 3 and a folder of the user's, 12, with one below it, hold messages; named property 0x8000 is used by
// one.
constexpr const char* content = R"sql(
INSERT INTO folder (id, parent_id, name, container_class, creation_time)
VALUES (12, 2, 'Archive', 'IPF.Note', 133500000000000000), (13, 12, 'Old', NULL, NULL);
INSERT INTO message (id, folder_id, message_class, subject, sender_name, sender_address_type, sender_address,
                     display_to, display_cc, display_bcc, client_submit_time, delivery_time, message_flags,
                     message_size, flag_status, importance)
VALUES (1, 3, 'IPM.Note', 'Minutes', 'Ann', 'SMTP', 'ann@example.org', 'Bob', '', '', 133500000000000000,
        133500000600000000, 17, 500, NULL, 1),
       (2, 3, 'IPM.Note', 'Minutes', 'Ann', 'SMTP', 'ann@example.org', 'Bob', '', '', 133500000000000000,
        133500000600000000, 0, 500, 2, 1),
       (9, 3, 'IPM.Note', '', NULL, NULL, NULL, '', '', '', NULL, NULL, 8, 0, NULL, NULL),
       (100, 13, 'REPORT.IPM.Note.NDR', 'Undelivered', NULL, NULL, NULL, '', 'Cy', '', NULL, 5, 1, 1, 1, 2);
INSERT INTO message_text VALUES (1, 'Subject: Minutes', 'Body'), (2, NULL, 'Body'), (100, 'X: y', NULL);
INSERT INTO message_property VALUES (1, 0x1035001F, '<1@example.org>'), (1, 0x80000003, 7), (2, 0x10130102, x'3C703E'),
                                    (2, 0x80000005, 1.5);
INSERT INTO recipient VALUES (1, 0, 1, 'Bob', 'SMTP', 'bob@example.org'), (2, 0, 1, 'Bob', NULL, NULL),
                             (100, 0, 2, 'Cy', NULL, NULL);
INSERT INTO attachment VALUES (1, 0, 1, 'map.png', 'map.png', 'image/png', NULL, 3), (1, 1, 5, NULL, 'Fwd', NULL, NULL, 2);
INSERT INTO attachment_data VALUES (1, 0, x'010203'), (1, 1, x'4142');
INSERT INTO named_property VALUES (0x8000, x'08200600000000000000000000000046', 34051, NULL),
                                  (0x8001, x'08200600000000000000000000000046', NULL, 'Keywords');
)sql";

void Run(sqlite3* connection, const std::string& sql)
{
    if (sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(connection));
}
}    // namespace

SqliteConnection ConnectDirectly(const std::filesystem::path& path)
{
    sqlite3* opened = nullptr;
    const int code = sqlite3_open(path.c_str(), &opened);
    SqliteConnection connection(opened);
    if (code != SQLITE_OK)
        throw std::runtime_error("cannot open " + path.string());
    return connection;
}

SmallStore::SmallStore()
{
    const ScratchFolder folder;
    const std::filesystem::path path = folder.Path() / "small.db";
    {
        const SqliteConnection connection = ConnectDirectly(path);
        Run(connection.get(), "PRAGMA page_size = 512;" + std::string(localStoreSql) + content);
    }
    std::ifstream file(path, std::ios::binary);
    bytes.assign(std::istreambuf_iterator<char>(file), {});
}

void SmallStore::Put(const std::filesystem::path& path, const std::string& bytes)
{
    for (const char* beside : {"-wal", "-shm", "-journal"})
        std::filesystem::remove(path.string() + beside);
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}
