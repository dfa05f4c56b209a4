#pragma once

#include "Find/DuplicateGroup.h"
#include "Scan/ContentKind.h"
#include "Util/TextMatcher.h"

#include <cstddef>
#include <cstdint>
#include <QString>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace orbel {

/// Which copy of each group stays.
enum class KeepRule : std::uint8_t {
    newest,
    oldest,
    folderFirst ///< the newest of those in a folder; where there is none, the newest of all
};

/// A group of copies with what was decided about each. One copy is kept; neither it nor one that is refused
/// or gone is ever ticked, so that one copy always stays.
class CopyGroup {
public:
    struct Copy {
        std::uint64_t bytes = 0; ///< allocated: what moving it may free
        QString refusal{};       ///< why it cannot be ticked; empty when it can, or while that is not known
        QString note{};          ///< why moving it may free less; empty when nothing is known
        bool isTicked = false;
        bool isGone = false; ///< moved to the Trash; kept here because it can come back
    };
    /// Bytes, and numbers of copies.
    struct Figures {
        std::uint64_t most = 0;  ///< of all that may be ticked
        std::uint64_t least = 0; ///< what of it is freed for sure
        std::uint64_t tickedMost = 0;
        std::uint64_t tickedLeast = 0;
        std::size_t here = 0;     ///< not gone
        std::size_t tickable = 0; ///< those that may be ticked
        std::size_t ticked = 0;
    };

    /// The suggested copy is kept, nothing is ticked. `tree` is the one that was searched.
    CopyGroup(DuplicateGroup group, const FileTree& tree);

    const DuplicateGroup& group() const { return group_; }
    const DuplicateFile& file(std::size_t copy) const { return group_.files[copy]; }
    const Copy& copy(std::size_t copy) const { return copies_[copy]; }
    std::size_t size() const { return copies_.size(); }
    const Figures& figures() const { return figures_; }
    ContentKind kind() const { return kind_; }
    std::size_t kept() const { return kept_; }
    /// All copies in the order in which they are listed: the kept one, then the others by path.
    std::vector<std::size_t> order() const;
    const DuplicateFile& keptFile() const { return group_.files[kept_]; }
    /// There are two copies or more.
    bool isShown() const { return figures_.here >= 2; }
    bool mayTick(std::size_t copy) const;
    /// All that may be ticked is.
    bool isAllTicked() const { return figures_.tickable > 0 && figures_.ticked == figures_.tickable; }
    std::unordered_set<std::string> tickedPaths() const;
    /// Whether the path of a copy, as people see it, holds a text.
    bool matches(const TextMatcher& text, std::string_view home) const;

    /// False when nothing changed.
    bool setTicked(std::size_t copy, bool ticked);
    bool setAllTicked(bool ticked);
    /// Keeps this copy, which takes the tick off it.
    void keep(std::size_t copy);
    void keepBy(KeepRule rule, std::string_view folder);
    /// A copy that is gone and was kept gives way to the one that the rule names.
    void setGone(std::size_t copy, bool gone, KeepRule rule, std::string_view folder);
    /// What was found out about a copy; one that is refused loses its tick.
    void setAnswer(std::size_t copy, const std::optional<DeletionItem>& item);

    bool isFolded = false;

private:
    void settle();

    DuplicateGroup group_;
    std::vector<Copy> copies_;        ///< as many as the group has files
    std::vector<std::size_t> byPath_; ///< their numbers
    ContentKind kind_ = ContentKind::other;
    std::size_t kept_ = 0;
    Figures figures_;
};

} // namespace orbel
