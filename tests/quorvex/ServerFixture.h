#pragma once

#include "contracts/DispatchIds.h"
#include "contracts/LocalStoreSchema.h"
#include "tests/quorvex/Automation.h"

#include <windows.h>

#include <mapidefs.h>
#include <mapitags.h>
#include <objbase.h>

#include <sqlite3.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using automation::ComPtr;

struct StoreFileCloser
{
    void operator()(sqlite3* database) const noexcept { sqlite3_close(database); }
};
// A store file in the temporary folder, there while it lives.
class StoreFile
{
    using Database = std::unique_ptr<sqlite3, StoreFileCloser>;

public:
    StoreFile()
    {
        wchar_t folder[MAX_PATH], file[MAX_PATH];
        GetTempPathW(MAX_PATH, folder);
        GetTempFileNameW(folder, L"qvx", 0, file);
        path = file;
        DeleteFileW(file);    // the store is made new
        Run(localStoreSql);
    }
    ~StoreFile()
    {
        for (const wchar_t* suffix : {L"", L"-wal", L"-shm", L"-journal"})
            DeleteFileW((path + suffix).c_str());
    }
    StoreFile(const StoreFile&) = delete;
    StoreFile& operator=(const StoreFile&) = delete;

    const std::wstring& Path() const { return path; }

    void Run(const std::string& sql)
    {
        const Database database = Open();
        char* error = nullptr;
        EXPECT_EQ(sqlite3_exec(database.get(), sql.c_str(), nullptr, nullptr, &error), SQLITE_OK)
            << (error ? error : "");
        sqlite3_free(error);
    }

    // The first value of the first row.
    std::string Ask(const std::string& sql)
    {
        const Database database = Open();
        std::string answer = "(no row)";
        const auto take = [](void* text, int, char** values, char**) -> int
        {
            *static_cast<std::string*>(text) = values[0] ? values[0] : "(null)";
            return 1;
        };
        sqlite3_exec(database.get(), sql.c_str(), take, &answer, nullptr);
        return answer;
    }

    void AddMessage(int id, int folder, const std::string& subject, const std::string& body)
    {
        const std::string number = std::to_string(id);
        Run("INSERT INTO message (id, folder_id, message_class, subject, sender_name, sender_address, "
            "display_to, "
            "display_cc, display_bcc, client_submit_time, delivery_time) VALUES (" +
            number + ", " + std::to_string(folder) + ", 'IPM.Note', '" + subject +
            "', 'Ann', 'ann@example.org', 'Bob', '', '', 133500000000000000, 133500000600000000);"
            "INSERT INTO message_text (message_id, headers, body) VALUES (" +
            number + ", 'Subject: " + subject + "', '" + body +
            "'); INSERT INTO recipient (message_id, row_id, type, name) VALUES (" + number +
            ", 0, 1, 'Bob'); INSERT INTO attachment (message_id, number, method, file_name, display_name, "
            "size) "
            "VALUES (" +
            number + ", 0, 1, 'map.png', 'map.png', 3);");
    }

private:
    Database Open()
    {
        const int size = WideCharToMultiByte(CP_UTF8, 0, path.c_str(), -1, nullptr, 0, nullptr, nullptr);
        std::string name(static_cast<std::size_t>(size), '\0');
        WideCharToMultiByte(CP_UTF8, 0, path.c_str(), -1, name.data(), size, nullptr, nullptr);
        sqlite3* database = nullptr;
        EXPECT_EQ(sqlite3_open(name.c_str(), &database), SQLITE_OK);
        sqlite3_busy_timeout(database, 5000);
        return Database(database);
    }

    std::wstring path;
};

inline constexpr int inboxId = 3, deletedItemsId = 6;    // of the folders that every store starts with

// The registered server with a session over such a file.
class Server : public testing::Test
{
protected:
    Server()
    {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        SetEnvironmentVariableW(L"LOCALMAPI_STORE", store.Path().c_str());
    }
    ~Server() override
    {
        session.Reset();
        CoUninitialize();
        SetEnvironmentVariableW(L"LOCALMAPI_STORE", nullptr);
    }

    void LogOn()
    {
        CLSID id{};
        ASSERT_EQ(CLSIDFromProgID(L"QuorvexDll.RDOSession", &id), S_OK);
        ASSERT_EQ(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                   reinterpret_cast<void**>(session.GetAddressOf())),
                  S_OK);
        automation::Call(session.Get(), dispid::session::logOn,
                         {L"", 0L, automation::Missing(), automation::Missing(), 0L, automation::Missing()});
    }

    ComPtr<IDispatch> TopFolders()
    {
        const auto stores = automation::ObjectOf(automation::Get(session.Get(), dispid::session::stores));
        const auto opened =
            automation::ObjectOf(automation::Get(stores.Get(), dispid::storeCollection::defaultStore));
        const auto top = automation::ObjectOf(automation::Get(opened.Get(), dispid::store::rootFolder));
        return automation::ObjectOf(automation::Get(top.Get(), dispid::folder::folders));
    }

    ComPtr<IDispatch> Folder(const std::wstring& name)
    {
        const auto folders = TopFolders();
        const long count =
            automation::LongOf(automation::Get(folders.Get(), dispid::folderCollection::count));
        for (long i = 1; i <= count; ++i)
        {
            const auto folder =
                automation::ObjectOf(automation::Call(folders.Get(), dispid::folderCollection::item, {i}));
            if (automation::TextOf(automation::Get(folder.Get(), dispid::folder::name)) == name)
                return folder;
        }
        ADD_FAILURE() << "no such folder";
        return nullptr;
    }

    ComPtr<IDispatch> Items(const std::wstring& folder)
    {
        return automation::ObjectOf(automation::Get(Folder(folder).Get(), dispid::folder::items));
    }
    ComPtr<IDispatch> Item(const std::wstring& folder, long place)
    {
        return automation::ObjectOf(
            automation::Call(Items(folder).Get(), dispid::itemCollection::item, {place}));
    }

    StoreFile store;
    ComPtr<IDispatch> session;
};
