#pragma once

#include "Util/PathText.h"

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace orbel {

/// Paths to ask whether something is at one of them or inside. Views of the vector, which must outlive it.
class PathSet {
public:
    explicit PathSet(const std::vector<std::string>& paths) : paths_(paths.begin(), paths.end()) {}

    bool covers(std::string_view path) const {
        while (path.size() > 1 && !paths_.contains(path))
            path = parentPath(path);
        return path.size() > 1;
    }

private:
    std::unordered_set<std::string_view> paths_;
};

} // namespace orbel
