#pragma once

#include "Delete/DeletionItem.h"
#include "Delete/InUseChecker.h"
#include "Scan/FileTree.h"
#include "Util/Iso8601.h"

#include <functional>
#include <string>
#include <vector>

namespace orbel {

class SafetyPolicy;

/// Lists the folders that a program makes again: build output, fetched packages and caches. Evidence decides,
/// never a name alone: what lies beside the folder, a tag in it, or its place. Of folders inside each other
/// only the topmost. Never listed: the scanned root, what lies directly in the home folder, what holds
/// protected data or a version-control folder of its own at any depth, and what lies in programs' own data,
/// save the caches that may be moved from there.
struct RebuildableFinder {
    /// Seconds: what has not changed for so long is preselected.
    double unusedFor = 90.0 * 24 * 60 * 60;

    struct Row {
        NodeIndex index = 0;  ///< in the tree that was asked
        DeletionItem item;    ///< of the module rebuildable
        std::string evidence; ///< "Cargo.toml beside it"
        std::string program;  ///< what makes it again; empty when that is not known
        Date newestChange;    ///< in it, to the minute

        const std::string& id() const { return item.id; }

        bool operator==(const Row&) const = default;
    };

    using IsCancelled = std::function<bool()>;

    /// The largest first. Blocks: reads a few small files, asks the disk about each row, and git, where it is
    /// there, about those in its work folders: what git does not ignore has a note and is not preselected.
    /// Cancelled, it returns what it has so far. Any thread.
    std::vector<Row> run(const FileTree& tree, const SafetyPolicy& policy, Date now,
                         const InUseChecker::OpenFiles& openFiles,
                         const IsCancelled& isCancelled = nullptr) const;
};

} // namespace orbel
