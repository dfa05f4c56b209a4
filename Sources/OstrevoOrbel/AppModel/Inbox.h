#pragma once

#include "Platform/Thread.h"

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

namespace orbel {

/// Brings what other threads found out to the thread that made the inbox, for as long as it exists: what
/// arrives later is dropped. Deliveries are made by that thread's event loop, in the order of sending.
class Inbox {
    struct Slot;

public:
    /// Where to send. Any thread may hold and use one; it may outlive the inbox.
    class Address {
    public:
        void send(std::function<void()> delivery) const;

    private:
        friend class Inbox;
        explicit Address(std::shared_ptr<Slot> slot) : slot_(std::move(slot)) {}
        std::shared_ptr<Slot> slot_;
    };

    Inbox();
    ~Inbox();
    Inbox(const Inbox&) = delete;
    Inbox& operator=(const Inbox&) = delete;

    Address address() const { return Address(slot_); }

    /// Runs `work` on a thread of its own, called `label`, and delivers its result to `then`. `work` owns all
    /// that it uses. When the system has no thread to give, the work is done before this returns.
    template <class Work, class Then>
    void runAside(std::string label, Work work, Then then) const {
        auto job = [address = address(), work = std::move(work), then = std::move(then)]() mutable {
            if constexpr (std::is_void_v<decltype(work())>) {
                work();
                address.send(then);
            } else {
                auto result = std::make_shared<decltype(work())>(work());
                address.send([result, then]() mutable { then(std::move(*result)); });
            }
        };
        // A std::function copies what it holds; the work may own what cannot be copied.
        auto shared = std::make_shared<decltype(job)>(std::move(job));
        if (!Thread::startDetached(std::move(label), [shared] { (*shared)(); }))
            (*shared)();
    }

private:
    std::shared_ptr<Slot> slot_;
};

} // namespace orbel
