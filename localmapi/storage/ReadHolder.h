#pragma once

#include "localmapi/storage/Database.h"

#include <condition_variable>
#include <mutex>
#include <thread>

// Keeps a database's shared read transaction while it is in use, and ends it soon after: a reader that stays
// would keep the log of whoever else writes from starting over. That is done on a thread of its own, which
// sleeps while there is nothing to end.
class ReadHolder
{
public:
    // `mutex` guards the database, and this object too.
    ReadHolder(Database& database, std::mutex& mutex);
    ~ReadHolder();
    ReadHolder(const ReadHolder&) = delete;
    ReadHolder& operator=(const ReadHolder&) = delete;

    // To be called, with the mutex held, before statements that read. Throws StoreError.
    void Hold();

    // Ends the thread; without the mutex held. Nothing is held for longer than a statement afterwards.
    void Stop() noexcept;

private:
    bool HasThread() noexcept;
    void EndWhenIdle();

    Database& database;
    std::mutex& mutex;
    std::condition_variable wake;
    std::thread thread;
    bool isHeld = false;
    bool wasUsed = false;    // since the thread looked last
    bool stopping = false;
};
