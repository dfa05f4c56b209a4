#include "AppModel/ScanGrowth.h"

#include "Growth/GrowthStore.h"
#include "Models/Wording.h"
#include "Safety/PathCanonicalizer.h"
#include "Util/PathText.h"

namespace orbel {

GrowthModel::Content scanGrowth(const ScanOutcome& outcome, const std::string& folder,
                                const std::string& home) {
    if (outcome.cancelled || folder.empty())
        return {};
    const auto& tree = *outcome.tree;
    const auto& canonicalizer = PathCanonicalizer::shared();
    const auto kept = GrowthStore(folder).keep(tree, std::chrono::floor<Date::duration>(outcome.finishedAt));
    GrowthModel::Content content;
    if (kept.failure)
        content.failure = textOf(*kept.failure);
    if (!kept.growth)
        return content;

    content.since = kept.growth->since;
    for (const auto& grown : kept.growth->folders) {
        const auto path = canonicalizer.visiblePath(grown.path);
        const auto node = tree.index(path, canonicalizer);
        if (!node)
            continue; // the visible name of its path leads elsewhere: there is nothing to show on the map
        content.folders.push_back({.node = *node,
                                   .place = path,
                                   .path = textOf(tildePath(path, home)),
                                   .kind = static_cast<int>(mainKind(kindTotals(tree, *node))),
                                   .bytes = grown.grownBytes});
    }
    return content;
}

} // namespace orbel
