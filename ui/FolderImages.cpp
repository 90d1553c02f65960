#include "ui/FolderImages.h"

#include "res/resource.h"
#include "win/BitmapResource.h"

#include <windows.h>

namespace
{
constexpr int imageSize = 16;    // pixels, both ways
constexpr COLORREF folderMask = RGB(255, 255, 250);
constexpr COLORREF checkMask = RGB(255, 255, 255);

constexpr UINT folderBitmaps[] = {IDB_MAILBOX,  IDB_SENT,    IDB_INBOX, IDB_OUTBOX, IDB_DELETED, IDB_CALENDAR,
                                  IDB_CONTACTS, IDB_JOURNAL, IDB_NOTES, IDB_TASKS,  IDB_FOLDER,  IDB_DRAFTS};
}    // namespace

CImageList MakeFolderImages()
{
    CImageList images;
    images.Create(imageSize, imageSize, ILC_COLORDDB | ILC_MASK, 0, 1);
    for (const UINT bitmap : folderBitmaps)
        images.Add(LoadBitmapResource(bitmap).get(), folderMask);
    return images;
}

CImageList MakeCheckImages()
{
    CImageList images;
    images.Create(imageSize, imageSize, ILC_MASK, 0, 0);
    images.Add(LoadBitmapResource(IDB_CHECKS).get(), checkMask);
    return images;
}
