#include "AppModel/TreeEdits.h"

#include "Safety/PathCanonicalizer.h"

#include <unordered_set>
#include <utility>

namespace orbel {

namespace {

std::int64_t bytesOf(const FileTree& tree) {
    return tree.count() == 0 ? 0 : static_cast<std::int64_t>(tree.allocated(0));
}

} // namespace

TreeEdits::TreeEdits(const AppEnvironment& environment, ScanFlow& scan, DiskState& disk)
    : environment_(environment), scan_(scan), disk_(disk) {
    connect(&scan, &ScanFlow::scanFinished, this, &TreeEdits::startNext);
    connect(&scan, &ScanFlow::scanStateChanged, this, [this] {
        if (scan_.isScanning())
            std::erase_if(waiting_, &Waiting::isOlderThanScan);
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
            const bool wasLeftOut = tree.isExcluded(*folder);
            const auto before = bytesOf(tree);
            tree = tree.spliced(*folder, *fresh);
            return wasLeftOut ? bytesOf(tree) - before : 0;
        },
        true);
}

void TreeEdits::add(Edit edit, bool isOlderThanScan) {
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
