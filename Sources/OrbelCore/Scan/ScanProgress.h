#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace orbel {

/// A live snapshot of a scan that is running.
struct ScanProgress {
    /// One entry directly under the root.
    struct TopLevel {
        std::string name;        ///< as text, invalid UTF-8 replaced
        std::uint64_t bytes = 0; ///< allocated bytes counted under it so far
        bool isFolder = false;

        bool operator==(const TopLevel&) const = default;
    };

    std::uint64_t entries = 0;      ///< entries listed so far
    std::uint64_t bytes = 0;        ///< allocated bytes so far; hard-linked files are left out until the end
    std::uint64_t unreadable = 0;   ///< entries that could not be read so far
    double elapsed = 0;             ///< seconds since the walk began
    std::vector<TopLevel> topLevel; ///< the largest first, equal ones in the order of discovery

    bool operator==(const ScanProgress&) const = default;
};

/// Receives progress on the thread that runs the scan.
using ScanProgressCallback = std::function<void(const ScanProgress&)>;

} // namespace orbel
