#pragma once

#include <vector>

// How far a scan has come. Every message of a folder that is no duplicate starts one search in its own folder
// and in each later one; the estimate follows those searches one by one, and takes the messages that turn out
// to be duplicates off the work that is left.
class ScanEstimate
{
public:
    // The message counts of the folders that are searched, in scan order.
    explicit ScanEstimate(std::vector<long long> messageCounts);

    void FoundDuplicates(long long count);    // in the folder being searched
    void FinishedSearch();                    // of one folder, for one message
    int GetPercent() const;                   // 0 to 100, never falling

private:
    void StartMessage();
    long long GetSearchesPerMessage(std::size_t folder) const;

    std::vector<long long> unvisited;    // by folder: messages that still have to start their searches
    std::size_t visited = 0;             // folder whose messages start searches
    std::size_t searched = 0;            // folder being searched
    long long done = 0;                  // searches
    long long left = 0;                  // searches
    mutable int highest = 0;
};
