#include "Services/LiveNotifier.h"

#include "Services/ApplicationId.h"

#include <memory>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QGuiApplication>
#include <QWindow>

namespace orbel {

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString servicePath = QStringLiteral("/org/freedesktop/Notifications");

QDBusMessage busCall(const QString& method) {
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
                                          QStringLiteral("/org/freedesktop/DBus"),
                                          QStringLiteral("org.freedesktop.DBus"), method);
}

QString desktopId() {
    return QString::fromUtf8(ApplicationId::desktopId.data(), ApplicationId::desktopId.size());
}

} // namespace

LiveNotifier::LiveNotifier(QDBusConnection bus) : bus_(std::move(bus)) {
    bus_.connect(service, servicePath, service, QStringLiteral("ActionInvoked"), this,
                 SLOT(takeAction(uint, QString)));
}

/// There is no permission to ask for: it can be shown when somebody is there to show it, or can be started.
void LiveNotifier::requestPermission(std::function<void(bool)> answer) {
    const auto shared = std::make_shared<std::function<void(bool)>>(std::move(answer));
    const auto then = [this](const QDBusMessage& call, const auto& use) {
        auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, use] {
            use(watcher->reply());
            watcher->deleteLater();
        });
    };
    auto owned = busCall(QStringLiteral("NameHasOwner"));
    owned << service;
    then(owned, [then, shared](const QDBusMessage& reply) {
        if (reply.type() == QDBusMessage::ReplyMessage && reply.arguments().value(0).toBool()) {
            (*shared)(true);
            return;
        }
        then(busCall(QStringLiteral("ListActivatableNames")), [shared](const QDBusMessage& names) {
            (*shared)(names.type() == QDBusMessage::ReplyMessage
                      && names.arguments().value(0).toStringList().contains(service));
        });
    });
}

void LiveNotifier::post(const LowDiskAlert::Message& message) {
    requestPermission([this, message](bool isAvailable) {
        if (isAvailable)
            notify(message);
        else
            showBadge(true);
    });
}

void LiveNotifier::notify(const LowDiskAlert::Message& message) {
    auto call = QDBusMessage::createMethodCall(service, servicePath, service, QStringLiteral("Notify"));
    const QVariantMap hints{{QStringLiteral("desktop-entry"), desktopId()},
                            {QStringLiteral("urgency"), QVariant::fromValue(uchar{1})}};
    // A body may hold markup, so what is not meant as such is escaped.
    call << QStringLiteral("Ostrevo Vanto") << lastId_ << desktopId() << QString::fromStdString(message.title)
         << QString::fromStdString(message.body).toHtmlEscaped()
         << QStringList{QStringLiteral("default"), tr("Open")} << hints << -1;
    auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<uint> reply = *watcher;
        if (reply.isError())
            showBadge(true);
        else
            lastId_ = reply.value();
        watcher->deleteLater();
    });
}

void LiveNotifier::takeAction(uint id, const QString& /*action*/) {
    if (id == lastId_)
        Q_EMIT opened();
}

void LiveNotifier::clearBadge() {
    showBadge(false);
}

/// Launchers show a number, not a sign; where they know urgency they draw attention themselves.
void LiveNotifier::showBadge(bool visible) {
    auto update = QDBusMessage::createSignal(QLatin1String(ApplicationId::objectPath),
                                             QStringLiteral("com.canonical.Unity.LauncherEntry"),
                                             QStringLiteral("Update"));
    update << QStringLiteral("application://%1.desktop").arg(desktopId())
           << QVariantMap{{QStringLiteral("count"), QVariant::fromValue(qlonglong{visible ? 1 : 0})},
                          {QStringLiteral("count-visible"), visible},
                          {QStringLiteral("urgent"), visible}};
    bus_.send(update);
    if (!visible)
        return;
    for (auto* const window : QGuiApplication::topLevelWindows())
        window->alert(0);
}

} // namespace orbel
