#include "localmapi/storage/ReadHolder.h"

#include <chrono>
#include <system_error>

namespace
{
constexpr std::chrono::milliseconds idleTime(100);
}

ReadHolder::ReadHolder(Database& database, std::mutex& mutex) : database(database), mutex(mutex) {}

ReadHolder::~ReadHolder()
{
    Stop();
}

void ReadHolder::Hold()
{
    if (stopping || !HasThread() || !database.HoldRead())
        return;
    wasUsed = true;
    if (!isHeld)
        wake.notify_one();
    isHeld = true;
}

void ReadHolder::Stop() noexcept
{
    {
        const std::lock_guard lock(mutex);
        stopping = true;
    }
    wake.notify_one();
    if (thread.joinable())
        thread.join();
}

bool ReadHolder::HasThread() noexcept
{
    if (thread.joinable())
        return true;
    try
    {
        thread = std::thread([this] { EndWhenIdle(); });
        return true;
    }
    catch (const std::system_error&)
    {
        return false;    // without somebody to end it nothing is held
    }
}

void ReadHolder::EndWhenIdle()
{
    std::unique_lock lock(mutex);
    while (!stopping)
    {
        wake.wait(lock, [this] { return isHeld || stopping; });
        wasUsed = false;
        wake.wait_for(lock, idleTime, [this] { return stopping; });
        if (wasUsed)
            continue;
        database.EndRead();
        isHeld = false;
    }
}
