#include "Scan/Coverage.h"

#include <nlohmann/json.hpp>

namespace orbel {

Coverage::Coverage(std::uint64_t usedBytes, const FileTree& tree)
    : used(usedBytes),
      measured(tree.allocated(0)),
      unreadableEntries(tree.unreadableCount),
      cloudFilesNotDownloaded(tree.datalessCount),
      otherVolumesSkipped(tree.otherVolumeCount) {}

void to_json(nlohmann::json& json, const Coverage& coverage) {
    json = {{"used", coverage.used},
            {"measured", coverage.measured},
            {"unreadableEntries", coverage.unreadableEntries},
            {"cloudFilesNotDownloaded", coverage.cloudFilesNotDownloaded},
            {"otherVolumesSkipped", coverage.otherVolumesSkipped}};
}

void from_json(const nlohmann::json& json, Coverage& coverage) {
    json.at("used").get_to(coverage.used);
    json.at("measured").get_to(coverage.measured);
    json.at("unreadableEntries").get_to(coverage.unreadableEntries);
    json.at("cloudFilesNotDownloaded").get_to(coverage.cloudFilesNotDownloaded);
    json.at("otherVolumesSkipped").get_to(coverage.otherVolumesSkipped);
}

} // namespace orbel
