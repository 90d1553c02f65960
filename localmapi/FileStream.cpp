#include "localmapi/FileStream.h"

#include "localmapi/Arguments.h"

#include <mapix.h>

#include <mapiutil.h>
#include <shlwapi.h>

namespace
{
std::wstring TemporaryFolder()
{
    wchar_t folder[MAX_PATH + 1] = {};
    if (GetTempPathW(MAX_PATH + 1, folder) == 0)
        throw MapiError(HRESULT_FROM_WIN32(GetLastError()));
    return folder;
}

std::wstring MakeUniqueFile(const std::wstring& folder, const std::wstring& prefix)
{
    wchar_t file[MAX_PATH + 1] = {};
    if (GetTempFileNameW(folder.c_str(), prefix.c_str(), 0, file) == 0)
        throw MapiError(HRESULT_FROM_WIN32(GetLastError()));
    return file;
}
}    // namespace

Microsoft::WRL::ComPtr<IStream> OpenFileStream(const std::wstring& name, const std::wstring& prefix,
                                               ULONG flags)
{
    const bool unique = (flags & SOF_UNIQUEFILENAME) != 0;
    const std::wstring file = unique ? MakeUniqueFile(name.empty() ? TemporaryFolder() : name, prefix) : name;
    Microsoft::WRL::ComPtr<IStream> stream;
    ThrowIfFailed(SHCreateStreamOnFileEx(file.c_str(), flags & ~SOF_UNIQUEFILENAME, FILE_ATTRIBUTE_NORMAL,
                                         (flags & STGM_CREATE) != 0, nullptr, &stream));
    return stream;
}
