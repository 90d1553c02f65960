#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

// What the words of the command line ask for.
struct CommandLine
{
    bool help = false;
    bool listAddIns = false;                   // print the add-ins and their states, and end
    std::optional<std::wstring> click = {};    // press this control once the window is there
    bool exitAfterClick = false;
};

// Words that ask for nothing this program does; the text says which and what is right.
class CommandLineError : public std::exception
{
public:
    explicit CommandLineError(std::wstring text) : text(std::move(text)) {}
    const std::wstring& GetText() const noexcept { return text; }
    const char* what() const noexcept override { return "wrong words on the command line"; }

private:
    std::wstring text;
};

// `words` without the program's name. Throws CommandLineError.
CommandLine ParseCommandLine(const std::vector<std::wstring>& words);

extern const wchar_t usageText[];
