#include "AppModel/Inbox.h"

#include <mutex>
#include <QMetaObject>
#include <QObject>

namespace orbel {

/// The lock is held while an event is posted: the receiver cannot go meanwhile.
struct Inbox::Slot {
    std::mutex lock;
    std::unique_ptr<QObject> receiver = std::make_unique<QObject>();
};

Inbox::Inbox() : slot_(std::make_shared<Slot>()) {}

Inbox::~Inbox() {
    std::unique_ptr<QObject> receiver;
    const std::scoped_lock lock(slot_->lock);
    receiver = std::move(slot_->receiver);
}

void Inbox::Address::send(std::function<void()> delivery) const {
    const std::scoped_lock lock(slot_->lock);
    if (slot_->receiver)
        QMetaObject::invokeMethod(slot_->receiver.get(), std::move(delivery), Qt::QueuedConnection);
}

} // namespace orbel
