#include "AppModel/ExclusionFlow.h"

#include "Models/ByteFigure.h"
#include "Models/Wording.h"
#include "Platform/FileStatus.h"
#include "Safety/PathCanonicalizer.h"
#include "Util/FileUrl.h"
#include "Util/PathText.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace orbel {

namespace {

/// The folder at this path as it is left out; absent when there is none.
std::optional<std::string> folderAt(const std::string& path) {
    auto real = PathCanonicalizer::shared().visiblePath(excludedPath(path));
    const auto status = platform::fileStatus(real);
    if (!status || status->type != platform::FileType::directory)
        return std::nullopt;
    return real;
}

std::vector<std::string> leftOutOf(const FileTree& tree) {
    std::vector<std::string> paths;
    for (const NodeIndex node : tree.excludedNodes) {
        if (tree.isAttached(node))
            paths.push_back(tree.path(node, PathCanonicalizer::shared()));
    }
    std::ranges::sort(paths);
    return paths;
}

} // namespace

ExclusionFlow::ExclusionFlow(const AppEnvironment& environment, ScanFlow& scan, TreeEdits& edits,
                             RescanFlow& rescan, MoveFlow& moves, const Activity& activity, Notice& notice)
    : environment_(environment),
      scan_(scan),
      edits_(edits),
      rescan_(rescan),
      moves_(moves),
      activity_(activity),
      notice_(notice) {
    connect(&scan, &ScanFlow::treeChanged, this, &ExclusionFlow::followTree);
    // What waits for other work goes on once that has ended, and is through with what it began.
    connect(&edits, &TreeEdits::settled, this, &ExclusionFlow::reconcile, Qt::QueuedConnection);
    connect(&rescan, &RescanFlow::changed, this, &ExclusionFlow::reconcile, Qt::QueuedConnection);
    connect(&activity, &Activity::changed, this, &ExclusionFlow::reconcile, Qt::QueuedConnection);
    update({});
}

void ExclusionFlow::exclude(quint32 node) {
    const auto& tree = *scan_.tree();
    if (!scan_.isMeasuredHere() || node == 0 || node >= tree.count() || !tree.isFolder(node)
        || tree.isExcluded(node))
        return;
    if (!activity_.isIdle()) {
        notice_.show(tr("A folder is left out when nothing else runs."));
        return;
    }
    const auto path = tree.path(node, PathCanonicalizer::shared());
    const auto size = ByteFigure(tree.allocated(node)).text();
    add(path);
    notice_.show(tr("%1 is left out of measuring: its %2 no longer count.").arg(shown(path), size),
                 tr("Undo"), [this, path] { takeOut(path); });
}

void ExclusionFlow::include(quint32 node) {
    const auto& tree = *scan_.tree();
    if (scan_.isForeign() || node >= tree.count() || !tree.isExcluded(node))
        return;
    takeOut(tree.path(node, PathCanonicalizer::shared()));
}

void ExclusionFlow::remove(int row) {
    if (row >= 0 && row < folders_.rowCount())
        takeOut(std::string(folders_.rows()[static_cast<std::size_t>(row)].place));
}

void ExclusionFlow::addFolder(const QUrl& folder) {
    const auto path = pathOfFileUrl(folder.toEncoded().toStdString());
    if (!path)
        return;
    adding_.add([path = *path] { return folderAt(path); },
                [this, path = *path](std::optional<std::string> found) {
                    if (!found)
                        notice_.show(tr("%1 is not a folder that can be left out.").arg(shown(path)));
                    else if (*found == "/")
                        notice_.show(tr("The whole file system cannot be left out."));
                    else
                        add(*found);
                });
}

void ExclusionFlow::add(const std::string& path) {
    if (!scan_.excluded().add(path))
        return;
    moves_.untickAround(path);
    update(path);
}

void ExclusionFlow::takeOut(const std::string& path) {
    // What a folder around it leaves out stays left out.
    if (scan_.excluded().remove(path))
        update(path);
}

/// The list, after this folder has come or gone.
void ExclusionFlow::update(const std::string& path) {
    std::vector<ExcludedFolder> rows;
    for (const auto& place : scan_.excluded().paths())
        rows.push_back({.path = shown(place), .place = place});
    folders_.setRows(std::move(rows));
    // How many entries a root has that holds it is another question now.
    if (!path.empty())
        scan_.knownRoots().forgetEntries(path);
    tried_.clear();
    Q_EMIT changed();
    reconcile();
}

void ExclusionFlow::followTree() {
    tried_.clear();
    leftOut_ = leftOutOf(*scan_.tree());
    Q_EMIT leftOutChanged();
    QMetaObject::invokeMethod(this, &ExclusionFlow::reconcile, Qt::QueuedConnection);
}

/// Brings the tree that is shown in line with the folders that are left out.
void ExclusionFlow::reconcile() {
    if (!scan_.isMeasuredHere() || edits_.isBusy())
        return;
    const auto& tree = *scan_.tree();
    const auto& canonicalizer = PathCanonicalizer::shared();
    std::vector<std::string> toLeave;
    for (const auto& path : scan_.excluded().paths()) {
        const auto node = tree.index(path, canonicalizer);
        if (node && *node != 0 && tree.isFolder(*node) && !tree.isExcluded(*node))
            toLeave.push_back(path);
    }
    if (!toLeave.empty()) {
        edits_.leaveOut(std::move(toLeave));
        return;
    }
    if (rescan_.isRunning() || !activity_.isIdle())
        return;
    for (const auto& path : leftOut_) {
        const auto node = tree.index(path, canonicalizer);
        if (node && !scan_.excluded().contains(path) && tried_.insert(path).second) {
            rescan_.start(*node);
            return;
        }
    }
}

QString ExclusionFlow::shown(const std::string& path) const {
    return textOf(tildePath(path, environment_.home));
}

QString ExclusionFlow::leftOutSentence() const {
    if (leftOut_.empty())
        return {};
    const auto first = shown(leftOut_.front());
    return leftOut_.size() == 1
               ? tr("%1 was left out").arg(first)
               : tr("%1 and %2 more were left out").arg(first, countText(leftOut_.size() - 1));
}

} // namespace orbel
