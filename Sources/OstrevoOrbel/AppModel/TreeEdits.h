#pragma once

#include "AppModel/LatestJob.h"
#include "AppModel/ScanFlow.h"
#include "Scan/FileTree.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <QObject>
#include <string>
#include <vector>

namespace orbel {

/// Brings what has changed on the disk into the tree that is shown: on a copy, on another thread, one change
/// after another; the copy then takes the tree's place. A new scan makes what is under way void, since it
/// looks at the disk itself. Belongs to the AppModel.
class TreeEdits final : public QObject {
    Q_OBJECT

public:
    /// The arguments outlive this.
    TreeEdits(const AppEnvironment& environment, ScanFlow& scan, DiskState& disk);

    /// What was at these paths is gone.
    void remove(std::vector<std::string> paths);
    /// What was at these paths, and was removed from this tree, is back. What was never in this tree stays
    /// unknown to it until the next scan.
    void restore(std::vector<std::string> paths);

    /// These folders are left out of measuring.
    void leaveOut(std::vector<std::string> paths);

    /// The folder at this path holds what `fresh` found in it, whose root it is. A scan that begins before
    /// this is done makes it void.
    void splice(std::string path, std::shared_ptr<const FileTree> fresh);

    bool isBusy() const { return job_.isRunning(); }

Q_SIGNALS:
    /// The last of the changes is in the tree.
    void settled();

private:
    /// Gives ScanOutcome::bytesByExclusions.
    using Edit = std::function<std::int64_t(FileTree& tree)>;

    struct Waiting {
        Edit edit;
        bool isOlderThanScan; ///< of what was seen before the scan that runs or comes
    };

    void add(Edit edit, bool isOlderThanScan = false);
    void startNext();

    const AppEnvironment& environment_;
    ScanFlow& scan_;
    DiskState& disk_;
    std::deque<Waiting> waiting_;
    LatestJob job_{"orbel.tree-edit"};
};

} // namespace orbel
