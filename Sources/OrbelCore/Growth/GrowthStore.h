#pragma once

#include "Growth/Growth.h"
#include "Scan/FileTree.h"

#include <optional>
#include <string>

namespace orbel {

/// The summaries of earlier scans, one file for each root and the patterns that were left out of it, in a
/// folder of this user's own. Damaged files and those of other users are never believed; damaged ones are
/// replaced by the next summary.
///
/// Any thread may use it. Of two scans of one root that end at the same time one is kept, and whole.
class GrowthStore {
public:
    /// What keeping a scan gives.
    struct Kept {
        std::optional<Growth> growth;       ///< absent when there is no earlier scan of that root
        std::optional<std::string> failure; ///< why this one could not be kept, to be shown
    };

    /// ScanSummary::excludedPatterns.
    using Patterns = std::vector<std::string>;

    /// A store in the folder at this absolute path, which is made (mode 0700) when something is to be kept.
    explicit GrowthStore(std::string folder) : folder_(std::move(folder)) {}

    /// The store's place in the folder where applications keep their data: beside the journal.
    static std::string defaultFolder(const std::string& applicationSupportFolder);

    /// Compares a complete scan with the one of the same root and patterns that was kept last, and keeps it
    /// (mode 0600) in that one's place. What ScanSummary::of() has nothing for is neither kept nor compared.
    Kept keep(const FileTree& tree, Date measuredAt) const;

    /// The summary kept last of a root that was walked; absent when there is none that can be believed.
    std::optional<ScanSummary> latest(const std::string& root, const Patterns& patterns = {}) const;

    /// The file of a root's summary.
    std::string pathFor(const std::string& root, const Patterns& patterns = {}) const;

private:
    std::string folder_;
};

} // namespace orbel
