#pragma once

#include "Delete/DeletionItem.h"
#include "Scan/FileTree.h"
#include "Util/Iso8601.h"
#include "Util/RawValue.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace orbel {

class SafetyPolicy;

/// Lists shortcuts that lead nowhere: symbolic links, the user's own launchers and autostart entries whose
/// program is gone, the file manager's alias files and its bookmarks. A bookmark is a line of a list and can
/// only be shown: its row has the path and the node of that list, perhaps the same as another row's, and an
/// id of its own. Left alone is what is inside packages and version-control folders. Where the root holds the
/// home folder, only that is looked into, since nothing else can be moved.
struct BrokenShortcutFinder {
    enum class Kind : std::uint8_t { symbolicLink, alias, launcher, autostart, bookmark };
    enum class State : std::uint8_t {
        missing,    ///< what it leads to is gone; it may be selected if the policy allows it
        unknown,    ///< it could not be found out; blocked, the item says why
        intentional ///< a program made it so on purpose; blocked
    };

    /// Seconds: what was changed later than so long ago is not preselected.
    double settledFor = 24.0 * 60 * 60;

    struct Row {
        NodeIndex index = 0; ///< in the tree that was asked
        DeletionItem item;   ///< of the module brokenShortcuts
        Kind kind = Kind::symbolicLink;
        State state = State::missing;
        std::string target; ///< where it last led: of a link what it holds, of a launcher its program

        const std::string& id() const { return item.id; }

        bool operator==(const Row&) const = default;
    };

    using IsCancelled = std::function<bool()>;

    /// By path. Blocks: asks the disk for every shortcut in the tree, but nothing on network volumes. What is
    /// gone has no row; cancelled, it returns what it has so far. Any thread.
    std::vector<Row> run(const FileTree& tree, const SafetyPolicy& policy, Date now,
                         const IsCancelled& isCancelled = nullptr) const;
};

template <>
struct RawValues<BrokenShortcutFinder::Kind> {
    static constexpr std::array<std::string_view, 5> names{"symbolicLink", "alias", "launcher", "autostart",
                                                           "bookmark"};
};

template <>
struct RawValues<BrokenShortcutFinder::State> {
    static constexpr std::array<std::string_view, 3> names{"missing", "unknown", "intentional"};
};

} // namespace orbel
