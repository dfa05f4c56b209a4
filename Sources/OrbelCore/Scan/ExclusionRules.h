#pragma once

#include "Scan/Exclusions.h"

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace orbel::walk {

/// What one walk leaves out, ready to be asked about every entry. Immutable.
class ExclusionRules {
public:
    /// `root`: the real path of the walk, which is never left out itself.
    ExclusionRules(const Exclusions& exclusions, const std::string& root);

    bool isEmpty() const { return isEmpty_; }
    /// Whether an entry with this name is left out wherever it lies.
    bool leavesOutName(std::string_view name) const;
    /// Whether an entry with this name may be left out, which its path decides.
    bool mayLeaveOut(std::string_view name) const;
    /// Whether the entry at this absolute path, strictly inside the root, is left out because of its path.
    bool leavesOutPath(const std::string& path) const;

private:
    struct PathPattern {
        std::string text;
        std::string lastName; ///< what follows the last slash in it
        bool isBelowRoot;     ///< else it is matched with the whole path
    };

    void addPath(std::string path);
    void addPattern(std::string_view given);

    bool isEmpty_ = true;
    std::size_t belowRoot_; ///< where in a path that begins which is below the root
    std::unordered_set<std::string> paths_;
    std::unordered_set<std::string> names_; ///< of what is in paths_
    std::vector<std::string> namePatterns_;
    std::vector<PathPattern> pathPatterns_;
};

} // namespace orbel::walk
