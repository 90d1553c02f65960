#pragma once

#include <windows.h>

#include <mapidefs.h>

#include <cstdint>
#include <map>
#include <string>
#include <variant>
#include <vector>

// Messages as a test has made them up, to compare with what a store's tables show of them.

using ModelBytes = std::vector<std::uint8_t>;
// PT_LONG, PT_I2, PT_BOOLEAN, PT_I8 and PT_SYSTIME as numbers; texts by characters; PT_BINARY and PT_CLSID.
using ModelValue = std::variant<std::int64_t, double, std::u32string, ModelBytes>;
// By tag, in its Unicode form; what is absent is not there.
using ModelRow = std::map<ULONG, ModelValue>;

struct ModelMessage
{
    std::int64_t id = 0;    // in the store
    ModelRow values;
    std::vector<ModelRow> recipients;
    std::vector<ModelRow> attachments;
};

// SQL that puts the messages, and nothing else, into a folder of a store.
std::string SqlFor(std::int64_t folderId, const std::vector<ModelMessage>& messages);

// Between a text's characters and its UTF-16 form.
std::wstring WideOf(const std::u32string& text);
std::u32string CharactersOf(const std::wstring& text);
