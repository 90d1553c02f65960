#include "tests/concurrency/Lockstep.h"

#include <chrono>
#include <stdexcept>

void Lockstep::Step()
{
    std::unique_lock lock(mutex);
    ++waiting;
    if (AllWait())
        return GoOn();
    const unsigned before = steps;
    if (!gone.wait_for(lock, std::chrono::minutes(2), [&] { return steps != before; }))
        throw std::runtime_error("the other threads do not go on");
}

void Lockstep::Leave()
{
    const std::lock_guard lock(mutex);
    --walking;
    if (waiting > 0 && AllWait())
        GoOn();
}

void Lockstep::GoOn()
{
    waiting = 0;
    ++steps;
    gone.notify_all();
}
