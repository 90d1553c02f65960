#include "ui/SaveLog.h"

#include "res/resource.h"
#include "win/KernelHandle.h"

#include <windows.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace
{
constexpr std::wstring_view extension = L".txt";

// Only A to Z have two cases here, whatever the user's language makes of them.
wchar_t LowerCase(wchar_t letter)
{
    return letter >= L'A' && letter <= L'Z' ? static_cast<wchar_t>(letter - L'A' + L'a') : letter;
}

bool HasExtension(std::wstring_view path)
{
    const std::wstring_view end = path.substr(path.size() - std::min(path.size(), extension.size()));
    return std::ranges::equal(end, extension, {}, &LowerCase);
}

std::wstring NameOf(const std::wstring& path)
{
    return path.substr(path.find_last_of(L"\\/") + 1);
}

struct LogFile
{
    KernelHandle handle;    // null when the file cannot be created
    bool existed = false;
};

LogFile CreateLogFile(const std::wstring& path)
{
    const HANDLE created =
        ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    const bool existed = ::GetLastError() == ERROR_ALREADY_EXISTS;
    if (created == INVALID_HANDLE_VALUE)
        return {};
    return {KernelHandle(created), existed};
}

// The file to write, emptied; a null handle when it is to be another one, which the user has been told then.
KernelHandle OpenLogFile(StringTable strings, const std::wstring& path, SaveLogPrompts& prompts)
{
    LogFile file = CreateLogFile(path);
    if (!file.handle)
    {
        prompts.ShowMessage(strings.Load(IDS_FILE_NOT_CREATED), MB_OK | MB_ICONERROR);
        return nullptr;
    }
    if (!file.existed || prompts.ShowMessage(strings.Format(IDS_ASK_REPLACE_FILE, {NameOf(path)}),
                                             MB_OKCANCEL | MB_ICONQUESTION) == IDOK)
        return std::move(file.handle);
    file.handle.reset();
    prompts.ShowMessage(strings.Load(IDS_CHOOSE_ANOTHER_NAME), MB_OK | MB_ICONERROR);
    return nullptr;
}
}    // namespace

void SaveLog(StringTable strings, std::span<const LogRow> rows, SaveLogPrompts& prompts)
{
    while (const std::optional<std::wstring> chosen = prompts.AskForPath())
    {
        const std::wstring path = HasExtension(*chosen) ? *chosen : *chosen + std::wstring(extension);
        KernelHandle file = OpenLogFile(strings, path, prompts);
        if (!file)
            continue;
        LogWriter(strings, FileSink(file.get())).WriteReport(rows);
        file.reset();
        prompts.ShowMessage(strings.Format(IDS_LOG_SAVED, {path}), MB_OK | MB_ICONINFORMATION);
        return;
    }
}
