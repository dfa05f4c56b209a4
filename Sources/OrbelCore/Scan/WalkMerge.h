#pragma once

#include "Scan/FileTree.h"
#include "Scan/WalkStore.h"

#include <span>

namespace orbel::walk {

/// Moves what the workers found into a tree that holds only its root, below that root, and
/// empties the stores.
///
/// The order is the tree's alone: the entries of a folder stand together as they were listed, and folders
/// follow one another depth first, so every parent comes before its children and the same disk gives the same
/// numbers, independent of the timing of threads. Column after column is copied and the workers' copy of it
/// freed, several at a time, so that next to nothing is in memory twice.
void merge(WorkUnit& root, std::span<WorkerStore> stores, FileTree& into);

} // namespace orbel::walk
