#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

// One open file, read from its start to its end. Every function throws ImportError when the system refuses.
class InputFile
{
public:
    explicit InputFile(const std::filesystem::path& path);
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile();

    // Appends what comes next, some bytes at a time and never more than `most`; false at the end of the file.
    bool ReadMore(std::string& bytes, size_t most = SIZE_MAX);

    // At most `limit` bytes from here on.
    std::string ReadUpTo(size_t limit);

private:
    std::filesystem::path path;
    int descriptor;
    size_t chunkSize;    // of one read, fitted to the file
};

std::string ReadWholeFile(const std::filesystem::path& path);
