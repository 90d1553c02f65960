#include "console/ScanEstimate.h"

#include <algorithm>
#include <utility>

ScanEstimate::ScanEstimate(std::vector<long long> messageCounts) : unvisited(std::move(messageCounts))
{
    for (std::size_t i = 0; i < unvisited.size(); ++i)
        left += unvisited[i] * GetSearchesPerMessage(i);
    StartMessage();
}

long long ScanEstimate::GetSearchesPerMessage(std::size_t folder) const
{
    return static_cast<long long>(unvisited.size() - folder);
}

void ScanEstimate::StartMessage()
{
    while (visited < unvisited.size() && unvisited[visited] == 0)
        ++visited;
    if (visited < unvisited.size())
        --unvisited[visited];
    searched = visited;
}

void ScanEstimate::FoundDuplicates(long long count)
{
    if (searched >= unvisited.size())
        return;
    // A message may be found twice when the criteria do not agree both ways: no more is taken off than there
    // is.
    const long long skipped = std::min(count, unvisited[searched]);
    unvisited[searched] -= skipped;
    left -= skipped * GetSearchesPerMessage(searched);
}

void ScanEstimate::FinishedSearch()
{
    ++done;
    left = std::max(0LL, left - 1);
    if (++searched >= unvisited.size())
        StartMessage();
}

int ScanEstimate::GetPercent() const
{
    const long long all = done + left;
    if (all > 0)
        highest = std::max(highest, static_cast<int>(done * 100 / all));
    return highest;
}
