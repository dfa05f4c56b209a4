#pragma once

#include "AppModel/DiskMoment.h"
#include "Models/SizedFoldersModel.h"
#include "Saved/ScanFile.h"
#include "Scan/KindTotals.h"
#include "Scan/ScanResult.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace orbel {

/// All that the window shows of a finished scan and that needs a look at every node: derived before the
/// result goes to the main thread, which must never wait for millions of nodes.
struct ScanOutcome {
    std::shared_ptr<const FileTree> tree;
    bool cancelled = false;
    std::chrono::system_clock::time_point finishedAt;
    double duration = 0; ///< seconds
    ScanOrigin origin;   ///< of a whole scan, also of one that was kept
    DiskMoment disk;     ///< read when the tree was done
    KindTotals kinds{};
    KindTotals trashedKinds{}; ///< the part of it that lies in the Trash
    /// Of an edited tree: by how many bytes it counts more because other folders are left out. The disk did
    /// not change by that.
    std::int64_t bytesByExclusions = 0;
    std::vector<ExtensionTotal> extensions; ///< the heaviest
    std::vector<SizedFolder> largestFolders;
    std::vector<std::string> unreadable; ///< visible paths of the first that could not be read
};

/// A scan that was kept, as it is shown. Its moment of the disk is of then, as far as it is known.
struct KeptOutcome {
    ScanOutcome outcome;
    std::string root;       ///< to be measured again; empty: that of the tree
    bool isForeign = false; ///< of another computer, or not to be taken for this one
};

/// Takes the tree out of `result`, and reads the disk. `home` is what "~" stands for.
ScanOutcome scanOutcome(ScanResult result, const DiskReader& reader, const std::string& home);

/// The same of the tree alone. `trashedItems`: the folder of the Trash's items; empty for no Trash.
ScanOutcome treeOutcome(ScanResult result, const std::string& trashedItems, const std::string& home);

/// A tree to be shared; to drop the last reference takes no time (see FreedAside.h).
std::shared_ptr<const FileTree> sharedTree(FileTree tree);

/// The attached folders that tell most about where the space went, largest first: a folder stands for what is
/// in it unless it is mostly in a few others, which then stand in its place.
std::vector<NodeIndex> tellingFolders(const FileTree& tree, std::size_t most);

} // namespace orbel
