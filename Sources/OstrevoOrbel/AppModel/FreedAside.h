#pragma once

#include "Platform/Thread.h"

#include <memory>

namespace orbel {

/// Shares a value that never changes. The memory of a large one is freed on a thread of its own: that can
/// take longer than the main thread may stand still.
template <class Value>
std::shared_ptr<const Value> freedAside(std::unique_ptr<const Value> value, bool isLarge) {
    return {value.release(), [isLarge](const Value* last) {
                const auto dispose = [last] { delete last; };
                if (!isLarge || !Thread::startDetached("orbel.free", dispose))
                    dispose();
            }};
}

} // namespace orbel
