#pragma once

#include "Scan/VolumeInfo.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace orbel {

struct AppEnvironment;

/// The figures of the disk that what was measured is set against, read at one moment.
struct DiskMoment {
    std::optional<VolumeInfo> disk;     ///< of the volume of the user's data
    std::optional<VolumeInfo> measured; ///< of the volume that holds the measured root
    std::optional<std::uint64_t> trash; ///< bytes in the Trash; absent when that is not known
    /// A later reading has a larger number; 0 for what was never read.
    std::uint64_t number = 0;
};

/// Reads such moments. A value that any thread may use by itself.
class DiskReader {
public:
    explicit DiskReader(const AppEnvironment& environment);

    /// Blocks: measures the Trash, and right after it the volumes.
    DiskMoment read(const std::string& measuredRoot) const;

    /// Where the items of the Trash lie: a real path, where it exists.
    std::string trashedItems() const;

private:
    std::function<std::optional<VolumeInfo>(const std::string&)> readVolume_;
    std::function<std::optional<std::uint64_t>(const std::string&)> measureTrash_;
    std::string dataVolumePath_;
    std::string trashFolder_;
};

} // namespace orbel
