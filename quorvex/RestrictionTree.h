#pragma once

#include "quorvex/Restriction.h"

#include <windows.h>

#include <comutil.h>
#include <mapidefs.h>

#include <memory>
#include <mutex>
#include <variant>
#include <vector>

// One restriction while automation sets it up: its values come one by one, in any order, and as VARIANTs.
// What each member means is told by Restriction's of the same name.
struct RestrictionNode
{
    ULONG kind = RES_AND;
    ULONG tag = 0;
    ULONG relop = RELOP_EQ;
    ULONG fuzzyLevel = FL_FULLSTRING;
    std::variant<_variant_t, SharedText> value;
    int depth = 0;    // below the root
    std::vector<std::shared_ptr<RestrictionNode>> children;
};

// A filter's restriction, shared by the filter and by the objects that set the nodes. The mutex guards the
// root and everything in its nodes, those included that are no longer below it.
struct RestrictionTree
{
    std::mutex mutex;
    std::shared_ptr<RestrictionNode> root;    // null: no restriction
};

// A new node below `parent` (null: a root). Throws MapiError for a kind that there is none of and for trees
// that are too deep to walk.
std::shared_ptr<RestrictionNode> MakeNode(ULONG kind, const RestrictionNode* parent);

// Takes the value that a caller's VARIANT holds, also where that only refers to it. Throws MapiError for
// objects and for arrays of anything but bytes.
void TakeValue(RestrictionNode& node, const VARIANT& value);

// The restriction that the node has become: tags in their Unicode form, values of their tags' types, dates as
// instants. Throws MapiError when a value is missing, does not suit its property, or cannot be compared with
// it.
Restriction ToRestriction(const RestrictionNode& node);
