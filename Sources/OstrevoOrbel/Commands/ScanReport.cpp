#include "Commands/ScanReport.h"

#include "Platform/Process.h"
#include "Safety/PathCanonicalizer.h"
#include "Scan/Coverage.h"
#include "Scan/VolumeInfo.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace orbel {

using nlohmann::json;

namespace {

NodeIndex topLevelAncestor(const FileTree& tree, NodeIndex node) {
    while (tree.parentIndex[node] != 0)
        node = tree.parentIndex[node];
    return node;
}

json childrenOf(const FileTree& tree, std::size_t top) {
    const auto linked = topLevelNodesSharingLinks(tree);
    json children = json::array();
    if (tree.count() == 0)
        return children;
    const auto all = tree.children(0);
    for (const NodeIndex child : all.first(std::min(top, all.size()))) {
        children.push_back({{"path", tree.path(child, PathCanonicalizer::shared())},
                            {"allocatedBytes", tree.allocated(child)},
                            {"isFolder", tree.isFolder(child)},
                            {"hasHardLinks", linked.contains(child)}});
        if (tree.isExcluded(child))
            children.back()["isExcluded"] = true;
    }
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

json scanReport(const std::string& root, const RootScan& scan, std::size_t top) {
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
        {"children", childrenOf(tree, top)},
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
