#include "store/Folder.h"

#include "contracts/DispatchIds.h"
#include "win/Variant.h"

std::wstring CFolder::GetName() const
{
    return GetProperty<std::wstring>(dispid::folder::name);
}

std::wstring CFolder::GetEntryId() const
{
    return GetProperty<std::wstring>(dispid::folder::entryId);
}

CFolder CFolder::GetParent() const
{
    return GetProperty<CFolder>(dispid::folder::parent);
}

CItemCollection CFolder::GetItems() const
{
    return GetProperty<CItemCollection>(dispid::folder::items);
}

CFolderCollection CFolder::GetFolders() const
{
    return GetProperty<CFolderCollection>(dispid::folder::folders);
}

LONG CFolder::GetDefaultItemType() const
{
    return GetProperty<LONG>(dispid::folder::defaultItemType);
}

LONG CFolderCollection::GetCount() const
{
    return GetProperty<LONG>(dispid::folderCollection::count);
}

CFolder CFolderCollection::GetItem(LONG index) const
{
    return CallMethod<CFolder>(dispid::folderCollection::item, LongVariant(index));
}
