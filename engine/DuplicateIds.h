#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_set>

// The entry ids (upper-case hex) of a run's duplicates, in the order found; an id found twice stands twice.
// A look-up beside the list answers Contains without walking it.
class DuplicateIds
{
public:
    DuplicateIds() = default;
    DuplicateIds(const DuplicateIds&) = delete;
    DuplicateIds& operator=(const DuplicateIds&) = delete;

    void Append(std::wstring id);
    void Clear() noexcept;
    bool Contains(std::wstring_view id) const { return lookUp.contains(id); }

    bool IsEmpty() const noexcept { return ids.empty(); }
    std::size_t GetCount() const noexcept { return ids.size(); }
    const std::wstring& operator[](std::size_t index) const { return ids[index]; }
    auto begin() const noexcept { return ids.begin(); }
    auto end() const noexcept { return ids.end(); }

private:
    std::deque<std::wstring> ids;    // appending never moves a text that the look-up refers to
    std::unordered_set<std::wstring_view> lookUp;
};
