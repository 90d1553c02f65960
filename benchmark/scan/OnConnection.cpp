// How long the add-in keeps its host waiting when it is connected: addin_bench [ROUNDS]. Over the store file
// named by LOCALMAPI_STORE, or an empty one of its own. Hosts disable an add-in that takes a second.
#include "addin/DuplicateRemover.h"
#include "addin/TalmoreQuorvexOutlookDuplicateRemoverApp.h"
#include "localmapi/TextConversion.h"
#include "tests/addin/FakeOffice.h"
#include "tests/localmapi/Sandbox.h"
#include "tests/localmapi/TemporaryStore.h"
#include "win/ComInitialization.h"

#include <windows.h>

#include <wrl/client.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

using Microsoft::WRL::ComPtr;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

namespace
{
constexpr int usualRounds = 200;
constexpr double budget = 50;         // milliseconds
constexpr double hostLimit = 1000;    // milliseconds

struct Sample
{
    double whole;
    double mapi;    // of it, before the host is first called
};

Sample MeasureOnce()
{
    FakeOffice host;
    std::optional<Clock::time_point> firstCall;
    host.log.onCall = [&](const std::string&)
    {
        if (!firstCall)
            firstCall = Clock::now();
    };
    ComPtr<_IDTExtensibility2> addIn;
    if (FAILED(CDuplicateRemover::CreateInstance(nullptr, IID__IDTExtensibility2,
                                                 reinterpret_cast<void**>(addIn.ReleaseAndGetAddressOf()))))
        throw std::runtime_error("the add-in cannot be created");

    const Clock::time_point start = Clock::now();
    const HRESULT connected = addIn->OnConnection(host.application.Get(), ext_cm_Startup, nullptr, nullptr);
    const Clock::time_point end = Clock::now();
    if (connected != S_OK || !TheApp().mapiHelper.defaultStore)
        throw std::runtime_error("no connection, or none with a store");
    addIn->OnDisconnection(ext_dm_UserClosed, nullptr);
    return {Milliseconds(end - start).count(), Milliseconds(*firstCall - start).count()};
}

double Percentile(std::vector<double> values, double share)
{
    std::ranges::sort(values);
    return values[std::min(values.size() - 1, static_cast<std::size_t>(share * values.size()))];
}

void Report(const char* what, double milliseconds)
{
    std::printf("%-28s %8.2f ms   %4.0f %% of the budget of %.0f ms   1/%.0f of the host's %.0f ms\n", what,
                milliseconds, 100 * milliseconds / budget, budget, hostLimit / milliseconds, hostLimit);
}

void Run(int rounds)
{
    const Sample first = MeasureOnce();
    std::vector<double> whole;
    std::vector<double> mapi;
    for (int round = 0; round < rounds; ++round)
    {
        const Sample sample = MeasureOnce();
        whole.push_back(sample.whole);
        mapi.push_back(sample.mapi);
    }
    std::printf("OnConnection, %d rounds\n", rounds);
    Report("first of the process", first.whole);
    Report("median", Percentile(whole, 0.5));
    Report("95th percentile", Percentile(whole, 0.95));
    Report("median of the MAPI helper", Percentile(mapi, 0.5));
}
}    // namespace

int main(int argumentCount, char** arguments)
{
    try
    {
        const ComInitialization com;
        const TemporaryStore file;
        std::optional<StoreVariable> variable;
        if (!std::getenv("LOCALMAPI_STORE"))
            variable.emplace(WideFromUtf8(file.Path()).c_str());
        Run(argumentCount > 1 ? std::max(1, std::atoi(arguments[1])) : usualRounds);
        return EXIT_SUCCESS;
    }
    catch (const std::exception& failure)
    {
        std::fprintf(stderr, "addin_bench: %s\n", failure.what());
        return EXIT_FAILURE;
    }
}
