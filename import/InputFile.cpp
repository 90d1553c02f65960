#include "import/InputFile.h"

#include "import/ImportError.h"
#include "import/Interruption.h"

#include <algorithm>
#include <cerrno>
#include <limits>

#include <fcntl.h>
#include <unistd.h>

namespace
{
constexpr size_t chunkSize = 256 * 1024;
}

InputFile::InputFile(const std::filesystem::path& path)
    : path(path),
      descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY))
{
    if (descriptor < 0)
        throw SystemFailure("read", path.string(), errno);
}

InputFile::~InputFile()
{
    close(descriptor);
}

bool InputFile::Fill()
{
    ThrowIfInterrupted();
    buffer.resize(chunkSize);
    position = 0;
    ssize_t count = 0;
    do
        count = read(descriptor, buffer.data(), chunkSize);
    while (count < 0 && errno == EINTR && (ThrowIfInterrupted(), true));
    if (count < 0)
        throw SystemFailure("read", path.string(), errno);
    buffer.resize(static_cast<size_t>(count));
    return count > 0;
}

bool InputFile::ReadLine(std::string& line)
{
    line.clear();
    while (position < buffer.size() || Fill())
    {
        const size_t end = buffer.find('\n', position);
        const size_t length = (end == std::string::npos ? buffer.size() : end + 1) - position;
        line.append(buffer, position, length);
        position += length;
        if (end != std::string::npos)
            return true;
    }
    return !line.empty();
}

std::string InputFile::ReadUpTo(size_t limit)
{
    std::string bytes;
    while (bytes.size() < limit && (position < buffer.size() || Fill()))
    {
        const size_t length = std::min(buffer.size() - position, limit - bytes.size());
        bytes.append(buffer, position, length);
        position += length;
    }
    return bytes;
}

std::string ReadWholeFile(const std::filesystem::path& path)
{
    return InputFile(path).ReadUpTo(std::numeric_limits<size_t>::max());
}
