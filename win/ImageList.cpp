#include "win/ImageList.h"

namespace
{
constexpr wchar_t commonControls[] = L"comctl32.dll";

// Keeps the thread's last error as it was.
class LastErrorKept
{
public:
    LastErrorKept() noexcept = default;
    LastErrorKept(const LastErrorKept&) = delete;
    LastErrorKept& operator=(const LastErrorKept&) = delete;
    ~LastErrorKept() { ::SetLastError(error); }

private:
    DWORD error = ::GetLastError();
};
}    // namespace

bool CImageList::Create(int width, int height, UINT flags, int initial, int grow) noexcept
{
    images.reset(::ImageList_Create(width, height, flags, initial, grow));
    return images != nullptr;
}

HMODULE CImageList::CommonControls() noexcept
{
    if (const HMODULE loaded = ::GetModuleHandleW(commonControls))
        return loaded;
    library.reset(::LoadLibraryW(commonControls));
    return library.get();
}

int CImageList::Add(HBITMAP bitmap, COLORREF mask) noexcept
{
    const LastErrorKept kept;
    const HMODULE module = CommonControls();
    const FARPROC found = module ? ::GetProcAddress(module, "ImageList_AddMasked") : nullptr;
    if (!found)
        return -1;
    // By way of a plain function: compilers warn of any other change of a function's type.
    const auto addMasked =
        reinterpret_cast<decltype(&::ImageList_AddMasked)>(reinterpret_cast<void (*)()>(found));
    return addMasked(images.get(), bitmap, mask);
}
