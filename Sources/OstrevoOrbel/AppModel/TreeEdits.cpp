#include "AppModel/TreeEdits.h"

#include "AppModel/AppModel.h"

#include <unordered_set>
#include <utility>

namespace orbel {

TreeEdits::TreeEdits(AppModel& app) : app_(app) {
    connect(&app, &AppModel::scanFinished, this, &TreeEdits::startNext);
    connect(&app, &AppModel::scanStateChanged, this, [this] {
        if (app_.isScanning())
            std::erase_if(waiting_, &Waiting::isOlderThanScan);
    });
}

void TreeEdits::remove(std::vector<std::string> paths) {
    add([paths = std::move(paths), canonicalizer = app_.policy().canonicalizer()](FileTree& tree) {
        std::vector<NodeIndex> gone;
        for (const auto& path : paths) {
            if (const auto node = tree.index(path, canonicalizer))
                gone.push_back(*node);
        }
        tree.remove(gone);
    });
}

void TreeEdits::restore(std::vector<std::string> paths) {
    add([paths = std::unordered_set<std::string>(paths.begin(), paths.end()),
         canonicalizer = app_.policy().canonicalizer()](FileTree& tree) {
        std::vector<NodeIndex> back;
        for (const auto& [node, holder] : tree.detachedFrom) {
            if (paths.contains(tree.path(node, canonicalizer)))
                back.push_back(node);
        }
        tree.restore(back);
    });
}

void TreeEdits::splice(std::string path, std::shared_ptr<const FileTree> fresh) {
    waiting_.push_back({.edit =
                            [path = std::move(path), fresh = std::move(fresh),
                             canonicalizer = app_.policy().canonicalizer()](FileTree& tree) {
                                const auto folder = tree.index(path, canonicalizer);
                                if (folder && *folder != 0 && tree.isFolder(*folder))
                                    tree = tree.spliced(*folder, *fresh);
                            },
                        .isOlderThanScan = true});
    startNext();
}

void TreeEdits::add(Edit edit) {
    waiting_.push_back({.edit = std::move(edit)});
    startNext();
}

void TreeEdits::startNext() {
    // What waits for a scan is made in its tree: it may have looked before the disk changed.
    if (isBusy_ || waiting_.empty() || app_.isScanning())
        return;
    isBusy_ = true;
    inbox_.runAside(
        "orbel.tree-edit",
        [tree = app_.tree(), reader = app_.diskReader(), home = app_.home(),
         edits = std::exchange(waiting_, {})] {
            ScanResult edited;
            edited.tree = *tree;
            for (const auto& waiting : edits)
                waiting.edit(edited.tree);
            return scanOutcome(std::move(edited), reader, home);
        },
        [this, base = app_.tree()](ScanOutcome edited) {
            isBusy_ = false;
            app_.takeEdit(base, std::move(edited));
            startNext();
            if (!isBusy_)
                Q_EMIT settled();
        });
}

} // namespace orbel
