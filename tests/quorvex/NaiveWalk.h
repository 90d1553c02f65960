#pragma once

#include "quorvex/Restriction.h"
#include "tests/quorvex/FakeProps.h"

#include <cstdint>
#include <vector>

// What a restriction means, told a second time in the plainest way: a walk over the store's own data, with no
// table, no index and no digest in between.
std::vector<std::uint32_t> NaiveWalk(const fake::Folder& folder, const Restriction& restriction);
