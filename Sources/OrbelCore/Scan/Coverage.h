#pragma once

#include "Scan/FileTree.h"

#include <cstdint>
#include <nlohmann/json_fwd.hpp>

namespace orbel {

/// What a scan measured, set against what the volume says is used. A plain value.
struct Coverage {
    std::uint64_t used = 0;     ///< bytes in use on the volume at the time of the scan
    std::uint64_t measured = 0; ///< allocated bytes of the scanned root, every hard-linked file once
    std::uint64_t unreadableEntries = 0;
    std::uint64_t cloudFilesNotDownloaded = 0;
    std::uint64_t otherVolumesSkipped = 0;

    Coverage() = default;
    /// `tree` is finished and has a root.
    Coverage(std::uint64_t used, const FileTree& tree);

    /// Used bytes that the scan did not see.
    std::uint64_t notMeasured() const { return used > measured ? used - measured : 0; }
    /// Happens where files share blocks, which are counted at each of them.
    bool measuredMoreThanUsed() const { return used < measured; }

    bool operator==(const Coverage&) const = default;
};

void to_json(nlohmann::json& json, const Coverage& coverage);
void from_json(const nlohmann::json& json, Coverage& coverage);

} // namespace orbel
