#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

namespace orbel {

/// The capacity of the volume that holds a path, in bytes. A plain value.
struct VolumeInfo {
    std::uint64_t total = 0;
    std::uint64_t free = 0; ///< available to the user now
    std::uint64_t used = 0;
    std::uint64_t availableForImportantUsage = 0; ///< free plus what the system can free on its own

    /// What the system can free on its own.
    std::uint64_t purgeable() const;
    /// What is neither used nor free here: other volumes of a shared container, or blocks kept
    /// for the system.
    std::uint64_t otherVolumes() const;

    /// Absent when the path's file system cannot be asked or its figures do not fit 64 bits.
    static std::optional<VolumeInfo> read(const std::string& path);
    /// The used bytes as the volume itself counts them; absent where it has no such figure or it is 0.
    static std::optional<std::uint64_t> spaceUsed(const std::string& path);
    /// The root of the volume that holds the user's data: what "the whole disk" means here.
    static std::string dataVolumePath();

    bool operator==(const VolumeInfo&) const = default;
};

void to_json(nlohmann::json& json, const VolumeInfo& volume);
void from_json(const nlohmann::json& json, VolumeInfo& volume);

} // namespace orbel
