#pragma once

// While one lives, every `new` on its thread fails for want of memory. Linking it replaces the program's
// operators.
class MemoryGone
{
public:
    MemoryGone() noexcept;
    ~MemoryGone();
    MemoryGone(const MemoryGone&) = delete;
    MemoryGone& operator=(const MemoryGone&) = delete;
};
