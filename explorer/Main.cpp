#include "explorer/Program.h"

#include <windows.h>

#include <shellapi.h>

#include <memory>

namespace
{
struct LocalDeleter
{
    void operator()(wchar_t** words) const noexcept { ::LocalFree(words); }
};

std::vector<std::wstring> ReadWords()
{
    int count = 0;
    const std::unique_ptr<wchar_t*, LocalDeleter> words(::CommandLineToArgvW(::GetCommandLineW(), &count));
    return words && count > 1 ? std::vector<std::wstring>(words.get() + 1, words.get() + count)
                              : std::vector<std::wstring>();
}
}    // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t*, int showCommand)
{
    return RunProgram(ReadWords(), showCommand);
}
