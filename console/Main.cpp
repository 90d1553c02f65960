#include "console/Program.h"

int wmain(int count, wchar_t** arguments)
{
    Console console;
    const std::vector<std::wstring> words(arguments + (count > 0 ? 1 : 0), arguments + count);
    return static_cast<int>(RunProgram(words, console));
}
