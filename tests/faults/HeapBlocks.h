#pragma once

#include <cstddef>

// The blocks of memory that this process holds, of all its modules: in the process's heap and in
// those of the libraries.
std::size_t CountHeapBlocks();
