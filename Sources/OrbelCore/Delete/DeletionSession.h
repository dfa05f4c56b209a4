#pragma once

#include "Delete/DeletionItem.h"
#include "Delete/DeletionReport.h"
#include "Delete/Trasher.h"

#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace orbel {

/// The items that the user may approve, by id, and the runs over those that were approved. One caller at a
/// time.
class DeletionSession {
public:
    explicit DeletionSession(Trasher trasher);

    /// Adds the items; one with the id of an earlier item takes its place.
    void registerItems(std::span<const DeletionItem> items);

    /// None can be run any more; a run that is under way has its own.
    void forgetItems() { items_.clear(); }

    std::optional<DeletionItem> item(const std::string& id) const;

    /// Moves the registered items of these ids, in this order, as one session with an id of its own; ids that
    /// are unknown are left out. Returns at once: the moves happen on a thread "orbel.deletion", on which
    /// `progress` and `isCancelled` are called too. The future does not wait for the moves when it is
    /// dropped.
    std::future<DeletionReport> run(std::span<const std::string> ids, Trasher::Progress progress,
                                    Trasher::IsCancelled isCancelled) const;

    using Move = std::function<DeletionReport(Trasher::Progress, Trasher::IsCancelled)>;
    /// The same for a caller that has a thread of its own: the call that makes the moves, and blocks. It owns
    /// all that it uses, and may outlive the session.
    Move prepared(std::span<const std::string> ids) const;

private:
    std::unordered_map<std::string, DeletionItem> items_;
    std::shared_ptr<const Trasher> trasher_;
};

} // namespace orbel
