#pragma once

#include "tests/quorvex/FakeMapi.h"

#include <windows.h>

#include <mapidefs.h>
#include <mapix.h>

#include <atomic>
#include <memory>
#include <string>
#include <vector>

// A profile with one message store and a tree of folders, behind IMAPISession; and MAPI's own functions,
// which log on to it.
namespace fake
{
struct MailStore
{
    Bytes entryId{0, 0, 0, 0, 's'};
    Properties properties;
    PropHabits habits;
    std::vector<std::shared_ptr<Folder>> folders;    // the first one is the root
    bool keepsIds = true;                            // a moved message keeps its entry id
    HRESULT copyMessages = S_OK;                     // what CopyMessages returns, doing nothing, unless S_OK
    std::size_t saves = 0;
    std::size_t foldersOpened = 0;
    std::vector<ULONG> openFlags;    // of the messages opened, in order
    std::shared_ptr<Counters> counters = std::make_shared<Counters>();
};

// Below a folder of the store, or with null as its root.
std::shared_ptr<Folder> AddFolder(MailStore& store, const Folder* parent, const std::wstring& name,
                                  const std::wstring& containerClass = {});

// A message that knows its folder, entry id and search key.
std::shared_ptr<Message> AddStoredMessage(Folder& folder, Properties properties);

// Stands in the place of mapi32.dll while it lives; each LogonEx gives a session on the store.
class FakeMapiSession
{
public:
    explicit FakeMapiSession(std::shared_ptr<MailStore> store);
    ~FakeMapiSession();
    FakeMapiSession(const FakeMapiSession&) = delete;
    FakeMapiSession& operator=(const FakeMapiSession&) = delete;

    static inline HRESULT logonResult = S_OK;
    static inline HRESULT initializeResult = S_OK;
    static inline bool hasDefaultStore = true;
    static inline ULONG logonFlags = 0;
    static inline std::wstring logonProfile;
    static inline std::atomic<int> initialized = 0;    // MAPIInitialize less MAPIUninitialize
    static inline std::atomic<int> sessions = 0;       // logged on and not off
    static inline ULONG initializeFlags = 0;
};
}    // namespace fake
