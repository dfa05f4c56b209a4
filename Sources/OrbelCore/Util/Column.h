#pragma once

#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace orbel {

/// An allocator whose `resize` leaves new elements of trivial types unset: a column of millions of values
/// that is about to be filled is not written twice.
template <class T>
class UninitialisedAllocator : public std::allocator<T> {
public:
    template <class U>
    struct rebind {
        using other = UninitialisedAllocator<U>;
    };

    template <class U>
    void construct(U* place) noexcept(std::is_nothrow_default_constructible_v<U>) {
        ::new (static_cast<void*>(place)) U;
    }
    template <class U, class... Arguments>
    void construct(U* place, Arguments&&... arguments) {
        std::construct_at(place, std::forward<Arguments>(arguments)...);
    }
};

/// One field of every node, indexed by node. `resize` does not set the new elements; `resize(n, value)` does.
template <class T>
using Column = std::vector<T, UninitialisedAllocator<T>>;

} // namespace orbel
