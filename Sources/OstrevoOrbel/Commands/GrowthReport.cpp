#include "Commands/GrowthReport.h"

#include "Compare/GrownFolders.h"
#include "Safety/PathCanonicalizer.h"
#include "Util/JsonPath.h"

namespace orbel {

using nlohmann::json;

namespace {

json growthJson(const std::optional<KeptScan>& earlier, const FileTree& tree) {
    json folders = json::array();
    if (!earlier)
        return {{"since", nullptr}, {"folders", std::move(folders)}};
    const auto comparison = ScanComparison::between(earlier->tree, tree);
    for (const auto& folder : grownFolders(comparison, earlier->tree, tree)) {
        folders.push_back(
            {{"grownBytes", folder.grownBytes}, {"allocatedBytes", tree.allocated(folder.node)}});
        putPath(folders.back(), "path", tree.path(folder.node, PathCanonicalizer::shared()));
    }
    return {{"since", iso8601(earlier->origin.measuredAt)}, {"folders", std::move(folders)}};
}

} // namespace

GrowthReport growthReport(const ScanResult& result, const UserContext& user) {
    const auto& tree = result.tree;
    if (const auto& reason = user.policy().homeReason())
        return {.growth = growthJson({}, tree), .failure = reason};
    if (result.cancelled)
        return {.growth = growthJson({}, tree), .failure = "The scan is not complete"};
    const auto& archive = user.scanArchive();
    GrowthReport report;
    report.growth = growthJson(archive.newest(tree.rootPath, tree.exclusions.patterns), tree);
    if (auto kept = archive.keep(tree, ScanOrigin::ofHere(result), currentDate()); !kept)
        report.failure = std::move(kept.error());
    return report;
}

} // namespace orbel
