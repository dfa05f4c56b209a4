#include "Models/GrowthModel.h"

#include "Models/Wording.h"

namespace orbel {

void GrowthModel::set(Content content, std::chrono::system_clock::time_point now) {
    folders_.setRows(std::move(content.folders));
    since_ = content.since ? tr("since %1").arg(recentDayText(*content.since, now)) : QString();
    failure_ = std::move(content.failure);
    Q_EMIT changed();
}

void GrowthModel::follow(const FileTree& tree, const PathCanonicalizer& canonicalizer) {
    auto folders = folders_.rows();
    std::erase_if(folders, [&](GrowthFolder& folder) {
        const auto node = tree.index(folder.place, canonicalizer);
        folder.node = node.value_or(0);
        return !node;
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
