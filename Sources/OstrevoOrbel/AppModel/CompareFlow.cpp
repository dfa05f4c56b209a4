#include "AppModel/CompareFlow.h"

#include "Compare/GrownFolders.h"
#include "Models/Wording.h"
#include "Safety/PathCanonicalizer.h"
#include "Saved/ScanArchive.h"
#include "Util/PathText.h"

namespace orbel {

namespace {

GrowthModel::Content growthSince(const KeptScan& earlier, const FileTree& tree, const std::string& home) {
    GrowthModel::Content content{.since = earlier.origin.measuredAt, .folders = {}, .failure = {}};
    const auto comparison = ScanComparison::between(earlier.tree, tree);
    for (const auto& grown : grownFolders(comparison, earlier.tree, tree)) {
        const auto path = tree.path(grown.node, PathCanonicalizer::shared());
        content.folders.push_back({.node = grown.node,
                                   .place = path,
                                   .path = textOf(tildePath(path, home)),
                                   .kind = static_cast<int>(mainKind(kindTotals(tree, grown.node))),
                                   .bytes = grown.grownBytes});
    }
    return content;
}

} // namespace

CompareFlow::CompareFlow(const AppEnvironment& environment, const ScanFlow& scan,
                         const KeptScanSettings& keeping, Notice& notice)
    : environment_(environment), scan_(scan), keeping_(keeping), notice_(notice) {
    connect(&scan, &ScanFlow::scanFinished, this, &CompareFlow::begin);
    connect(&scan, &ScanFlow::treeChanged, this, &CompareFlow::follow);
}

void CompareFlow::begin() {
    if (scan_.isKept()) {
        // It is no new one to keep, and the rows are of another.
        clear();
        return;
    }
    if (scan_.isPartial() || !scan_.hasTree() || environment_.scansFolder.empty())
        return;
    tree_ = scan_.tree();
    job_.run(
        [archive = ScanArchive(environment_.scansFolder), tree = tree_, origin = scan_.origin(),
         home = environment_.home, keeps = keeping_.keeps()](const LatestJob::Run& /*run*/) {
            GrowthModel::Content content;
            if (const auto earlier = archive.newest(tree->rootPath, tree->exclusions.patterns))
                content = growthSince(*earlier, *tree, home);
            if (!keeps)
                return content;
            if (const auto kept = archive.keep(*tree, origin, currentDate()); !kept)
                content.failure = textOf(kept.error());
            return content;
        },
        [this](GrowthModel::Content content) { take(std::move(content)); });
}

void CompareFlow::take(GrowthModel::Content content) {
    if (!content.failure.isEmpty())
        notice_.show(tr("This scan could not be kept: %1").arg(content.failure));
    growth_.set(std::move(content), environment_.now());
    follow();
}

void CompareFlow::clear() {
    job_.drop();
    growth_.clear();
    tree_.reset();
}

void CompareFlow::follow() {
    const auto& tree = scan_.tree();
    if (tree->count() == 0) {
        clear(); // another scan has begun
    } else if (tree_ && tree_ != tree && !job_.isRunning()) {
        growth_.follow(*tree_, *tree, PathCanonicalizer::shared());
        tree_ = tree;
    }
}

} // namespace orbel
