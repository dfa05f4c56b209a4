#pragma once

#include "Delete/DeletionItem.h"
#include "Delete/InUseChecker.h"
#include "Find/LastUsed.h"
#include "Scan/ContentKind.h"

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace orbel {

class LastUsedReader;
class SafetyPolicy;

/// Lists the large files and packages that have not been used for long. A plain value: the filter
/// of the list.
struct LargeOldQuery {
    static constexpr std::uint64_t defaultMinimumBytes = 100'000'000;
    static constexpr double defaultUnusedFor = 365.0 * 24 * 60 * 60;

    std::uint64_t minimumBytes = defaultMinimumBytes;   ///< on disk, the smallest that is listed
    std::optional<double> unusedFor = defaultUnusedFor; ///< seconds since the last use; absent: of any age
    std::set<FileKind> kinds{};                         ///< empty: every kind
    std::set<ContentKind> contents{};                   ///< of these the finer ones; empty: every one

    struct Row {
        NodeIndex index = 0;     ///< in the tree that was asked
        DeletionItem item;       ///< of the module largeOld; blocked when the policy refuses it
        std::uint64_t bytes = 0; ///< on disk
        FileKind kind = FileKind::other;
        LastUsed lastUsed;
        std::vector<ProcessUse> openBy; ///< who uses the file, or anything in the package

        const std::string& id() const { return item.id; }

        bool operator==(const Row&) const = default;
    };

    using IsCancelled = std::function<bool()>;

    /// The largest first, equal ones in the order of the tree. Blocks: apart from the tree it asks the disk
    /// for every candidate. Files that are gone have no row. Cancelled, which is asked before each candidate,
    /// it returns the rows it has so far. Any thread.
    std::vector<Row> run(const FileTree& tree, const SafetyPolicy& policy, Date now,
                         const InUseChecker::OpenFiles& openFiles,
                         const IsCancelled& isCancelled = nullptr) const;

    /// The same with a reader of the caller's.
    std::vector<Row> run(const FileTree& tree, const SafetyPolicy& policy, Date now,
                         const InUseChecker::OpenFiles& openFiles, const IsCancelled& isCancelled,
                         const LastUsedReader& reader) const;

    /// The same of a tree that may be of another machine, as it was `then`: asks nothing but the tree. The
    /// items are blocked for `reason` if one is given; the last use is the last change, and nothing is said
    /// of who uses them. Where not even that is known (FileTree::isModifiedKnown), a row is only there when
    /// any age will do.
    std::vector<Row> shownOnly(const FileTree& tree, Date then, const std::optional<std::string>& reason = {},
                               const IsCancelled& isCancelled = nullptr) const;

private:
    bool isOldEnough(const LastUsed& lastUsed, Date now) const;
    std::vector<NodeIndex> candidates(const FileTree& tree) const;
};

} // namespace orbel
