#pragma once

#include "Delete/DeletionItem.h"

#include <span>
#include <vector>

namespace orbel {

/// For each item of a list, whether another one of the list stands for it, so that it is not to be moved,
/// counted or reported on its own: one of the same path (the first that is selectable, else the first), or a
/// selectable one that contains it. Paths are compared as text.
std::vector<bool> takenAlong(std::span<const DeletionItem> items);

} // namespace orbel
