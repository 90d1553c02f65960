#include "tests/faults/Sweep.h"

#include "tests/faults/HeapBlocks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <stdexcept>
#include <vector>

namespace
{
// The part of a sweep that this process makes: of every `of` cases the one with this number, from 0.
struct Share
{
    std::size_t number = 0;
    std::size_t of = 1;
};

// From TQODR_SHARE, "2/3" for the second of three.
Share ShareFromEnvironment()
{
    const char* given = std::getenv("TQODR_SHARE");
    std::size_t number = 1;
    std::size_t of = 1;
    if (given && (std::sscanf(given, "%zu/%zu", &number, &of) != 2 || number < 1 || number > of))
        throw std::invalid_argument("TQODR_SHARE is no share as \"2/3\" is one");
    return {number - 1, of};
}

class SweepRunner
{
public:
    explicit SweepRunner(const Sweep& sweep) : sweep(sweep) {}

    void Run()
    {
        std::printf("seed %u%s\n", Seed(), IsLongForm() ? ", long form" : "");
        // What a process makes once and keeps is made before anything is measured.
        for (int action = 0; action < actionCount; ++action)
            sweep.count(SmallRun(action, Criteria::all));
        held = CountHeapBlocks();
        if (IsLongForm())
            GoThroughAll();
        else
            GoThroughEachCall();
        std::printf("%zu runs, %zu of them hit, in all by %ld faults, from one of %s 1 to %ld on\n", runs,
                    hit, faults, sweep.what, highest);
    }

private:
    void GoThroughEachCall()
    {
        LONG most = 0;
        for (int action = 0; action < actionCount; ++action)
            most = std::max(most, sweep.count(SmallRun(action, Criteria::all)));
        // Of many calls one in a few, others with another seed.
        constexpr LONG enough = 300;
        const LONG step = 1 + most / enough;
        for (LONG number = 1 + static_cast<LONG>(Seed()) % step; number <= most; number += step)
            Attempt(SmallRun(static_cast<int>(Turn(number, 0) % actionCount), Criteria::all), number,
                    Turn(number, 1) % sweep.kinds);
    }

    void GoThroughAll()
    {
        for (int action = 0; action < actionCount; ++action)
            for (int criteria = 0; criteria < criteriaCount; ++criteria)
            {
                const RunChoice choice = SmallRun(action, static_cast<Criteria>(criteria));
                const LONG count = sweep.count(choice);
                for (LONG number = 1; number <= count; ++number)
                    Attempt(choice, number, Turn(number, action * criteriaCount + criteria) % sweep.kinds);
            }
        const LONG count = sweep.count(SmallRun(actionMove, Criteria::all));
        for (std::size_t kind = 0; kind < sweep.kinds; ++kind)
            for (LONG number = 1; number <= count; ++number)
                Attempt(SmallRun(static_cast<int>(Turn(number, 99) % actionCount), Criteria::all), number,
                        kind);
    }

    // A number that differs from call to call and from seed to seed.
    static std::size_t Turn(LONG number, int salt)
    {
        std::seed_seq sequence{Seed(), static_cast<unsigned>(number), static_cast<unsigned>(salt)};
        return std::mt19937(sequence)() >> 3;
    }

    void Attempt(const RunChoice& choice, LONG number, std::size_t kind)
    {
        if (testing::Test::HasFailure() || cases++ % share.of != share.number)
            return;
        const SweepCase attempt{choice, number, kind};
        const LONG happened = sweep.attempt(attempt);
        ++runs;
        hit += happened > 0 ? 1 : 0;
        faults += happened;
        highest = std::max(highest, number);
        std::size_t now = CountHeapBlocks();
        if (now > held && !testing::Test::HasFailure())
            now = ExpectNoLeak(attempt, now);
        held = std::max(held, now);
        if (runs % 1000 == 0)
        {
            std::printf("%zu runs\n", runs);
            std::fflush(stdout);
        }
    }

    // What a process keeps for later it does not take anew each time.
    std::size_t ExpectNoLeak(const SweepCase& attempt, std::size_t blocks)
    {
        constexpr int rounds = 12;
        int grown = 0;
        for (int round = 0; round < rounds; ++round)
        {
            sweep.attempt(attempt);
            const std::size_t now = CountHeapBlocks();
            grown += now > blocks ? 1 : 0;
            blocks = std::max(blocks, now);
        }
        EXPECT_LT(grown, rounds) << "memory is left behind: " << NameOf(attempt.choice) << ", number "
                                 << attempt.number << ", kind " << attempt.kind;
        return blocks;
    }

    const Sweep& sweep;
    const Share share = ShareFromEnvironment();
    std::size_t cases = 0;    // come to, those of other shares too
    std::size_t held = 0;
    std::size_t runs = 0;
    std::size_t hit = 0;
    LONG faults = 0;
    LONG highest = 0;
};
}    // namespace

void RunSweep(const Sweep& sweep)
{
    SweepRunner(sweep).Run();
}

bool IsLongForm()
{
    return std::getenv("TQODR_LONG") != nullptr;
}

unsigned Seed()
{
    static const unsigned seed = []
    {
        const char* given = std::getenv("TQODR_SEED");
        return given ? static_cast<unsigned>(std::strtoul(given, nullptr, 10))
                     : std::random_device()() % 100'000;
    }();
    return seed;
}
