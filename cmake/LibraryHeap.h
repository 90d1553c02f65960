#pragma once

// The heap of its own that each library built here takes its C++ memory from. What a library keeps for long
// and what it needs for a moment then lie apart from the host's blocks and from another library's, and the
// blocks that one of them frees fit its own next requests. In one heap for all, a heap that looks through its
// free blocks one by one (Wine's does) spends more on looking than a scan does on the mail.
//
// Small blocks that a thread has freed it keeps for itself, by size: taking and freeing one costs a few
// instructions then, and no lock. To whoever counts the heap's blocks they look like memory left behind:
// where the environment has TQODR_KEEP_NO_BLOCKS, none are kept.

// Makes the heap: before the library's first constructor runs. False when the system has no room for one, or
// no slot of thread-local storage, which goes with the library's others.
bool MakeLibraryHeap() noexcept;

// Gives back what the calling thread keeps: when it ends.
void FreeBlocksOfThread() noexcept;

// Frees the heap with all that is still in it: when nothing of the library runs any more.
void FreeLibraryHeap() noexcept;
