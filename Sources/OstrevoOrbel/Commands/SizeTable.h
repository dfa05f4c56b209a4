#pragma once

#include "Commands/ListLimits.h"
#include "Commands/TableForm.h"

#include <string>

namespace orbel {

struct RootScan;

/// A scan as a table for people, the largest entries first: size, share of the root, items and name, on a
/// terminal with a header, bars and colour. Each folder has `limits.top` lines, and one for all that is not
/// shown; the last line is the total. An item is a file, a folder or anything else; the root is not counted.
/// In names nothing is hidden and nothing is a control character.
std::string sizeTable(const RootScan& scan, const ListLimits& limits, const TableForm& form);

} // namespace orbel
