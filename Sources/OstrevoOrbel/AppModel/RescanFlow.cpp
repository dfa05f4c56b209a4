#include "AppModel/RescanFlow.h"

#include "AppModel/AppModel.h"
#include "AppModel/MoveFlow.h"
#include "AppModel/PutBackFlow.h"
#include "AppModel/TreeEdits.h"
#include "Models/Wording.h"
#include "Util/PathText.h"

#include <utility>

namespace orbel {

RescanFlow::RescanFlow(AppModel& app) : app_(app) {}

RescanFlow::~RescanFlow() {
    stop();
}

void RescanFlow::start(quint32 node) {
    const auto& tree = app_.tree();
    if (isRunning() || !app_.hasTree() || node >= tree->count() || app_.moves()->isDeleting()
        || app_.putBack()->isRunning())
        return;
    if (node == 0) {
        app_.measureAgain();
        return;
    }
    cancellation_ = std::make_shared<ScanCancellation>();
    text_ = tr("Measuring %1 again…")
                .arg(textOf(tildePath(tree->path(node, app_.policy().canonicalizer()), app_.home())));
    Q_EMIT changed();
    inbox_.runAside(
        "orbel.rescan",
        [tree, node, token = cancellation_, scan = app_.scanner()] {
            Measured measured;
            // What changes between the look at it and the walk is looked at once more.
            for (int attempt = 0; attempt < 3; ++attempt) {
                measured.target = rescanTarget(*tree, node);
                if (measured.target.kind != RescanTarget::Kind::folder)
                    return measured;
                measured.result = scan(tree->walkedPath(measured.target.node), *token,
                                       [](const ScanProgress& /*progress*/) {});
                const auto& fresh = measured.result.tree;
                if (measured.result.cancelled || (fresh.count() > 0 && fresh.isFolder(0)))
                    return measured;
            }
            measured.target.kind = RescanTarget::Kind::unreachable;
            return measured;
        },
        [this, tree, token = cancellation_](Measured measured) {
            take(token.get(), tree, std::move(measured));
        });
}

void RescanFlow::stop() {
    if (!isRunning())
        return;
    cancellation_->cancel();
    cancellation_.reset();
    text_.clear();
    Q_EMIT changed();
}

void RescanFlow::take(const ScanCancellation* token, const std::shared_ptr<const FileTree>& tree,
                      Measured measured) {
    using Kind = RescanTarget::Kind;
    if (cancellation_.get() != token)
        return;
    cancellation_.reset();
    text_.clear();
    Q_EMIT changed();
    const auto path = tree->path(measured.target.node, app_.policy().canonicalizer());
    const auto tellUnreadable = [&] {
        app_.tell(tr("%1 could not be read.").arg(textOf(tildePath(path, app_.home()))));
    };
    switch (measured.target.kind) {
    case Kind::wholeTree:
        app_.measureAgain();
        return;
    case Kind::unreachable:
        tellUnreadable();
        return;
    case Kind::gone:
        app_.moves()->untickInside(path);
        app_.treeEdits().remove({path});
        return;
    case Kind::folder:
        break;
    }
    if (measured.result.tree.flags(0).contains(NodeFlags::unreadable))
        tellUnreadable();
    app_.moves()->untickInside(path);
    app_.treeEdits().splice(path, sharedTree(std::move(measured.result.tree)));
}

} // namespace orbel
