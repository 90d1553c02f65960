#include "win/ImageList.h"

#include "tests/win/ControlResources.h"
#include "tests/win/HandleCounts.h"
#include "win/ActivationContext.h"
#include "win/BitmapResource.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>
#include <utility>

namespace
{
constexpr COLORREF white = RGB(255, 255, 255);

class ImageList : public testing::Test
{
protected:
    const ActivationContext commonControls;
    CImageList images;
};

struct DeviceDeleter
{
    void operator()(HDC device) const noexcept { ::DeleteDC(device); }
};
using Device = std::unique_ptr<std::remove_pointer_t<HDC>, DeviceDeleter>;

COLORREF PixelOf(HBITMAP bitmap, int x, int y)
{
    const Device device(::CreateCompatibleDC(nullptr));
    const HGDIOBJ before = ::SelectObject(device.get(), bitmap);
    const COLORREF pixel = ::GetPixel(device.get(), x, y);
    ::SelectObject(device.get(), before);
    return pixel;
}

// A row of images, all of one colour.
BitmapHandle MakeBitmap(int width, int height, COLORREF colour)
{
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, width, height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    BitmapHandle bitmap(::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    const Device device(::CreateCompatibleDC(nullptr));
    const HGDIOBJ before = ::SelectObject(device.get(), bitmap.get());
    const RECT all{0, 0, width, height};
    const BrushHandle brush(::CreateSolidBrush(colour));
    ::FillRect(device.get(), &all, brush.get());
    ::SelectObject(device.get(), before);
    return bitmap;
}

TEST_F(ImageList, HasTheSizeItIsCreatedWith)
{
    ASSERT_TRUE(images.Create(16, 12, ILC_MASK, 0, 1));

    int width = 0;
    int height = 0;
    ::ImageList_GetIconSize(images.get(), &width, &height);
    EXPECT_EQ(width, 16);
    EXPECT_EQ(height, 12);
    EXPECT_EQ(::ImageList_GetImageCount(images.get()), 0);
}

TEST_F(ImageList, CutsABitmapIntoImages)
{
    ASSERT_TRUE(images.Create(16, 16, ILC_MASK, 0, 0));
    const BitmapHandle bitmap = LoadBitmapResource(IDB_FOUR_IMAGES);

    const int first = images.Add(bitmap.get(), white);

    EXPECT_EQ(first, 0);
    EXPECT_EQ(::ImageList_GetImageCount(images.get()), 4);
}

TEST_F(ImageList, GrowsAsImagesAreAdded)
{
    ASSERT_TRUE(images.Create(16, 16, ILC_COLORDDB | ILC_MASK, 0, 1));
    for (int expected = 0; expected < 12; ++expected)
        EXPECT_EQ(images.Add(LoadBitmapResource(IDB_ONE_IMAGE).get(), RGB(255, 255, 250)), expected);

    EXPECT_EQ(::ImageList_GetImageCount(images.get()), 12);
}

TEST_F(ImageList, MakesPixelsOfTheMaskColourTransparentAndNoOthers)
{
    ASSERT_TRUE(images.Create(16, 16, ILC_COLOR24 | ILC_MASK, 0, 1));
    images.Add(MakeBitmap(16, 16, white).get(), white);
    images.Add(MakeBitmap(16, 16, RGB(10, 200, 30)).get(), white);
    const BitmapHandle canvas = MakeBitmap(32, 16, RGB(0, 0, 255));
    const Device device(::CreateCompatibleDC(nullptr));
    const HGDIOBJ before = ::SelectObject(device.get(), canvas.get());

    ::ImageList_Draw(images.get(), 0, device.get(), 0, 0, ILD_TRANSPARENT);
    ::ImageList_Draw(images.get(), 1, device.get(), 16, 0, ILD_TRANSPARENT);
    ::SelectObject(device.get(), before);

    EXPECT_EQ(PixelOf(canvas.get(), 8, 8), COLORREF{RGB(0, 0, 255)});
    EXPECT_EQ(PixelOf(canvas.get(), 24, 8), COLORREF{RGB(10, 200, 30)});
}

TEST_F(ImageList, KeepsTheLastErrorOfItsThread)
{
    ASSERT_TRUE(images.Create(16, 16, ILC_MASK, 0, 0));
    const BitmapHandle bitmap = LoadBitmapResource(IDB_FOUR_IMAGES);

    ::SetLastError(4711);
    images.Add(bitmap.get(), white);
    const DWORD afterSuccess = ::GetLastError();
    ::SetLastError(4712);
    images.Add(nullptr, white);
    const DWORD afterFailure = ::GetLastError();

    EXPECT_EQ(afterSuccess, 4711U);
    EXPECT_EQ(afterFailure, 4712U);
}

TEST_F(ImageList, RefusesToAddNoBitmapAndToAddToNoList)
{
    EXPECT_EQ(images.Add(LoadBitmapResource(IDB_ONE_IMAGE).get(), white), -1);
    ASSERT_TRUE(images.Create(16, 16, ILC_MASK, 0, 0));

    EXPECT_EQ(images.Add(nullptr, white), -1);
}

TEST_F(ImageList, GivesItsImagesAwayWhenMoved)
{
    ASSERT_TRUE(images.Create(16, 16, ILC_MASK, 0, 0));
    const HIMAGELIST list = images.get();

    const CImageList moved(std::move(images));

    EXPECT_EQ(moved.get(), list);
    EXPECT_EQ(images.get(), nullptr);
}

TEST_F(ImageList, LeavesADetachedListToTheCaller)
{
    ASSERT_TRUE(images.Create(16, 16, ILC_MASK, 0, 0));

    const HIMAGELIST list = images.Detach();

    EXPECT_EQ(images.get(), nullptr);
    EXPECT_EQ(::ImageList_GetImageCount(list), 0);
    EXPECT_TRUE(::ImageList_Destroy(list));
}

TEST_F(ImageList, LeavesNothingBehindAfterManyRounds)
{
    const auto round = []
    {
        CImageList checks;
        checks.Create(16, 16, ILC_MASK, 0, 0);
        checks.Add(LoadBitmapResource(IDB_FOUR_IMAGES).get(), white);
        CImageList folders;
        folders.Create(16, 16, ILC_COLORDDB | ILC_MASK, 0, 1);
        for (int image = 0; image < 12; ++image)
            folders.Add(LoadBitmapResource(IDB_ONE_IMAGE).get(), RGB(255, 255, 250));
        folders.Create(16, 16, ILC_MASK, 0, 0);
    };
    round();
    const HandleCounts before = HandleCounts::Now();

    for (int i = 0; i < 200; ++i)
        round();

    EXPECT_EQ(HandleCounts::Now(), before);
}

TEST(BitmapResource, KeepsTheColoursOfTheResource)
{
    const BitmapHandle bitmap = LoadBitmapResource(IDB_ONE_IMAGE);

    BITMAP header{};
    ASSERT_NE(::GetObjectW(bitmap.get(), sizeof header, &header), 0);
    EXPECT_EQ(header.bmWidth, 16);
    EXPECT_EQ(header.bmHeight, 16);
    EXPECT_EQ(header.bmBitsPixel, 24);
    EXPECT_EQ(PixelOf(bitmap.get(), 0, 0), COLORREF{RGB(255, 255, 250)});
}

TEST(BitmapResource, IsEmptyWhereThereIsNone)
{
    EXPECT_EQ(LoadBitmapResource(9999), nullptr);
}
}    // namespace
