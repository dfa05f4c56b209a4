#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orbel {

/// What a scan leaves out. What is left out stays in the tree as a node without contents or bytes
/// (FileTree::excludedNodes). The root of a scan is never left out: it was chosen. A plain value.
struct Exclusions {
    /// Absolute real paths, of folders mostly.
    std::vector<std::string> paths;
    /// As they were given. With a slash, a pattern matches the path below the root, or the whole path when it
    /// begins with one; without, the name of any file or folder. Wildcards are those of fnmatch(3), and none
    /// matches a slash. A slash at the end does not count.
    std::vector<std::string> patterns;

    bool isEmpty() const { return paths.empty() && patterns.empty(); }
    /// Whether a scan of `root` leaves this path in it out, or a folder that holds it, because of `paths`.
    bool leavesOut(std::string_view path, std::string_view root) const;

    bool operator==(const Exclusions&) const = default;
};

/// A path as Exclusions has it: where it really leads, without a slash at its end. A path that leads nowhere
/// stays as it is.
std::string excludedPath(std::string_view path);

} // namespace orbel
