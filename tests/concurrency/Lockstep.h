#pragma once

#include <condition_variable>
#include <mutex>

// Threads that go on together: each waits at its step until all the others have come to one too or have left.
class Lockstep
{
public:
    explicit Lockstep(int threads) : walking(threads) {}

    void Step();    // throws std::runtime_error when the others do not come within two minutes
    void Leave();

private:
    bool AllWait() const { return waiting == walking; }
    void GoOn();

    std::mutex mutex;    // guards what follows
    std::condition_variable gone;
    int walking;
    int waiting = 0;
    unsigned steps = 0;
};
