#include "console/FolderSelection.h"

#include "console/Text.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace
{
std::vector<int> FindAll(const FolderPaths& paths, const std::vector<std::wstring>& texts)
{
    std::vector<int> found;
    std::ranges::transform(texts, std::back_inserter(found),
                           [&](const std::wstring& text) { return paths.Find(text); });
    return found;
}

bool IsWithinAny(const FolderPaths& paths, int index, const std::vector<int>& ancestors)
{
    return std::ranges::any_of(ancestors, [&](int ancestor) { return paths.IsWithin(index, ancestor); });
}

UsageError NothingToSearch(const ScanOptions& options)
{
    const std::wstring right = L": name a folder that holds mail, or none to search every one";
    if (!options.excluded.empty())
        return UsageError(L"--exclude leaves no folder with mail to search" + right);
    return UsageError(L"no mail is kept in " + Quoted(options.folders.front()) + right);
}
}    // namespace

void TickFolders(const ScanState& state, ConsoleFolderTree& tree, const FolderPaths& paths,
                 const ScanOptions& options)
{
    const std::vector<int> named = FindAll(paths, options.folders);
    const std::vector<int> excluded = FindAll(paths, options.excluded);
    bool anyMail = false;
    for (int i = 0; i < static_cast<int>(state.folders.size()); ++i)
    {
        const TreeItem item = state.folders[i].treeItem;
        const bool ticked =
            (named.empty() || IsWithinAny(paths, i, named)) && !IsWithinAny(paths, i, excluded);
        tree.SetCheckState(item, ticked ? CheckState::checked : CheckState::unchecked);
        anyMail = anyMail || (ticked && !tree.IsGreyed(item));
    }
    const bool everyFolder = named.empty() && excluded.empty();
    if (!anyMail && !everyFolder)
        throw NothingToSearch(options);
}

void ChooseDestination(ScanState& state, const ConsoleFolderTree& tree, const FolderPaths& paths,
                       const std::wstring& path)
{
    const FOLDER_INFO& folder = state.folders[static_cast<std::size_t>(paths.Find(path))];
    if (tree.IsGreyed(folder.treeItem))
        throw UsageError(L"no mail is kept in " + Quoted(path) + L": --to takes a folder that holds mail");
    state.destFolder = folder.folder;
    state.destFolderPath = folder.name;
}
