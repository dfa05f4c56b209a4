#include "Models/GrowthModel.h"

#include "Models/Wording.h"
#include "Util/PathText.h"

#include <algorithm>

namespace orbel {

void GrowthModel::set(Content content, std::chrono::system_clock::time_point now) {
    folders_.setRows(std::move(content.folders));
    since_ = !content.since             ? QString()
             : *content.since == Date() ? tr("an unknown day")
                                        : recentDayText(*content.since, now);
    failure_ = std::move(content.failure);
    Q_EMIT changed();
}

void GrowthModel::follow(const FileTree& base, const FileTree& tree, const PathCanonicalizer& canonicalizer) {
    std::vector<std::string> leftOut;
    for (const NodeIndex node : tree.excludedNodes) {
        const auto path = tree.path(node, canonicalizer);
        if (const auto before = base.index(path, canonicalizer); before && !base.isExcluded(*before))
            leftOut.push_back(path);
    }
    auto folders = folders_.rows();
    std::erase_if(folders, [&](GrowthFolder& folder) {
        const auto node = tree.index(folder.place, canonicalizer);
        folder.node = node.value_or(0);
        return !node || std::ranges::any_of(leftOut, [&](const std::string& path) {
            return isPathInside(path, folder.place) || isPathInside(folder.place, path);
        });
    });
    folders_.setRows(std::move(folders));
}

QString GrowthModel::statement() const {
    return since_.isEmpty() ? tr("No comparison yet") : tr("Nothing grew");
}

QString GrowthModel::sentence() const {
    return since_.isEmpty() ? tr("Growth compares two complete scans of the same folder.")
                            : tr("No folder takes 1 MB more than it did.");
}

} // namespace orbel
