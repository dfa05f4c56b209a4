#pragma once

#include "Growth/ScanSummary.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace orbel {

/// A folder that holds more than it did.
struct GrownFolder {
    std::string path; ///< absolute, as it was walked
    /// By how much at least, without what folders in it grew that are listed themselves.
    std::uint64_t grownBytes = 0;
    std::uint64_t bytes = 0; ///< what all that is in it takes now

    bool operator==(const GrownFolder&) const = default;
};

/// What grew between two scans of one root. A plain value.
struct Growth {
    Date since{};                     ///< when the earlier one was made
    std::vector<GrownFolder> folders; ///< what grew most first; equal ones by path

    bool operator==(const Growth&) const = default;

    static constexpr std::size_t mostFolders = 10;
    static constexpr std::uint64_t leastBytes = 1'000'000; ///< smaller growth is not listed

    /// Compares two summaries of the same root.
    ///
    /// Nothing counts twice. A folder is listed by itself when it makes up a twentieth or more of what grew
    /// in the one that holds it; that one is left with the rest, or left out when that is less than a tenth.
    /// What the earlier summary was too short to name is taken to have weighed as much then as it can have,
    /// so that no figure is larger than the truth. A folder that only one of the two scans left out, what is
    /// in it and what holds it are not compared; what lies beside it is.
    static Growth between(const ScanSummary& before, const ScanSummary& after);
};

} // namespace orbel
