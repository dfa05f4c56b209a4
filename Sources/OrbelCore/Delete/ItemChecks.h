#pragma once

#include "Delete/DeletionItem.h"
#include "Delete/InUse.h"
#include "Platform/HeldObject.h"

#include <cstdint>
#include <expected>
#include <optional>
#include <string>

namespace orbel {

class PathResolver;
struct Trasher;

/// The object that an item stands for, which cannot be mistaken for another one as long as this lives.
struct HeldItem {
    std::string realPath; ///< in visible form
    FileStamp stamp;      ///< captured by the safety policy
    platform::HeldObject held;

    /// Whether that very object lies, unchanged, at `path`.
    bool isAt(const std::string& path) const;
    /// Whether it lies at `path`, perhaps changed.
    bool isObjectAt(const std::string& path) const { return FileIdentity::of(path) == stamp.identity; }
};

/// An item that passed every check.
struct ApprovedItem : HeldItem {
    std::uint64_t bytes = 0;
    std::optional<std::string> note;
};

/// The checks that every item must pass immediately before its move, in their order. Nothing here changes the
/// disk. One for each run: which files the processes use is asked anew only when the last answer is older
/// than 10 seconds.
class ItemChecks {
public:
    /// The functions that are asked are those of `trasher`, which must live as long as this.
    explicit ItemChecks(const Trasher& trasher) : trasher_(trasher) {}

    /// An error is why the item stays where it is, in the user's words.
    std::expected<ApprovedItem, std::string> approve(const DeletionItem& item);

    /// Holds the object of the item, so that its move can be prepared; absent when approve() is certain to
    /// refuse it. Far cheaper than approve(), and no substitute for it. `paths`: the policy's, for items that
    /// are held within a moment of each other. Any thread.
    std::optional<HeldItem> hold(const DeletionItem& item, PathResolver& paths) const;

    /// The most processes that could not be looked at in a check so far.
    int uncheckedProcesses() const { return uncheckedProcesses_; }

private:
    std::optional<std::string> inUseReason(const ApprovedItem& item);

    const Trasher& trasher_;
    std::optional<MappedFilesSnapshot> snapshot_;
    int uncheckedProcesses_ = 0;
};

} // namespace orbel
