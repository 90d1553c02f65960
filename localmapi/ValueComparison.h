#pragma once

#include "localmapi/storage/StoredValue.h"

#include <windows.h>

#include <mapidefs.h>

#include <compare>

// How tables order values and how restrictions compare them. Texts are compared code unit by code unit,
// without regard to language.

// The order of a sorted table: absent values first, texts without regard to case. Values of different kinds,
// which one column never holds, stand in the order of their kinds.
std::weak_ordering CompareForSort(const StoredValue& left, const StoredValue& right);

// Whether `left` stands to `right` as RELOP_LT ... RELOP_NE says; texts with regard to case. False when
// either is absent or they are of different kinds. A real that is no number is unlike every other.
bool StandsInRelation(const StoredValue& left, ULONG relop, const StoredValue& right);

// Whether a text or binary value holds `part` as the fuzzy level says: FL_FULLSTRING, FL_SUBSTRING or
// FL_PREFIX, for texts with FL_IGNORECASE, FL_IGNORENONSPACE or FL_LOOSE (both). False for other kinds.
bool MatchesContent(const StoredValue& value, const StoredValue& part, ULONG fuzzyLevel);

// The bytes a value takes in the type of `tag`, a text's end included; 0 for an absent one.
std::size_t SizeOfValue(const StoredValue& value, ULONG tag);
