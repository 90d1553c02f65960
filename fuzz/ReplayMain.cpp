// Puts every file of the folders named to a fuzzer's target, once.
#include "fuzz/FuzzTarget.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace
{
std::vector<std::filesystem::path> FilesOf(const char* folder)
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        files.push_back(entry.path());
    std::ranges::sort(files);
    return files;
}

void Replay(const std::filesystem::path& path)
{
    // Said before: whatever ends the process has its input named above it.
    std::printf("%s\n", path.filename().c_str());
    std::fflush(stdout);
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}
}    // namespace

int main(int argc, char** argv)
{
    std::size_t replayed = 0;
    for (int argument = 1; argument < argc; ++argument)
        for (const std::filesystem::path& file : FilesOf(argv[argument]))
        {
            Replay(file);
            ++replayed;
        }
    if (replayed == 0)
        std::fprintf(stderr, "no inputs\n");
    return replayed > 0 ? 0 : 1;
}
