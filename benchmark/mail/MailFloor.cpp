// What reading mail costs at the least: `mailfloor read PATH...` reads every byte of a file, or of the files
// of a directory, and hashes them; `mailfloor parse MBOX` has the MIME library parse each message of an mbox
// and does nothing with it. Prints the number of bytes or messages.
#include "import/GlibOwners.h"
#include "import/InputFile.h"
#include "import/MailConverter.h"

#include <gmime/gmime.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

namespace
{
namespace fs = std::filesystem;

constexpr std::size_t chunkSize = 1024 * 1024;

class Reader
{
public:
    void Read(const fs::path& path)
    {
        InputFile file(path);
        for (std::string chunk = file.ReadUpTo(chunkSize); !chunk.empty(); chunk = file.ReadUpTo(chunkSize))
            Take(chunk);
    }

    std::uint64_t Bytes() const { return bytes; }
    std::uint64_t Hash() const { return hash; }

private:
    void Take(std::string_view chunk)
    {
        bytes += chunk.size();
        for (std::uint64_t word = 0; chunk.size() >= sizeof word; chunk.remove_prefix(sizeof word))
        {
            std::memcpy(&word, chunk.data(), sizeof word);
            hash = (hash ^ word) * 0x9E3779B97F4A7C15;
        }
        for (const char character : chunk)
            hash = (hash ^ static_cast<unsigned char>(character)) * 0x100000001B3;
    }

    std::uint64_t bytes = 0;
    std::uint64_t hash = 0;
};

void ReadAll(const char* path)
{
    Reader reader;
    if (!fs::is_directory(path))
        reader.Read(path);
    else
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path))
            if (entry.is_regular_file())
                reader.Read(entry.path());
    std::printf("%llu %016llx\n", static_cast<unsigned long long>(reader.Bytes()),
                static_cast<unsigned long long>(reader.Hash()));
}

void ParseAll(const char* path)
{
    const MimeLibrary library;
    const GlibObject<GMimeStream> stream(g_mime_stream_file_open(path, "r", nullptr));
    if (!stream)
        throw std::runtime_error("cannot read " + std::string(path));
    const GlibObject<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
    g_mime_parser_set_format(parser.get(), GMIME_FORMAT_MBOX);
    std::size_t messages = 0;
    while (!g_mime_parser_eos(parser.get()))
        messages +=
            GlibObject<GMimeMessage>(g_mime_parser_construct_message(parser.get(), nullptr)) != nullptr;
    std::printf("%zu\n", messages);
}
}    // namespace

int main(int argc, char** argv)
{
    const std::string_view task = argc == 3 ? argv[1] : "";
    try
    {
        if (task == "read")
            ReadAll(argv[2]);
        else if (task == "parse")
            ParseAll(argv[2]);
        else
            return std::fputs("Usage: mailfloor read PATH | mailfloor parse MBOX\n", stderr), 1;
        return 0;
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "mailfloor: %s\n", error.what());
        return 2;
    }
}
