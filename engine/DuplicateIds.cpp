#include "engine/DuplicateIds.h"

void DuplicateIds::Append(std::wstring id)
{
    lookUp.insert(ids.emplace_back(std::move(id)));
}

void DuplicateIds::Clear() noexcept
{
    lookUp.clear();
    ids.clear();
}
