#include "Services/TrayItem.h"

#include "Services/ApplicationId.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>

namespace orbel {

namespace {

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString itemPath = QStringLiteral("/StatusNotifierItem");

} // namespace

TrayItem::TrayItem(QDBusConnection bus)
    : bus_(std::move(bus)),
      name_(QStringLiteral("org.kde.StatusNotifierItem-%1-1").arg(QCoreApplication::applicationPid())) {
    bus_.registerObject(itemPath, new StatusNotifierItem(*this),
                        QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties);
    // Panels come and go, and at login the application may be there before them.
    auto* const panels = new QDBusServiceWatcher(
        watcherName, bus_,
        QDBusServiceWatcher::WatchForRegistration | QDBusServiceWatcher::WatchForUnregistration, this);
    connect(panels, &QDBusServiceWatcher::serviceRegistered, this, [this] {
        setAvailable(true);
        announce();
    });
    connect(panels, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        isShown_ = false;
        setAvailable(false);
    });
    lookForPanel();
}

TrayItem::~TrayItem() {
    withdraw();
    bus_.unregisterObject(itemPath);
}

void TrayItem::lookForPanel() {
    auto call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
    call << watcherName;
    auto* const answer = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<bool> reply = *answer;
        setAvailable(!reply.isError() && reply.value());
        answer->deleteLater();
    });
}

void TrayItem::setAvailable(bool available) {
    if (available == isAvailable_)
        return;
    isAvailable_ = available;
    Q_EMIT availableChanged();
}

void TrayItem::setWanted(bool wanted) {
    if (wanted == isWanted_)
        return;
    isWanted_ = wanted;
    if (wanted)
        announce();
    else
        withdraw();
}

void TrayItem::announce() {
    if (!isWanted_)
        return;
    bus_.registerService(name_);
    auto call = QDBusMessage::createMethodCall(watcherName, QStringLiteral("/StatusNotifierWatcher"),
                                               watcherName, QStringLiteral("RegisterStatusNotifierItem"));
    call << name_;
    auto* const answer = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        isShown_ = isWanted_ && !answer->isError();
        answer->deleteLater();
    });
}

/// Panels take away what has lost its name.
void TrayItem::withdraw() {
    isShown_ = false;
    bus_.unregisterService(name_);
}

StatusNotifierItem::StatusNotifierItem(TrayItem& item) : QObject(&item), item_(item) {}

QString StatusNotifierItem::id() const {
    return QString::fromUtf8(ApplicationId::desktopId.data(), ApplicationId::desktopId.size());
}

void StatusNotifierItem::Activate(int /*x*/, int /*y*/) {
    Q_EMIT item_.activated();
}

void StatusNotifierItem::SecondaryActivate(int /*x*/, int /*y*/) {
    Q_EMIT item_.activated();
}

void StatusNotifierItem::ContextMenu(int /*x*/, int /*y*/) {
    Q_EMIT item_.activated();
}

} // namespace orbel
