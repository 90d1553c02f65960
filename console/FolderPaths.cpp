#include "console/FolderPaths.h"

#include "console/CommandLine.h"
#include "console/Text.h"

#include <algorithm>
#include <utility>

struct FolderPaths::Spelling
{
    int index;
    std::wstring text;
};

struct FolderPaths::Match
{
    int found = -1;
    int nearest = 0;           // the folder farthest down that the path reached
    std::size_t unread = 0;    // characters of the path that were left there
    bool hasNearest = false;

    void Reach(int index, std::size_t rest)
    {
        if (hasNearest && rest >= unread)
            return;
        nearest = index;
        unread = rest;
        hasNearest = true;
    }
};

namespace
{
bool HasSlash(std::wstring_view name)
{
    return name.find(L'/') != std::wstring_view::npos;
}

std::wstring Escaped(std::wstring_view name)
{
    std::wstring escaped;
    for (const wchar_t c : name)
        escaped.append(c == L'/' ? 2 : 1, c);
    return escaped;
}

bool StartsWithIgnoringCase(std::wstring_view text, std::wstring_view start)
{
    return text.size() >= start.size() && EqualIgnoringCase(text.substr(0, start.size()), start);
}

std::wstring_view WithoutOuterSlashes(std::wstring_view path)
{
    // A doubled slash at either end belongs to a name.
    if (path.starts_with(L'/') && !path.starts_with(L"//"))
        path.remove_prefix(1);
    if (path.ends_with(L'/') && !path.ends_with(L"//"))
        path.remove_suffix(1);
    return path;
}
}    // namespace

// The spellings by which a child may stand at the head of a path, in the order in which they are tried: names
// without a slash first, so that "A/B" is B in A where there is such a folder and else the folder named
// "A/B"; and of folders that differ in case alone the one written so.
std::vector<FolderPaths::Spelling> FolderPaths::ListSpellings(int parent, std::wstring_view path) const
{
    std::vector<Spelling> spellings;
    for (int i = 0; i < static_cast<int>(nodes.size()); ++i)
    {
        const std::wstring& name = nodes[i].name;
        if (nodes[i].parent != parent || name.empty())
            continue;
        spellings.push_back({i, name});
        if (HasSlash(name))
            spellings.push_back({i, Escaped(name)});
    }
    std::ranges::stable_sort(spellings, {},
                             [path](const Spelling& spelling) {
                                 return std::pair(HasSlash(spelling.text), !path.starts_with(spelling.text));
                             });
    return spellings;
}

bool FolderPaths::FindBelow(int parent, std::wstring_view path, Match& match) const
{
    for (const Spelling& spelling : ListSpellings(parent, path))
    {
        if (!StartsWithIgnoringCase(path, spelling.text))
            continue;
        match.found = spelling.index;
        const std::wstring_view rest = path.substr(spelling.text.size());
        if (rest.empty())
            return true;
        if (rest.front() != L'/')
            continue;
        match.Reach(spelling.index, rest.size() - 1);
        if (FindBelow(spelling.index, rest.substr(1), match))
            return true;
    }
    return false;
}

int FolderPaths::Resolve(std::wstring_view path, Match& match) const
{
    if (path.empty() || nodes.empty())
        return -1;
    match.Reach(0, path.size());
    if (FindBelow(0, path, match))
        return match.found;
    for (const std::wstring& top : {nodes.front().name, Escaped(nodes.front().name)})
    {
        if (!StartsWithIgnoringCase(path, top))
            continue;
        const std::wstring_view rest = path.substr(top.size());
        if (rest.empty())
            return 0;
        if (rest.front() == L'/' && FindBelow(0, rest.substr(1), match))
            return match.found;
    }
    return -1;
}

int FolderPaths::Find(std::wstring_view path) const
{
    Match match;
    const int index = Resolve(WithoutOuterSlashes(path), match);
    if (index < 0)
        throw UsageError(DescribeFailure(path, match));
    return index;
}

bool FolderPaths::IsWithin(int index, int ancestor) const
{
    while (index > ancestor)
        index = nodes[index].parent;
    return index == ancestor;
}

std::wstring FolderPaths::GetPath(int index) const
{
    if (index == 0)
        return Escaped(nodes.front().name);
    std::wstring path = Escaped(nodes[index].name);
    for (int i = nodes[index].parent; i > 0; i = nodes[i].parent)
        path = Escaped(nodes[i].name) + L"/" + path;
    return path;
}

int FolderPaths::GetDepth(int index) const
{
    int depth = 0;
    for (int i = nodes[index].parent; i >= 0; i = nodes[i].parent)
        ++depth;
    return depth;
}

std::vector<std::wstring> FolderPaths::ListChildren(int parent) const
{
    constexpr std::size_t most = 10;
    std::vector<std::wstring> paths;
    for (int i = 0; i < static_cast<int>(nodes.size()) && paths.size() < most; ++i)
    {
        if (nodes[i].parent == parent)
            paths.push_back(Quoted(GetPath(i)));
    }
    return paths;
}

std::wstring FolderPaths::DescribeFailure(std::wstring_view path, const Match& match) const
{
    const std::wstring text = L"there is no folder " + Quoted(path);
    const std::vector<std::wstring> siblings =
        nodes.empty() ? std::vector<std::wstring>() : ListChildren(match.nearest);
    if (siblings.empty())
        return text + L": \"tqodr folders\" shows those that there are";
    return text + L": \"tqodr folders\" shows those that there are, such as " + JoinAlternatives(siblings);
}
