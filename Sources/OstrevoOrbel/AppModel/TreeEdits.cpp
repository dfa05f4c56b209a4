#include "AppModel/TreeEdits.h"

#include "Safety/PathCanonicalizer.h"

#include <unordered_set>
#include <utility>

namespace orbel {

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
    });
}

void TreeEdits::splice(std::string path, std::shared_ptr<const FileTree> fresh) {
    add(
        [path = std::move(path), fresh = std::move(fresh)](FileTree& tree) {
            const auto folder = tree.index(path, PathCanonicalizer::shared());
            if (folder && *folder != 0 && tree.isFolder(*folder))
                tree = tree.spliced(*folder, *fresh);
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
            for (const auto& waiting : edits)
                waiting.edit(edited.tree);
            return scanOutcome(std::move(edited), reader, home);
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
