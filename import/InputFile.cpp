#include "import/InputFile.h"

#include "import/ImportError.h"
#include "import/Interruption.h"

#include <algorithm>
#include <cerrno>
#include <limits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
constexpr off_t smallestChunk = 4 * 1024;
constexpr off_t largestChunk = 256 * 1024;

// A small file comes in one read, with room to see that it ends there.
size_t ChunkSizeFor(int descriptor)
{
    struct stat status = {};
    const off_t size = fstat(descriptor, &status) == 0 ? status.st_size : 0;
    return static_cast<size_t>(std::clamp(size + 1, smallestChunk, largestChunk));
}
}    // namespace

InputFile::InputFile(const std::filesystem::path& path)
    : path(path),
      descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY)),
      chunkSize(0)
{
    if (descriptor < 0)
        throw SystemFailure("read", path.string(), errno);
    chunkSize = ChunkSizeFor(descriptor);
}

InputFile::~InputFile()
{
    close(descriptor);
}

bool InputFile::ReadMore(std::string& bytes, size_t most)
{
    ThrowIfInterrupted();
    const size_t before = bytes.size();
    const size_t wanted = std::min(chunkSize, most);
    bytes.resize(before + wanted);
    ssize_t count = 0;
    do
        count = read(descriptor, bytes.data() + before, wanted);
    while (count < 0 && errno == EINTR && (ThrowIfInterrupted(), true));
    if (count < 0)
        throw SystemFailure("read", path.string(), errno);
    bytes.resize(before + static_cast<size_t>(count));
    return count > 0;
}

std::string InputFile::ReadUpTo(size_t limit)
{
    std::string bytes;
    while (bytes.size() < limit && ReadMore(bytes, limit - bytes.size()))
    {
    }
    return bytes;
}

std::string ReadWholeFile(const std::filesystem::path& path)
{
    return InputFile(path).ReadUpTo(std::numeric_limits<size_t>::max());
}
