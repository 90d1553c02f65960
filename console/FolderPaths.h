#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

// The folder tree as the engine's walk lists it: pre-order, each folder followed by its whole subtree.
struct FolderNode
{
    std::wstring name;
    int parent = -1;    // index of an earlier node; -1 for the top
};

// Finds folders by path: names from below the top folder downward, "/" between two of them, upper and lower
// case taken as the same. The top folder's own name may stand first, and alone it means the top. A "/" that
// belongs to a name is written "//", or plainly where no other reading of the path leads to a folder.
class FolderPaths
{
public:
    explicit FolderPaths(std::vector<FolderNode> nodes) : nodes(std::move(nodes)) {}

    // The index of the folder of that path. Throws UsageError when there is none; its text names the folders
    // that stand where the path went astray.
    int Find(std::wstring_view path) const;

    // True when `index` is `ancestor` or lies somewhere below it.
    bool IsWithin(int index, int ancestor) const;

    // The path by which Find reaches the folder; the top folder's name for the top.
    std::wstring GetPath(int index) const;

    int GetDepth(int index) const;    // 0 for the top

private:
    struct Match;
    struct Spelling;

    std::vector<Spelling> ListSpellings(int parent, std::wstring_view path) const;
    bool FindBelow(int parent, std::wstring_view path, Match& match) const;
    int Resolve(std::wstring_view path, Match& match) const;
    std::wstring DescribeFailure(std::wstring_view path, const Match& match) const;
    std::vector<std::wstring> ListChildren(int parent) const;

    std::vector<FolderNode> nodes;
};
