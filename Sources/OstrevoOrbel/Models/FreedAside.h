#pragma once

#include "Platform/Thread.h"

#include <memory>
#include <type_traits>
#include <utility>

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

/// Drops a value in the same way.
template <class Value>
void freeAside(Value&& value, bool isLarge) {
    freedAside(std::make_unique<const std::remove_cvref_t<Value>>(std::forward<Value>(value)), isLarge);
}

} // namespace orbel
