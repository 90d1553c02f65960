#include "ui/HelpTopic.h"

#include <windows.h>

#include <commctrl.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

using testing::ElementsAre;

namespace
{
// The delivered help, by its full Windows path.
std::wstring DeliveredHelp()
{
    const wchar_t* dist = ::_wgetenv(L"TQODR_DIST");
    return dist ? (std::filesystem::path(dist) / L"tqodr_v1.0.chm").wstring() : std::wstring();
}

BOOL CALLBACK FindTree(HWND window, LPARAM found)
{
    wchar_t className[32] = L"";
    ::GetClassNameW(window, className, ARRAYSIZE(className));
    if (className != std::wstring_view(WC_TREEVIEWW))
        return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

std::wstring TextOf(HWND tree, HTREEITEM handle)
{
    wchar_t text[260] = L"";
    TVITEMW item{};
    item.mask = TVIF_TEXT;
    item.hItem = handle;
    item.pszText = text;
    item.cchTextMax = ARRAYSIZE(text);
    ::SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    return text;
}

std::vector<std::wstring> TopEntriesOf(HWND viewer)
{
    HWND tree = nullptr;
    ::EnumChildWindows(viewer, &FindTree, reinterpret_cast<LPARAM>(&tree));
    std::vector<std::wstring> entries;
    for (HTREEITEM item = TreeView_GetRoot(tree); item; item = TreeView_GetNextSibling(tree, item))
        entries.push_back(TextOf(tree, item));
    return entries;
}

class HelpViewer : public testing::Test
{
protected:
    ~HelpViewer() override
    {
        if (viewer)
            ::DestroyWindow(viewer);
    }

    HWND viewer = nullptr;
};
}    // namespace

TEST_F(HelpViewer, OpensTheDeliveredHelpWithItsTitleAndContents)
{
    ShowHelpTopic(nullptr, DeliveredHelp());

    viewer = ::FindWindowW(nullptr, L"Talmore Quorvex Outlook Duplicate Remover");
    ASSERT_TRUE(viewer);
    EXPECT_THAT(TopEntriesOf(viewer),
                ElementsAre(L"Welcome", L"What a duplicate is", L"A run from start to end",
                            L"The pages of the wizard", L"The command line", L"Troubleshooting"));
}
