#pragma once

#include <cstddef>

// The blocks of memory that this process holds, of all its modules: they share the process's heap.
std::size_t CountHeapBlocks();
