#include "AppModel/TreeEdits.h"

#include "Safety/PathCanonicalizer.h"

#include <unordered_set>
#include <utility>

namespace orbel {

namespace {

std::int64_t bytesOf(const FileTree& tree) {
    return tree.count() == 0 ? 0 : static_cast<std::int64_t>(tree.allocated(0));
}

/// What one tree left out and the other has measured, as that has it.
std::int64_t newlyMeasured(const FileTree& before, const FileTree& after) {
    std::int64_t bytes = 0;
    for (const NodeIndex node : before.excludedNodes) {
        const auto& canonicalizer = PathCanonicalizer::shared();
        const auto now = after.index(before.path(node, canonicalizer), canonicalizer);
        if (now && !after.isExcluded(*now))
            bytes += static_cast<std::int64_t>(after.allocated(*now));
    }
    return bytes;
}

} // namespace

TreeEdits::TreeEdits(const AppEnvironment& environment, ScanFlow& scan, DiskState& disk)
    : environment_(environment), scan_(scan), disk_(disk) {
    connect(&scan, &ScanFlow::scanFinished, this, &TreeEdits::startNext);
    connect(&scan, &ScanFlow::scanStateChanged, this, [this] {
        if (scan_.isScanning())
            std::erase_if(waiting_, &Waiting::isOlderThanScan);
        else if (scan_.isForeign())
            waiting_.clear();
    });
}

void TreeEdits::remove(std::vector<std::string> paths) {
    add([paths = std::move(paths)](FileTree& tree) {
        std::vector<NodeIndex> gone;
        for (const auto& path : paths) {
            if (const auto node = tree.index(path, PathCanonicalizer::shared()))
                gone.push_back(*node);
        }
        tree.remove(gone);
        return 0;
    });
}

void TreeEdits::restore(std::vector<std::string> paths) {
    add([paths = std::unordered_set<std::string>(paths.begin(), paths.end())](FileTree& tree) {
        std::vector<NodeIndex> back;
        for (const auto& [node, holder] : tree.detachedFrom) {
            if (paths.contains(tree.path(node, PathCanonicalizer::shared())))
                back.push_back(node);
        }
        tree.restore(back);
        return 0;
    });
}

void TreeEdits::leaveOut(std::vector<std::string> paths) {
    add(
        [paths = std::move(paths)](FileTree& tree) {
            const auto before = bytesOf(tree);
            for (const auto& path : paths) {
                const auto folder = tree.index(path, PathCanonicalizer::shared());
                if (folder && *folder != 0 && tree.isFolder(*folder) && !tree.isExcluded(*folder))
                    tree = tree.leavingOut(*folder);
            }
            return bytesOf(tree) - before;
        },
        true);
}

void TreeEdits::splice(std::string path, std::shared_ptr<const FileTree> fresh) {
    add(
        [path = std::move(path), fresh = std::move(fresh)](FileTree& tree) {
            const auto folder = tree.index(path, PathCanonicalizer::shared());
            if (!folder || *folder == 0 || !tree.isFolder(*folder))
                return std::int64_t{0};
            auto made = tree.spliced(*folder, *fresh);
            const auto bytes = newlyMeasured(tree, made) - newlyMeasured(made, tree);
            tree = std::move(made);
            return bytes;
        },
        true);
}

void TreeEdits::add(Edit edit, bool isOlderThanScan) {
    if (scan_.isForeign())
        return; // it tells of another disk
    waiting_.push_back({std::move(edit), isOlderThanScan});
    startNext();
}

void TreeEdits::startNext() {
    // What waits for a scan is made in its tree: it may have looked before the disk changed.
    if (isBusy() || waiting_.empty() || scan_.isScanning())
        return;
    disk_.setMomentExpected(true);
    job_.run(
        [tree = scan_.tree(), reader = disk_.reader(), home = environment_.home,
         edits = std::exchange(waiting_, {})] {
            ScanResult edited;
            edited.tree = *tree;
            std::int64_t bytesByExclusions = 0;
            for (const auto& waiting : edits)
                bytesByExclusions += waiting.edit(edited.tree);
            auto outcome = scanOutcome(std::move(edited), reader, home);
            outcome.bytesByExclusions = bytesByExclusions;
            return outcome;
        },
        [this, base = scan_.tree()](ScanOutcome edited) {
            disk_.setMomentExpected(false);
            scan_.takeEdit(base, std::move(edited));
            startNext();
            if (!isBusy())
                Q_EMIT settled();
        });
}

} // namespace orbel
