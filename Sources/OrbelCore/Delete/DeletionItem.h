#pragma once

#include "Delete/KeptCopy.h"
#include "Journal/DeletionModule.h"
#include "Safety/SafetyPolicy.h"
#include "Scan/FileTree.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace orbel {

/// One file or folder that the user may move to the Trash: what a list shows of it, and all that the move
/// will have to prove again. A plain value; lists own theirs, a deletion session has copies.
struct DeletionItem {
    std::string id; ///< "{module}:{path}", unique within one list
    DeletionModule module = DeletionModule::map;
    std::string title;  ///< the name, valid UTF-8
    std::string detail; ///< the path and what a list has to say besides
    std::string path;   ///< absolute, in visible form, as bytes; "url" in JSON
    AllowedRoot root = AllowedRoot::homeItem;
    FileStamp scanStamp;                                     ///< captured when the item was built
    std::uint64_t estimatedBytes = 0;                        ///< allocated bytes, as scanned
    std::optional<KeptCopy> keep = std::nullopt;             ///< only of duplicates
    std::optional<std::string> blockedReason = std::nullopt; ///< why it is shown but cannot be selected
    std::optional<std::string> note = std::nullopt;          ///< a warning that blocks nothing
    bool preselected = false; ///< whether a list ticks it at first; never stored

    bool isSelectable() const { return !blockedReason.has_value(); }

    bool operator==(const DeletionItem&) const = default;

    // Builders. Each stamps the node's path and asks the policy; absent when nothing lies there any more. Any
    // other problem becomes the `blockedReason`, which advises only: the move checks everything again.

    static std::optional<DeletionItem> fromTree(const FileTree& tree, NodeIndex index, DeletionModule module,
                                                const SafetyPolicy& policy);
    /// For one of many in a list, with what the others have `seen`.
    static std::optional<DeletionItem> fromTree(const FileTree& tree, NodeIndex index, DeletionModule module,
                                                const SafetyPolicy& policy, SafetyPolicy::SeenFolders& seen);

    /// For a file, which needs no tree. `status` is what lies at `path`.
    static DeletionItem fromFile(const std::string& path, const platform::FileStatus& status,
                                 DeletionModule module, const SafetyPolicy& policy,
                                 SafetyPolicy::SeenFolders& seen);

    /// `nestedCount`: the empty folders inside, the folder itself included.
    static std::optional<DeletionItem> emptyFolder(const FileTree& tree, NodeIndex index,
                                                   std::size_t nestedCount, const SafetyPolicy& policy,
                                                   SafetyPolicy::SeenFolders& seen);

    /// `lastPath`: where the shortcut last pointed. A reason or note that is given takes the place of the one
    /// found here. A launcher that lies directly in a leftover folder is a leftover of its program.
    static std::optional<DeletionItem> brokenShortcut(const FileTree& tree, NodeIndex index,
                                                      const SafetyPolicy& policy,
                                                      std::optional<std::string> blockedReason,
                                                      std::optional<std::string> note,
                                                      std::optional<std::string> lastPath);

    /// With nothing known but what is given: neither a reason against it nor a note.
    static DeletionItem unasked(const std::string& path, DeletionModule module, AllowedRoot root,
                                const FileStamp& stamp, std::uint64_t bytes);

    /// What a list shows of a node of a tree that may be of another machine: asks nothing but the tree, so
    /// that nothing is known of whether it may move.
    static DeletionItem shownOnly(const FileTree& tree, NodeIndex index, DeletionModule module);

    /// The note of a node's item. Asks nothing but the tree.
    static std::optional<std::string> noteOn(const FileTree& tree, NodeIndex index);

    /// Whether a path is that of an application bundle in one of the policy's application folders or one
    /// folder below, or of a program where the policy lets programs be removed.
    static bool isApplicationBundle(const std::string& path, const SafetyPolicy& policy);

private:
    static std::optional<DeletionItem> fromTree(const FileTree& tree, NodeIndex index, DeletionModule module,
                                                const SafetyPolicy& policy, SafetyPolicy::SeenFolders& seen,
                                                const std::string& path, AllowedRoot root);
};

} // namespace orbel
