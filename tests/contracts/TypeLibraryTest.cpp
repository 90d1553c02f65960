// The compiled type libraries: late-bound calls go by them.
#include "tests/contracts/InterfaceTable.h"

#include <windows.h>

#include <comutil.h>
#include <oleauto.h>
#include <wrl/client.h>

#include <gtest/gtest.h>

#include <string>

using Microsoft::WRL::ComPtr;

namespace
{
GUID Guid(const wchar_t* text)
{
    GUID guid = GUID_NULL;
    ::IIDFromString(text, &guid);
    return guid;
}

ComPtr<ITypeLib> Load(const std::wstring& name)
{
    const std::string folder = TQODR_TYPE_LIBRARIES;
    const std::wstring path = L"Z:" + std::wstring(folder.begin(), folder.end()) + L"/" + name;
    ComPtr<ITypeLib> library;
    ::LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.GetAddressOf());
    return library;
}

// The interface with its slots: a dual one stands behind its dispatch face.
ComPtr<ITypeInfo> LoadVtable(const InterfaceTable& table)
{
    ComPtr<ITypeInfo> face;
    const ComPtr<ITypeLib> library = Load(table.library);
    if (!library || FAILED(library->GetTypeInfoOfGuid(Guid(table.iid), face.GetAddressOf())))
        return {};
    HREFTYPE reference = 0;
    ComPtr<ITypeInfo> slots;
    if (FAILED(face->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference)) ||
        FAILED(face->GetRefTypeInfo(reference, slots.GetAddressOf())))
        return {};
    return slots;
}

// One function of a described interface, given back at the end.
class Function
{
public:
    Function(ITypeInfo* info, UINT index) : info(info) { info->GetFuncDesc(index, &description); }
    Function(const Function&) = delete;
    Function& operator=(const Function&) = delete;
    ~Function()
    {
        if (description)
            info->ReleaseFuncDesc(description);
    }

    int Slot() const { return description ? description->oVft / static_cast<int>(sizeof(void*)) : -1; }
    long Id() const { return description ? description->memid : 0; }
    char Kind() const
    {
        return !description                                 ? '?'
               : description->invkind == INVOKE_PROPERTYGET ? 'g'
               : description->invkind == INVOKE_PROPERTYPUT ? 'p'
                                                            : 'm';
    }
    std::wstring Name() const
    {
        _bstr_t name;
        if (description)
            info->GetDocumentation(description->memid, name.GetAddress(), nullptr, nullptr, nullptr);
        return name.length() ? std::wstring(name) : std::wstring();
    }

private:
    ITypeInfo* info;
    FUNCDESC* description = nullptr;
};

class PublishedInterface : public testing::TestWithParam<InterfaceTable>
{
};

TEST_P(PublishedInterface, IsDescribedSlotForSlot)
{
    const ComPtr<ITypeInfo> info = LoadVtable(GetParam());
    ASSERT_TRUE(info);

    UINT index = 0;
    for (const InterfaceSlot& slot : GetParam().slots)
    {
        const Function function(info.Get(), index++);
        EXPECT_EQ(function.Slot(), slot.slot) << "slot " << slot.slot;
        // A library keeps one spelling of a name for all that differ in case only.
        EXPECT_EQ(::lstrcmpiW(function.Name().c_str(), slot.name.c_str()), 0) << "slot " << slot.slot;
        EXPECT_EQ(function.Kind(), slot.kind) << "slot " << slot.slot;
        EXPECT_EQ(function.Id(), slot.id) << "slot " << slot.slot;
    }
    EXPECT_EQ(Function(info.Get(), index).Slot(), -1) << "has more functions than are published";
}

INSTANTIATE_TEST_SUITE_P(Contracts, PublishedInterface, testing::ValuesIn(PublishedInterfaces()),
                         [](const testing::TestParamInfo<InterfaceTable>& tested)
                         {
                             const std::wstring name = tested.param.name;
                             return std::string(name.begin(), name.end());
                         });

TEST(ExtensibilityLibrary, HasTheIdentifierThatHostsLookFor)
{
    const ComPtr<ITypeLib> library = Load(L"Extensibility.tlb");
    ASSERT_TRUE(library);

    TLIBATTR* attributes = nullptr;
    ASSERT_EQ(library->GetLibAttr(&attributes), S_OK);

    EXPECT_EQ(attributes->guid, Guid(L"{AC0714F2-3D04-11D1-AE7D-00A0C90F26F4}"));
    EXPECT_EQ(attributes->wMajorVerNum, 1);
    EXPECT_EQ(attributes->wMinorVerNum, 0);
    library->ReleaseTLibAttr(attributes);
}

TEST(ButtonEvents, HaveOneEvent)
{
    const ComPtr<ITypeLib> library = Load(L"Office.tlb");
    ASSERT_TRUE(library);

    ComPtr<ITypeInfo> events;
    library->GetTypeInfoOfGuid(Guid(L"{000C0351-0000-0000-C000-000000000046}"), events.GetAddressOf());

    ASSERT_TRUE(events);
    const Function click(events.Get(), 0);
    EXPECT_EQ(click.Name(), L"Click");
    EXPECT_EQ(click.Id(), 1);
    EXPECT_EQ(Function(events.Get(), 1).Id(), 0);
}
}    // namespace
