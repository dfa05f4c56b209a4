#pragma once

#include "Scan/ScanCancellation.h"
#include "Scan/ScanProgress.h"
#include "Scan/ScanResult.h"

#include <cstdint>
#include <future>
#include <memory>
#include <optional>
#include <string>

namespace orbel {

/// The entry point of the scanning engine. Scanning never fails: what cannot be read is counted, and a root
/// that cannot be read gives an empty tree.
class TreeScanner {
public:
    /// What measuring one item on demand gives.
    struct Measurement {
        std::uint64_t bytes = 0;      ///< allocated bytes of the item, of a folder with all below it
        std::uint64_t unreadable = 0; ///< entries that could not be read; 1 when the item itself is gone
        std::optional<std::string> protectedInside{}; ///< a path in it that holds protected data
        /// Where another volume begins in it: a mount point, or a subvolume. Its contents were not looked at.
        std::optional<std::string> otherVolumeInside{};
        bool isEmptyFolder = false; ///< it holds nothing but empty folders and ".DS_Store" files

        bool operator==(const Measurement&) const = default;
    };

    /// Runs `scan` on a thread of its own, "orbel.scan", and returns at once. Progress arrives on that
    /// thread. The future does not wait for the scan when it is dropped; the token stops it.
    static std::future<ScanResult> scanInBackground(std::string root, std::optional<int> workers,
                                                    std::shared_ptr<const ScanCancellation> cancellation,
                                                    ScanProgressCallback progress);

    /// Scans on the calling thread and its workers. `workers` absent means the platform's default. Progress,
    /// where asked for, comes every 0.25 seconds on the calling thread and once at the end. What the
    /// exclusions name is left out, unless it is the root.
    static ScanResult scan(const std::string& root, std::optional<int> workers,
                           const ScanCancellation& cancellation, const ScanProgressCallback& progress,
                           const Exclusions& exclusions = {});

    /// Measures one file or folder, a symbolic link as the link itself; leaves nothing out. Blocks.
    static Measurement measure(const std::string& path, std::optional<int> workers = std::nullopt);

    /// The same, derived from a scan of the folder.
    static Measurement measurement(const FileTree& tree);
};

} // namespace orbel
