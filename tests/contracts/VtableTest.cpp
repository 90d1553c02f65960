// The compiled headers: which slot a call by name goes through, and under which identifier.
#include "contracts/Extensibility.h"
#include "contracts/Office.h"
#include "contracts/Outlook.h"

#include <windows.h>

#include <oleauto.h>

#include <gtest/gtest.h>

#include <array>
#include <utility>

namespace
{
GUID Guid(const wchar_t* text)
{
    GUID guid = GUID_NULL;
    ::IIDFromString(text, &guid);
    return guid;
}

TEST(Headers, HaveThePublishedIdentifiers)
{
    EXPECT_EQ(__uuidof(IAccessible), Guid(L"{618736E0-3C3D-11CF-810C-00AA00389B71}"));
    EXPECT_EQ(__uuidof(_IMsoDispObj), Guid(L"{000C0300-0000-0000-C000-000000000046}"));
    EXPECT_EQ(__uuidof(_IMsoOleAccDispObj), Guid(L"{000C0301-0000-0000-C000-000000000046}"));
    EXPECT_EQ(__uuidof(_CommandBars), Guid(L"{000C0302-0000-0000-C000-000000000046}"));
    EXPECT_EQ(__uuidof(CommandBar), Guid(L"{000C0304-0000-0000-C000-000000000046}"));
    EXPECT_EQ(__uuidof(CommandBarControls), Guid(L"{000C0306-0000-0000-C000-000000000046}"));
    EXPECT_EQ(__uuidof(CommandBarControl), Guid(L"{000C0308-0000-0000-C000-000000000046}"));
    EXPECT_EQ(__uuidof(CommandBarPopup), Guid(L"{000C030A-0000-0000-C000-000000000046}"));
    EXPECT_EQ(__uuidof(_CommandBarButton), Guid(L"{000C030E-0000-0000-C000-000000000046}"));
    EXPECT_EQ(DIID__CommandBarButtonEvents, Guid(L"{000C0351-0000-0000-C000-000000000046}"));
    EXPECT_EQ(__uuidof(_Application), Guid(L"{00063001-0000-0000-C000-000000000046}"));
    EXPECT_EQ(__uuidof(_Explorer), Guid(L"{00063003-0000-0000-C000-000000000046}"));
    EXPECT_EQ(IID__IDTExtensibility2, Guid(L"{B65AD801-ABAF-11D0-BB8B-00A0C90F2744}"));
    EXPECT_EQ(LIBID_AddInDesignerObjects, Guid(L"{AC0714F2-3D04-11D1-AE7D-00A0C90F26F4}"));
}

// Where the caller clears the stack, one function can stand in every slot, whatever its parameters.
#ifdef _WIN64
constexpr int mostSlots = 100;
int calledSlot = -1;

template <int slot>
HRESULT STDMETHODCALLTYPE RecordSlot(void*)
{
    calledSlot = slot;
    return S_OK;
}

template <int... slots>
constexpr std::array<HRESULT(STDMETHODCALLTYPE*)(void*), mostSlots> Recorders(
    std::integer_sequence<int, slots...>)
{
    return {&RecordSlot<slots>...};
}

// An object whose table of functions only tells which of them was called.
template <class Interface, class Call>
int SlotOf(Call&& call)
{
    static constexpr auto table = Recorders(std::make_integer_sequence<int, mostSlots>());
    const auto* object = table.data();
    calledSlot = -1;
    call(reinterpret_cast<Interface*>(&object));
    return calledSlot;
}

const VARIANT nothing = {};

TEST(Slots, OfAnAddIn)
{
    using I = _IDTExtensibility2;
    EXPECT_EQ(SlotOf<I>([](I* o) { o->OnConnection(nullptr, ext_cm_Startup, nullptr, nullptr); }), 7);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->OnDisconnection(ext_dm_HostShutdown, nullptr); }), 8);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->OnAddInsUpdate(nullptr); }), 9);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->OnStartupComplete(nullptr); }), 10);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->OnBeginShutdown(nullptr); }), 11);
}

TEST(Slots, OfTheApplicationAndItsExplorer)
{
    EXPECT_EQ(SlotOf<_Application>([](_Application* o) { o->get_Name(nullptr); }), 12);
    EXPECT_EQ(SlotOf<_Application>([](_Application* o) { o->get_Version(nullptr); }), 13);
    EXPECT_EQ(SlotOf<_Application>([](_Application* o) { o->ActiveExplorer(nullptr); }), 14);
    EXPECT_EQ(SlotOf<_Application>([](_Application* o) { o->get_COMAddIns(nullptr); }), 21);
    EXPECT_EQ(SlotOf<_Explorer>([](_Explorer* o) { o->get_CommandBars(nullptr); }), 11);
    EXPECT_EQ(SlotOf<_Explorer>([](_Explorer* o) { o->put_CurrentFolder(nullptr); }), 13);
    EXPECT_EQ(SlotOf<_Explorer>([](_Explorer* o) { o->get_Caption(nullptr); }), 16);
}

TEST(Slots, OfTheCommandBars)
{
    using I = _CommandBars;
    EXPECT_EQ(SlotOf<I>([](I* o) { o->get_Creator(nullptr); }), 8);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->get_ActiveMenuBar(nullptr); }), 10);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->Add(nothing, nothing, nothing, nothing, nullptr); }), 11);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->get_Item(nothing, nullptr); }), 18);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->ReleaseFocus(); }), 25);
}

TEST(Slots, OfABar)
{
    using I = CommandBar;
    EXPECT_EQ(SlotOf<I>([](I* o) { o->get_accParent(nullptr); }), 7);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->put_accValue(nothing, nullptr); }), 27);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->get_Creator(nullptr); }), 29);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->get_Controls(nullptr); }), 33);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->put_Visible(VARIANT_TRUE); }), 61);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->put_AdaptiveMenu(VARIANT_TRUE); }), 65);
}

TEST(Slots, OfABarsControls)
{
    using I = CommandBarControls;
    EXPECT_EQ(SlotOf<I>([](I* o) { o->Add(nothing, nothing, nothing, nothing, nothing, nullptr); }), 9);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->get_Count(nullptr); }), 10);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->get_Item(nothing, nullptr); }), 11);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->get_Parent(nullptr); }), 13);
}

TEST(Slots, OfAButton)
{
    using I = _CommandBarButton;
    EXPECT_EQ(SlotOf<I>([](I* o) { o->put_Caption(nullptr); }), 34);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->get_Control(nullptr); }), 35);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->put_Enabled(VARIANT_TRUE); }), 41);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->put_Tag(nullptr); }), 66);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->put_TooltipText(nullptr); }), 68);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->put_Visible(VARIANT_TRUE); }), 72);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->Reserved7(); }), 82);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->PasteFace(); }), 88);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->put_Style(msoButtonIcon); }), 94);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->put_HyperlinkType(msoCommandBarButtonHyperlinkNone); }), 96);
}

TEST(Slots, OfAPopup)
{
    using I = CommandBarPopup;
    EXPECT_EQ(SlotOf<I>([](I* o) { o->get_CommandBar(nullptr); }), 83);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->get_Controls(nullptr); }), 84);
    EXPECT_EQ(SlotOf<I>([](I* o) { o->put_OLEMenuGroup(msoOLEMenuGroupNone); }), 86);
}
#endif
}    // namespace
