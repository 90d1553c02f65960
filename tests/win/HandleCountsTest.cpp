#include "tests/win/HandleCounts.h"

#include <gtest/gtest.h>

#include <functional>
#include <ostream>

namespace
{
// What one object of a kind adds to the counts, and what is left of it afterwards.
struct ObjectKind
{
    const char* name;
    HandleCounts added;
    std::function<void*()> make;
    std::function<void(void*)> destroy;
};

void DeleteGdiObject(void* object)
{
    ::DeleteObject(object);
}

void* MakeIcon()
{
    const BYTE bits[32 * 4]{};
    return ::CreateIcon(nullptr, 32, 32, 1, 1, bits, bits);
}

void* MakeWindow()
{
    return ::CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
}

void* MakeMessageWindow()
{
    return ::CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
}

const ObjectKind kinds[] = {
    {"Brush", {1, 0}, [] { return ::CreateSolidBrush(RGB(1, 2, 3)); }, &DeleteGdiObject},
    {"Font",
     {1, 0},
     [] { return ::CreateFontW(30, 10, 0, 0, 700, 1, 1, 0, DEFAULT_CHARSET, 0, 0, 0, 0, L"Arial"); },
     &DeleteGdiObject},
    {"Bitmap", {1, 0}, [] { return ::CreateBitmap(16, 16, 1, 1, nullptr); }, &DeleteGdiObject},
    {"Region", {1, 0}, [] { return ::CreateRectRgn(0, 0, 4, 4); }, &DeleteGdiObject},
    {"Window", {0, 1}, &MakeWindow, [](void* window) { ::DestroyWindow(static_cast<HWND>(window)); }},
    {"MessageWindow",
     {0, 1},
     &MakeMessageWindow,
     [](void* window) { ::DestroyWindow(static_cast<HWND>(window)); }},
    {"Menu",
     {0, 1},
     [] { return ::CreateMenu(); },
     [](void* menu) { ::DestroyMenu(static_cast<HMENU>(menu)); }},
};

void PrintTo(const ObjectKind& kind, std::ostream* stream)
{
    *stream << kind.name;
}

class HandleCountsOf : public testing::TestWithParam<ObjectKind>
{
protected:
    ~HandleCountsOf() override { ::DestroyWindow(companion); }

    // With the first window of a thread comes one of the system's own, and goes with the last.
    const HWND companion = static_cast<HWND>(MakeWindow());
};

TEST_P(HandleCountsOf, RiseByOneObjectAndFallWhenItIsDestroyed)
{
    const ObjectKind& kind = GetParam();
    kind.destroy(kind.make());
    const HandleCounts before = HandleCounts::Now();

    void* object = kind.make();
    const HandleCounts with = HandleCounts::Now();
    kind.destroy(object);
    const HandleCounts after = HandleCounts::Now();

    ASSERT_NE(object, nullptr);
    EXPECT_EQ(with.gdi, before.gdi + kind.added.gdi);
    EXPECT_EQ(with.user, before.user + kind.added.user);
    EXPECT_EQ(after, before);
}

INSTANTIATE_TEST_SUITE_P(EachKind, HandleCountsOf, testing::ValuesIn(kinds),
                         [](const testing::TestParamInfo<ObjectKind>& kind) { return kind.param.name; });

// An icon also holds bitmaps, more or fewer of them by the system.
TEST(HandleCounts, RiseByAnIconAndFallWhenItIsDestroyed)
{
    ::DestroyIcon(static_cast<HICON>(MakeIcon()));
    const HandleCounts before = HandleCounts::Now();

    void* icon = MakeIcon();
    const HandleCounts with = HandleCounts::Now();
    ::DestroyIcon(static_cast<HICON>(icon));
    const HandleCounts after = HandleCounts::Now();

    EXPECT_EQ(with.user, before.user + 1);
    EXPECT_EQ(after, before);
}
}    // namespace
