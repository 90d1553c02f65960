#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

struct sqlite3;

// Folders that every store has, by their ids.
enum class StoreFolder : long long
{
    inbox = 3,
    sentItems = 5,
    deletedItems = 6
};

// One message as a test describes it. Times are FILETIME values.
struct Mail
{
    long long folder = static_cast<long long>(StoreFolder::inbox);
    std::string subject = {};
    std::string body = "The same text.";
    std::string senderAddress = "ann@example.org";
    std::string senderName = "Ann";
    std::string recipient = "Bob";
    std::string headers = {};
    std::string attachment = {};    // its file name; empty: none
    long long submitTime = 133'000'000'000'000'000;
    long long deliveryTime = 133'000'000'000'000'000;
};

// A local mail store in a file of its own, which goes with it.
class MailFile
{
public:
    MailFile();
    MailFile(const MailFile&) = delete;
    MailFile& operator=(const MailFile&) = delete;
    ~MailFile();

    const std::filesystem::path& GetPath() const { return path; }

    long long AddFolder(const std::string& name, long long parent = 2);
    void Add(const std::vector<Mail>& mails);    // in one transaction

    // Each message as "folder/subject", sorted.
    std::vector<std::string> ListMessages() const;

    // The rows' first columns as texts.
    std::vector<std::string> Query(const std::string& sql) const;

private:
    struct Closer
    {
        void operator()(sqlite3* database) const;
    };
    using Database = std::unique_ptr<sqlite3, Closer>;

    Database Open() const;

    std::filesystem::path path;
};
