#include "Commands/ScanReport.h"

#include "Platform/Process.h"
#include "Safety/PathCanonicalizer.h"
#include "Scan/Coverage.h"
#include "Scan/VolumeInfo.h"

#include <nlohmann/json.hpp>

namespace orbel {

using nlohmann::json;

namespace {

NodeIndex topLevelAncestor(const FileTree& tree, NodeIndex node) {
    while (tree.parentIndex[node] != 0)
        node = tree.parentIndex[node];
    return node;
}

/// The children of a folder, and when `isNested`, each folder's entries and its children down to `depth`.
json childrenOf(const FileTree& tree, NodeIndex folder, const ListLimits& limits, bool isNested,
                std::size_t depth) {
    json children = json::array();
    for (const NodeIndex child : limits.shown(tree, folder)) {
        json object = {{"path", tree.path(child, PathCanonicalizer::shared())},
                       {"allocatedBytes", tree.allocated(child)},
                       {"isFolder", tree.isFolder(child)}};
        if (tree.isExcluded(child))
            object["isExcluded"] = true;
        if (isNested && tree.isFolder(child)) {
            object["entries"] = std::uint64_t{tree.descendantCount(child)} + 1;
            if (depth > 1)
                object["children"] = childrenOf(tree, child, limits, isNested, depth - 1);
        }
        children.push_back(std::move(object));
    }
    return children;
}

json topLevelOf(const FileTree& tree, const ListLimits& limits, bool isNested) {
    if (tree.count() == 0)
        return json::array();
    auto children = childrenOf(tree, 0, limits, isNested, limits.depth);
    const auto linked = topLevelNodesSharingLinks(tree);
    const auto shown = limits.shown(tree, 0);
    for (std::size_t i = 0; i < shown.size(); ++i)
        children[i]["hasHardLinks"] = linked.contains(shown[i]);
    return children;
}

} // namespace

std::set<NodeIndex> topLevelNodesSharingLinks(const FileTree& tree) {
    std::set<NodeIndex> sharing;
    for (const auto& [file, members] : tree.hardLinkMembers) {
        std::set<NodeIndex> tops;
        for (const NodeIndex member : members)
            tops.insert(topLevelAncestor(tree, member));
        if (tops.size() > 1)
            sharing.merge(tops);
    }
    return sharing;
}

json scanReport(const std::string& root, const RootScan& scan, const ListLimits& limits, bool isNested) {
    const ScanResult& result = scan.result;
    const FileTree& tree = result.tree;
    json report = {
        {"root", root},
        {"entries", tree.count()},
        {"allocatedBytes", tree.count() > 0 ? tree.allocated(0) : 0},
        {"unreadable", tree.unreadableCount},
        {"cloudFilesNotDownloaded", tree.datalessCount},
        {"otherVolumesSkipped", tree.otherVolumeCount},
        {"cancelled", result.cancelled},
        {"durationSeconds", result.duration},
        {"firstProgressSeconds", result.firstProgress.value_or(-1)},
        {"peakFootprintBytes", platform::peakFootprintBytes()},
        {"children", topLevelOf(tree, limits, isNested)},
    };
    putKeptScan(report, scan);
    if (const auto volume = scan.volume()) {
        json figures = *volume;
        figures["purgeable"] = volume->purgeable();
        figures["otherVolumes"] = volume->otherVolumes();
        report["volume"] = std::move(figures);
        report["notMeasuredBytes"] =
            tree.count() > 0 ? Coverage(volume->used, tree).notMeasured() : volume->used;
    }
    return report;
}

} // namespace orbel
