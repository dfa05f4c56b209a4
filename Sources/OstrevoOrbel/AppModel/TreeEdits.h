#pragma once

#include "AppModel/Inbox.h"
#include "AppModel/ScanOutcome.h"
#include "Scan/FileTree.h"

#include <deque>
#include <functional>
#include <memory>
#include <QObject>
#include <string>
#include <vector>

namespace orbel {

class AppModel;

/// Brings what has changed on the disk into the tree that is shown: on a copy, on another thread, one change
/// after another; the copy then takes the tree's place. A new scan makes what is under way void, since it
/// looks at the disk itself. Belongs to the AppModel.
class TreeEdits final : public QObject {
    Q_OBJECT

public:
    explicit TreeEdits(AppModel& app);

    /// What was at these paths is gone.
    void remove(std::vector<std::string> paths);
    /// What was at these paths, and was removed from this tree, is back. What was never in this tree stays
    /// unknown to it until the next scan.
    void restore(std::vector<std::string> paths);

    /// The folder at this path holds what `fresh` found in it, whose root it is. A scan that begins before
    /// this is done makes it void.
    void splice(std::string path, std::shared_ptr<const FileTree> fresh);

    bool isBusy() const { return isBusy_; }

Q_SIGNALS:
    /// The last of the changes is in the tree.
    void settled();

private:
    using Edit = std::function<void(FileTree& tree)>;

    struct Waiting {
        Edit edit;
        bool isOlderThanScan = false; ///< of what was seen before the scan that runs or comes
    };

    void add(Edit edit);
    void startNext();

    AppModel& app_;
    std::deque<Waiting> waiting_;
    bool isBusy_ = false;

    Inbox inbox_; ///< the last member
};

} // namespace orbel
