// A store file with bytes overwritten. The input is a list of patches to a small store that is whole: three
// bytes of offset, one of length, and the bytes. Offsets from 0xF00000 on lead elsewhere: the file is cut off
// there, or the rest of the input becomes the journal or the log beside it.
#include "fuzz/FuzzTarget.h"
#include "fuzz/InputReader.h"
#include "fuzz/ScratchFolder.h"
#include "fuzz/SmallStore.h"
#include "fuzz/StoreWalk.h"

#include <fstream>

namespace
{
constexpr std::uint32_t cutOff = 0xF00000;
constexpr std::uint32_t journal = 0xFE0000;
constexpr std::uint32_t log = 0xFF0000;

void WriteBeside(const std::filesystem::path& store, const char* suffix, const std::string& bytes)
{
    std::ofstream(store.string() + suffix, std::ios::binary) << bytes;
}

void WriteStore(const SmallStore& whole, const std::filesystem::path& path, InputReader input)
{
    std::string bytes = whole.Bytes();
    std::string besideJournal, besideLog;
    while (!input.AtEnd() && !bytes.empty())
    {
        const std::uint32_t offset = input.Number(3);
        if (offset >= log)
            besideLog = input.Bytes(std::string::npos);
        else if (offset >= journal)
            besideJournal = input.Bytes(std::string::npos);
        else if (offset >= cutOff)
            bytes.resize(offset % bytes.size());
        else
        {
            const std::string patch = input.Bytes(input.Byte());
            const std::size_t at = offset % bytes.size();
            bytes.replace(at, std::min(patch.size(), bytes.size() - at), patch);
        }
    }
    SmallStore::Put(path, bytes);
    if (!besideJournal.empty())
        WriteBeside(path, "-journal", besideJournal);
    if (!besideLog.empty())
        WriteBeside(path, "-wal", besideLog);
}
}    // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const SmallStore whole;
    static const ScratchFolder scratch;
    const std::filesystem::path path = scratch.Path() / "store.db";
    WriteStore(whole, path, {data, size});
    WalkStore(path);
    return 0;
}
