#pragma once

#include <cstddef>
#include <span>
#include <type_traits>
#include <utility>

namespace orbel {

namespace pages {
/// Fresh zeroed pages from the system, at least `bytes`. Throws std::bad_alloc when there is no memory.
void* map(std::size_t bytes);
void unmap(void* address, std::size_t bytes) noexcept;
} // namespace pages

/// A fixed number of values in pages of their own, all zero at first. A page costs memory only once it
/// is touched, and all of it goes back to the system on release(), which the heap does not promise.
/// Movable, not copyable.
template <class T>
requires std::is_trivially_copyable_v<T>
class PageArray {
public:
    PageArray() = default;
    explicit PageArray(std::size_t count)
        : data_(static_cast<T*>(pages::map(count * sizeof(T)))), count_(count) {}
    PageArray(PageArray&& other) noexcept
        : data_(std::exchange(other.data_, nullptr)), count_(std::exchange(other.count_, 0)) {}
    PageArray& operator=(PageArray&& other) noexcept {
        if (this != &other) {
            release();
            data_ = std::exchange(other.data_, nullptr);
            count_ = std::exchange(other.count_, 0);
        }
        return *this;
    }
    PageArray(const PageArray&) = delete;
    PageArray& operator=(const PageArray&) = delete;
    ~PageArray() { release(); }

    void release() noexcept {
        if (data_ != nullptr)
            pages::unmap(std::exchange(data_, nullptr), std::exchange(count_, 0) * sizeof(T));
    }

    T* data() { return data_; }
    const T* data() const { return data_; }
    std::size_t size() const { return count_; }
    T& operator[](std::size_t i) { return data_[i]; }
    const T& operator[](std::size_t i) const { return data_[i]; }
    std::span<T> span() { return {data_, count_}; }

private:
    T* data_ = nullptr;
    std::size_t count_ = 0;
};

} // namespace orbel
