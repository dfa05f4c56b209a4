#pragma once

#include "Delete/DeletionItem.h"
#include "Scan/FileTree.h"
#include "Util/Iso8601.h"

#include <cstddef>
#include <functional>
#include <vector>

namespace orbel {

class SafetyPolicy;

/// Lists the folders that hold nothing but empty folders and ".DS_Store" files: of those inside each other
/// only the topmost. Left alone are the scanned root, what lies directly in the home folder, packages,
/// version-control folders, hidden folders, node_modules and the like, parts of repositories, backups,
/// mailboxes and environments, mount points, the user's folders that the desktop names, the folders of
/// programs' own data, and every folder that holds one of these: an empty one of them is there for a purpose.
/// Where the root holds the home folder, only that is looked into, since nothing else can be moved.
struct EmptyFolderFinder {
    /// Seconds: what was changed later than so long ago is listed but not preselected.
    double settledFor = 24.0 * 60 * 60;

    struct Row {
        NodeIndex index = 0;         ///< in the tree that was asked
        DeletionItem item;           ///< of the module emptyFolders; blocked when the policy refuses it
        std::size_t nestedCount = 1; ///< empty folders in it, itself included
        Date changed;                ///< the latest change of one of them, to the minute

        const std::string& id() const { return item.id; }

        bool operator==(const Row&) const = default;
    };

    using IsCancelled = std::function<bool()>;

    /// By path. Blocks: apart from the tree it asks the disk for every row. Folders that are gone have no
    /// row; cancelled, it returns what it has so far. Any thread.
    std::vector<Row> run(const FileTree& tree, const SafetyPolicy& policy, Date now,
                         const IsCancelled& isCancelled = nullptr) const;

    /// The same of a tree that may be of another machine, whose home is not known: asks nothing but the tree.
    /// Its items are only shown, and none is preselected.
    static std::vector<Row> shownOnly(const FileTree& tree);
};

} // namespace orbel
