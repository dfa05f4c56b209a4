#include "AppModel/RescanFlow.h"

#include "Models/Wording.h"
#include "Safety/PathCanonicalizer.h"
#include "Util/PathText.h"

#include <utility>

namespace orbel {

RescanFlow::RescanFlow(const AppEnvironment& environment, ScanFlow& scan, TreeEdits& edits, MoveFlow& moves,
                       const Activity& activity, Notice& notice)
    : environment_(environment),
      scan_(scan),
      edits_(edits),
      moves_(moves),
      activity_(activity),
      notice_(notice) {
    connect(&activity, &Activity::changed, this, [this] {
        if (!activity_.isIdle())
            stop();
    });
    connect(&scan, &ScanFlow::scanRootChanged, this, &RescanFlow::stop);
}

void RescanFlow::start(quint32 node) {
    const auto& tree = scan_.tree();
    if (isRunning() || !scan_.isMeasuredHere() || node >= tree->count())
        return;
    if (!activity_.isIdle()) {
        notice_.show(tr("A folder is measured again when nothing else runs."));
        return;
    }
    if (node == 0) {
        scan_.measureAgain();
        return;
    }
    text_ = tr("Measuring %1 again…")
                .arg(textOf(tildePath(tree->path(node, PathCanonicalizer::shared()), environment_.home)));
    job_.run(
        [tree, node, scan = environment_.scan,
         exclusions = scan_.excluded().exclusions()](const LatestJob::Run& run) {
            Measured measured;
            // What changes between the look at it and the walk is looked at once more.
            for (int attempt = 0; attempt < 3; ++attempt) {
                measured.target = rescanTarget(*tree, node, exclusions);
                if (measured.target.kind != RescanTarget::Kind::folder)
                    return measured;
                measured.result = scan(
                    tree->walkedPath(measured.target.node), run.cancellation(),
                    [](const ScanProgress& /*progress*/) {}, exclusions);
                const auto& fresh = measured.result.tree;
                if (measured.result.cancelled || (fresh.count() > 0 && fresh.isFolder(0)))
                    return measured;
            }
            measured.target.kind = RescanTarget::Kind::unreachable;
            return measured;
        },
        [this, tree](Measured measured) { take(*tree, std::move(measured)); });
    Q_EMIT changed();
}

void RescanFlow::startWhole() {
    if (isRunning() || !scan_.isMeasuredHere() || !activity_.isIdle())
        return;
    text_ = tr("Measuring %1 again…").arg(scan_.rootText());
    job_.run(
        [root = scan_.scanRoot(), scan = environment_.scan, reader = DiskReader(environment_),
         home = environment_.home, exclusions = scan_.excluded().exclusions()](const LatestJob::Run& run) {
            auto result = scan(
                root, run.cancellation(), [](const ScanProgress& /*progress*/) {}, exclusions);
            return scanOutcome(std::move(result), reader, home);
        },
        [this](ScanOutcome fresh) { takeWhole(std::move(fresh)); });
    Q_EMIT changed();
}

void RescanFlow::takeWhole(ScanOutcome fresh) {
    text_.clear();
    Q_EMIT changed();
    const auto& tree = *fresh.tree;
    if (tree.count() == 0 || tree.flags(0).contains(NodeFlags::unreadable)) {
        notice_.show(tr("%1 could not be read.").arg(scan_.rootText()));
        return;
    }
    moves_.untickChanged(tree);
    scan_.takeFresh(std::move(fresh));
}

void RescanFlow::stop() {
    if (!isRunning())
        return;
    job_.drop();
    text_.clear();
    Q_EMIT changed();
}

void RescanFlow::take(const FileTree& tree, Measured measured) {
    using Kind = RescanTarget::Kind;
    text_.clear();
    Q_EMIT changed();
    const auto path = tree.path(measured.target.node, PathCanonicalizer::shared());
    const auto showUnreadable = [&] {
        notice_.show(tr("%1 could not be read.").arg(textOf(tildePath(path, environment_.home))));
    };
    switch (measured.target.kind) {
    case Kind::wholeTree:
        scan_.measureAgain();
        return;
    case Kind::unreachable:
        showUnreadable();
        return;
    case Kind::gone:
        moves_.untickInside(path);
        edits_.remove({path});
        return;
    case Kind::folder:
        break;
    }
    if (measured.result.tree.flags(0).contains(NodeFlags::unreadable))
        showUnreadable();
    moves_.untickInside(path);
    edits_.splice(path, sharedTree(std::move(measured.result.tree)));
}

} // namespace orbel
