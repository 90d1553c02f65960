#pragma once

#include <cerrno>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include <sys/mman.h>
#include <unistd.h>

// A file in memory with these bytes, there while it lives; for readers that take a path.
class MemoryFile
{
public:
    explicit MemoryFile(std::string_view bytes) : descriptor(memfd_create("fuzz", MFD_CLOEXEC))
    {
        if (descriptor < 0 ||
            write(descriptor, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
            throw std::system_error(errno, std::generic_category(), "a file in memory");
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { close(descriptor); }

    std::filesystem::path Path() const { return "/proc/self/fd/" + std::to_string(descriptor); }

private:
    int descriptor;
};
