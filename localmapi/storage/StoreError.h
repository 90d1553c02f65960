#pragma once

#include <stdexcept>
#include <string>

enum class StoreFault
{
    FileMissing,
    NotAStore,    // another format, another version, or damaged
    NoSuchFolder,
    NoSuchMessage,
    NameTaken,     // a folder of that name is there already
    NotAllowed,    // the special folders can be neither deleted nor moved
    Busy,          // another process holds the file too long
    ReadOnly,
    DiskFull,
    Full,    // no number is left for what was to be made
    Other
};

// A refusal of the mail store's file; what() is a sentence in UTF-8 for the user.
class StoreError : public std::runtime_error
{
public:
    StoreError(StoreFault fault, const std::string& text, int sqliteCode = 0)
        : std::runtime_error(text),
          fault(fault),
          sqliteCode(sqliteCode)
    {
    }

    StoreFault fault;
    int sqliteCode;    // SQLite's extended result code; 0 when SQLite itself had nothing against it
};
