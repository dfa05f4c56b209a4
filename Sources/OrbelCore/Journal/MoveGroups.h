#pragma once

#include "Platform/Thread.h"

#include <utility>

namespace orbel {

/// Handles groups of moves one after another, on the calling thread. While one is handled, another
/// thread destroys the one before it and then prepares the next one: the disk and a second processor
/// have work meanwhile.
///
/// `next()` gives a std::unique_ptr to a group, null when there is none at the moment; `prepare(group)` must
/// not depend on how the group before it ends; `handle(group)` returns whether to go on. A group that was
/// prepared and is not handled any more is destroyed like all others, at the latest on return.
template <class Next, class Prepare, class Handle>
void forEachGroup(const Next& next, const Prepare& prepare, const Handle& handle) {
    auto group = next();
    if (group)
        prepare(*group);
    decltype(group) handled;
    while (group) {
        auto following = next();
        Thread preparing;
        if (following)
            preparing = Thread::start("orbel.prepare", Thread::defaultStackBytes, [&] {
                handled.reset();
                prepare(*following);
            });
        const bool isPrepared = preparing.joinable();
        const bool goesOn = handle(*group);
        preparing.join();
        if (!goesOn)
            return;
        if (!following)
            following = next(); // what the group left to be tried again
        handled = std::exchange(group, std::move(following));
        if (group && !isPrepared) {
            handled.reset();
            prepare(*group);
        }
    }
}

} // namespace orbel
