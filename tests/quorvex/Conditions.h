#pragma once

#include "quorvex/Restriction.h"

#include <windows.h>

#include <mapidefs.h>

#include <vector>

// Restrictions in as few words as they need.
namespace where
{
Restriction Property(ULONG tag, ULONG relop, RestrictionValue value);
Restriction Equal(ULONG tag, const wchar_t* text);
Restriction Content(ULONG tag, ULONG fuzzyLevel, const wchar_t* text);
Restriction Exist(ULONG tag);
Restriction Of(ULONG kind, std::vector<Restriction> children);    // RES_AND, RES_OR or RES_NOT
Restriction All(std::vector<Restriction> children);
Restriction Sub(ULONG table, std::vector<Restriction> children);
}    // namespace where
