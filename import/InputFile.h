#pragma once

#include <cstddef>
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

    // The next line with its line end, the last one perhaps without; false at the end of the file.
    bool ReadLine(std::string& line);

    // At most `limit` bytes from here on.
    std::string ReadUpTo(size_t limit);

private:
    bool Fill();

    std::filesystem::path path;
    int descriptor;
    std::string buffer;
    size_t position = 0;
};

std::string ReadWholeFile(const std::filesystem::path& path);
