#pragma once

#include "Delete/DeletionItem.h"
#include "Safety/FileStamp.h"
#include "Scan/FileTree.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace orbel {

class SafetyPolicy;

/// One copy among files of identical content.
struct DuplicateFile {
    NodeIndex index = 0;                 ///< its node in the tree that was searched
    std::string path;                    ///< absolute, in visible form, as bytes
    FileStamp stamp;                     ///< from before its content was read, so that any later change shows
    std::chrono::sys_seconds modified{}; ///< as the tree has it: whole minutes
    bool mayShareBlocks = false;         ///< the tree's flag: a clone, perhaps of another copy

    /// The flag, or what the file system says now.
    bool mayShareStorage() const;

    bool operator==(const DuplicateFile&) const = default;
};

/// Files that hold the same bytes. A plain value.
struct DuplicateGroup {
    std::uint64_t bytes = 0;          ///< content length of one copy
    std::vector<DuplicateFile> files; ///< at least two, in the order of the tree
    std::string suggestedKeep;        ///< the path of the copy that is best kept

    /// What removing all copies but one takes from the files' lengths.
    std::uint64_t removableBytes() const { return bytes * (files.size() - 1); }

    /// The ticked copies, in the group's order, each with the copy that stays. Absent when all are ticked:
    /// one copy always stays. Paths that are not in the group are passed over, copies that are gone too.
    ///
    /// The copy that stays is the suggested one unless that is ticked; one that has changed since the group
    /// was found gives way to another unticked copy that has not. Where there is none, every item is blocked.
    /// Asks the disk about each ticked copy.
    ///
    /// With `keep`, the path of the copy that the user chose to stay, no other takes its place: absent too
    /// when it is ticked or not in the group, and every item is blocked when it has changed.
    std::optional<std::vector<DeletionItem>>
    deletionItems(const std::unordered_set<std::string>& ticked, const SafetyPolicy& policy,
                  const std::optional<std::string>& keep = std::nullopt) const;

    /// One copy as an item that names no copy that stays: what stands against moving it, and a note on what
    /// that frees. Absent when it is gone. Asks the disk.
    static std::optional<DeletionItem> itemOf(const DuplicateFile& file, const SafetyPolicy& policy);

    bool operator==(const DuplicateGroup&) const = default;
};

} // namespace orbel
