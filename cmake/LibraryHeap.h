#pragma once

// The heap of its own that each library built here takes its C++ memory from. What a library keeps for long
// and what it needs for a moment then lie apart from the host's blocks and from another library's, and the
// blocks that one of them frees fit its own next requests. In one heap for all, a heap that looks through its
// free blocks one by one (Wine's does) spends more on looking than a scan does on the mail.

// Makes the heap: before the library's first constructor runs. False when the system has no room for one.
bool MakeLibraryHeap() noexcept;

// Gives back what the calling thread keeps: when it ends.
void FreeBlocksOfThread() noexcept;

// Frees the heap with all that is still in it: when nothing of the library runs any more.
void FreeLibraryHeap() noexcept;
