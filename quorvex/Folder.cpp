#include "quorvex/Folder.h"

#include "contracts/DispatchIds.h"
#include "quorvex/CollectionIndex.h"
#include "quorvex/ItemCollection.h"
#include "quorvex/MapiError.h"
#include "quorvex/PropertyReader.h"
#include "quorvex/TableReader.h"

#include <mapitags.h>

#include <algorithm>

namespace
{
// Answered by CFolder alone, and by no proxy: it gives out the object itself.
constexpr IID ownFolder = {0x4a1c2f67, 0x3b0e, 0x4f59, {0x9d, 0x0c, 0x5e, 0x66, 0x2a, 0x81, 0x7b, 0xd4}};

EntryIdBytes BinaryAt(const PropertyValues& values, std::size_t index)
{
    const SPropValue* value = values.Find(index);
    return value ? IdOf(value->Value.bin) : EntryIdBytes();
}

bool IsClassOrBelow(std::wstring_view containerClass, std::wstring_view base)
{
    if (containerClass.size() < base.size())
        return false;
    const int length = static_cast<int>(base.size());
    return CompareStringOrdinal(containerClass.data(), length, base.data(), length, TRUE) == CSTR_EQUAL &&
           (containerClass.size() == base.size() || containerClass[base.size()] == L'.');
}
}    // namespace

long ItemTypeOf(std::wstring_view containerClass)
{
    struct KnownClass
    {
        std::wstring_view name;
        long itemType;
    };
    static constexpr KnownClass classes[] = {
        {L"IPF.Note", 0},    {L"IPF.Appointment", 1}, {L"IPF.Contact", 2},  {L"IPF.Task", 3},
        {L"IPF.Journal", 4}, {L"IPF.StickyNote", 5},  {L"IPF.DistList", 7},
    };
    const auto known = std::ranges::find_if(classes, [&](const KnownClass& candidate)
                                            { return IsClassOrBelow(containerClass, candidate.name); });
    return known == std::end(classes) ? 0 : known->itemType;
}

CFolder::CFolder(std::shared_ptr<SessionContext> context, ComPtr<IMsgStore> itsStore,
                 const EntryIdBytes& folderId)
    : session(std::move(context)),
      store(std::move(itsStore)),
      folder(session->OpenFolder(store.Get(), folderId))
{
    static constexpr ULONG tags[] = {PR_ENTRYID, PR_PARENT_ENTRYID, PR_DISPLAY_NAME_W, PR_CONTAINER_CLASS_W};
    const PropertyValues values(folder.Get(), tags);
    id = BinaryAt(values, 0);
    parentId = BinaryAt(values, 1);
    name = values.Text(2);
    itemType = ItemTypeOf(values.Text(3));
}

CFolder& CFolder::Of(IDispatch* object)
{
    ComPtr<IUnknown> folder;
    if (!object || FAILED(object->QueryInterface(ownFolder, &folder)))
        throw MapiError(DISP_E_TYPEMISMATCH, L"A folder of this session is needed here.");
    return static_cast<CFolder&>(*static_cast<IDispatch*>(folder.Get()));
}

std::span<const Operation> CFolder::Operations() const noexcept
{
    static constexpr Operation operations[] = {
        Get<&CFolder::GetName>(dispid::folder::name),
        Get<&CFolder::GetEntryId>(dispid::folder::entryId),
        Get<&CFolder::GetParent>(dispid::folder::parent),
        Get<&CFolder::GetItems>(dispid::folder::items),
        Get<&CFolder::GetFolders>(dispid::folder::folders),
        Get<&CFolder::GetDefaultItemType>(dispid::folder::defaultItemType),
    };
    return operations;
}

IUnknown* CFolder::FindInterface(REFIID iid) noexcept
{
    return iid == ownFolder ? static_cast<IDispatch*>(this) : nullptr;
}

std::wstring CFolder::GetName()
{
    return name;
}

std::wstring CFolder::GetEntryId()
{
    return ToHex(id);
}

ComPtr<IDispatch> CFolder::GetParent()
{
    return MakeObject<CFolder>(session, store, parentId);
}

ComPtr<IDispatch> CFolder::GetItems()
{
    return MakeObject<CItemCollection>(session, store, folder, id);
}

ComPtr<IDispatch> CFolder::GetFolders()
{
    return MakeObject<CFolderCollection>(session, store, folder.Get());
}

long CFolder::GetDefaultItemType()
{
    return itemType;
}

CFolderCollection::CFolderCollection(std::shared_ptr<SessionContext> context, ComPtr<IMsgStore> itsStore,
                                     IMAPIFolder* parent)
    : session(std::move(context)),
      store(std::move(itsStore))
{
    ComPtr<IMAPITable> table;
    CheckMapi(parent->GetHierarchyTable(0, &table), parent, L"list the sub-folders");
    constexpr ULONG column = PR_ENTRYID;
    ReadRows(table.Get(), {&column, 1}, 1,
             [&](TableRow row)
             {
                 if (row[0])
                     ids.push_back(IdOf(row[0]->Value.bin));
             });
}

std::span<const Operation> CFolderCollection::Operations() const noexcept
{
    static constexpr Operation operations[] = {
        Get<&CFolderCollection::GetCount>(dispid::folderCollection::count),
        Method<&CFolderCollection::GetItem>(dispid::folderCollection::item),
    };
    return operations;
}

long CFolderCollection::GetCount()
{
    return static_cast<long>(ids.size());
}

ComPtr<IDispatch> CFolderCollection::GetItem(const VARIANT& index)
{
    return MakeObject<CFolder>(session, store, ids[PlaceOf(index, ids.size())]);
}
