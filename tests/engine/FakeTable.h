#pragma once

#include "tests/engine/FakeStore.h"

// The item table of a folder: columns, a filter made of restriction objects, and a walk over the rows that
// match.
Microsoft::WRL::ComPtr<FakeDispatch> MakeFakeTable(CallLog& log, const FakeFolder& folder);
