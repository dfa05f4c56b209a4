#pragma once

#include <atomic>
#include <chrono>
#include <string>
#include <unordered_set>

namespace orbel {

struct TrashFolder;

/// The names of items in a Trash that have no info file. Each belongs to another program, and would be lost
/// if an item took its name.
///
/// A look at one name of a folder waits for every move into that folder that is under way, so while a large
/// group is prepared they are listed at once.
class StrayItems {
public:
    /// Makes the names known, or known again after a while: what appears meanwhile is met by the move itself.
    void list(const TrashFolder& trash);

    bool contains(const std::string& name) const { return names_.contains(name); }

    /// A move met one that was not known: the next list() looks again. Any thread.
    void forget() { isKnown_ = false; }

private:
    std::atomic<bool> isKnown_ = false;
    std::chrono::steady_clock::time_point listedAt_;
    std::unordered_set<std::string> names_;
};

} // namespace orbel
