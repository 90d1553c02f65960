#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

#include <stdlib.h>

// A folder of this process's own, in memory where the system has such a place, gone with all that is in it.
class ScratchFolder
{
public:
    ScratchFolder()
    {
        std::error_code error;
        const std::filesystem::path inMemory = "/dev/shm";
        const std::filesystem::path parent = std::filesystem::is_directory(inMemory, error)
                                                 ? inMemory
                                                 : std::filesystem::temp_directory_path();
        std::string name = (parent / "tqodr-fuzz-XXXXXX").string();
        if (!mkdtemp(name.data()))
            throw std::runtime_error("no scratch folder can be made in " + parent.string());
        path = name;
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }

    const std::filesystem::path& Path() const { return path; }

    void Clear() const
    {
        for (const auto& entry : std::filesystem::directory_iterator(path))
            std::filesystem::remove_all(entry.path());
    }

private:
    std::filesystem::path path;
};
