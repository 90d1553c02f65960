#include "tests/life/Growth.h"

#include "tests/life/ProcessCounts.h"
#include "win/KernelHandle.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

namespace
{
constexpr double kept = 4;

std::vector<double> SamplesOf(Held kind, const std::function<void()>& round)
{
    std::vector<double> samples;
    for (int i = 0; i < 20; ++i)
    {
        round();
        samples.push_back(CountHeld()[static_cast<std::size_t>(kind)]);
    }
    return samples;
}

TEST(Growth, IsTheLineThroughTheSamples)
{
    const Growth growth = GrowthOf({10, 13, 16, 19});

    EXPECT_DOUBLE_EQ(growth.perSample, 3);
    EXPECT_DOUBLE_EQ(growth.inAll, 9);
    EXPECT_NEAR(growth.noise, 0, 1e-9);
}

TEST(Growth, IsNoneInWhatComesAndGoes)
{
    EXPECT_TRUE(IsFlat(GrowthOf({10, 60, 12, 58, 11, 61, 10, 59}), kept));
    EXPECT_TRUE(IsFlat(GrowthOf({10, 10, 10, 13, 13, 13, 13, 13}), kept));
    EXPECT_TRUE(IsFlat(GrowthOf({60, 50, 40, 30}), kept));
}

TEST(Growth, IsSeenOfEachKernelHandleLeftBehind)
{
    std::vector<KernelHandle> left;

    const auto samples = SamplesOf(Held::kernelHandles,
                                   [&] { left.emplace_back(::CreateEventW(nullptr, TRUE, FALSE, nullptr)); });

    EXPECT_FALSE(IsFlat(GrowthOf(samples), kept));
}

TEST(Growth, IsSeenOfEachSlotOfThreadStorageLeftBehind)
{
    std::vector<DWORD> left;

    const auto samples = SamplesOf(Held::threadSlots, [&] { left.push_back(::TlsAlloc()); });

    for (const DWORD slot : left)
        ::TlsFree(slot);
    EXPECT_FALSE(IsFlat(GrowthOf(samples), kept));
}

TEST(Growth, IsSeenOfEachBlockOfMemoryLeftBehind)
{
    std::vector<std::unique_ptr<int>> left;
    left.reserve(100);

    const auto samples = SamplesOf(Held::heapBlocks, [&] { left.push_back(std::make_unique<int>(1)); });

    EXPECT_FALSE(IsFlat(GrowthOf(samples), kept));
}
}    // namespace
