#pragma once

#include "Util/PathText.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace orbel {

/// Paths to ask whether something is at one of them or inside. Views of the vector, which must outlive it.
class PathSet {
public:
    explicit PathSet(const std::vector<std::string>& paths) : paths_(paths.begin(), paths.end()) {
        for (const auto path : paths_) {
            lengths_.resize(std::max(lengths_.size(), path.size() + 1));
            lengths_[path.size()] = true;
        }
    }

    bool covers(std::string_view path) const {
        while (path.size() > 1 && !contains(path))
            path = parentPath(path);
        return path.size() > 1;
    }

private:
    /// Most of the folders above a path are of a length that none of the paths has, which is cheaper to see
    /// than to hash them.
    bool contains(std::string_view path) const {
        return path.size() < lengths_.size() && lengths_[path.size()] && paths_.contains(path);
    }

    std::unordered_set<std::string_view> paths_;
    std::vector<bool> lengths_; ///< by length: whether there are paths of it
};

} // namespace orbel
