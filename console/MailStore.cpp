#include "console/MailStore.h"

#include "console/Text.h"
#include "engine/FolderTree.h"
#include "win/SystemMessage.h"
#include "win/WindowBoundary.h"

#include <windows.h>

#include <objbase.h>

#include <map>
#include <vector>

namespace
{
std::wstring Describe(const COleException& error)
{
    return OnOneLine(DescribeFailure(error));
}

StoreError CannotBeOpened(const std::wstring& reason)
{
    return StoreError(L"the mail store cannot be opened: " + reason);
}

void LogOn(ScanState& state)
{
    if (!state.storeSession.Create())
    {
        throw CannotBeOpened(std::wstring(L"the automation server ") + CRDOSession::progId +
                             L" cannot be started; register it with regsvr32 QuorvexDll.dll");
    }
    try
    {
        state.storeSession.LogOn();
    }
    catch (const COleException& error)
    {
        throw CannotBeOpened(Describe(error));
    }
}

// The engine keeps a failure's reason to itself; asking the store again brings it back.
std::wstring AskForReason(const ScanState& state)
{
    try
    {
        const CStore store = state.storeSession.GetStores().GetDefaultStore();
        store.GetEntryId();
        if (!store.GetRootFolder())
            return L"the default store has no root folder";
        return L"the default store refuses to be read";
    }
    catch (const COleException& error)
    {
        return Describe(error);
    }
}
}    // namespace

ComApartment::ComApartment()
{
    if (FAILED(com.GetResult()))
        throw CannotBeOpened(SystemMessage(static_cast<DWORD>(com.GetResult())));
}

void LoadFolders(ScanState& state, ConsoleFolderTree& tree)
{
    LogOn(state);
    if (!OpenDefaultStore(state))
        throw CannotBeOpened(AskForReason(state));
    EnumerateFolder(state, tree, CFolder(state.folderRoot), TreeItem::none);
    if (state.folders.empty() && !state.stopRequested)
        throw CannotBeOpened(L"its folders cannot be read");
}

void LearnProfileKind(ScanState& state, MapiHelper& helper) noexcept
{
    BOOL exchangeProfile = FALSE;
    StartMapiHelper(helper, exchangeProfile);
    state.exchangeProfile = exchangeProfile != FALSE;
}

FolderPaths MakeFolderPaths(const ScanState& state, const ConsoleFolderTree& tree)
{
    std::map<TreeItem, int> indexes;
    std::vector<FolderNode> nodes;
    for (const FOLDER_INFO& folder : state.folders)
    {
        const auto parent = indexes.find(tree.GetParent(folder.treeItem));
        indexes.emplace(folder.treeItem, static_cast<int>(nodes.size()));
        nodes.push_back({folder.name, parent == indexes.end() ? -1 : parent->second});
    }
    return FolderPaths(std::move(nodes));
}

long long GetItemCount(const FOLDER_INFO& folder, const ConsoleFolderTree& tree)
{
    // The text is the name, followed by the count in parentheses when there is one.
    const std::wstring& text = tree.GetText(folder.treeItem);
    return text.size() > folder.name.size() + 1 ? std::stoll(text.substr(folder.name.size() + 1)) : 0;
}
