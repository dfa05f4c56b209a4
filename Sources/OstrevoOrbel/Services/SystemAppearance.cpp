#include "Services/SystemAppearance.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QPalette>

namespace orbel {

namespace {

const QString portal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settings = QStringLiteral("org.freedesktop.portal.Settings");
const QString group = QStringLiteral("org.freedesktop.appearance");
const QString schemeKey = QStringLiteral("color-scheme");

bool isPaletteDark() {
    const auto palette = QGuiApplication::palette();
    return palette.color(QPalette::Window).lightnessF() < palette.color(QPalette::WindowText).lightnessF();
}

/// The portal's older call wraps its answer once more than the newer one.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

SystemAppearance::SystemAppearance(QDBusConnection bus)
    : bus_(std::move(bus)), isPaletteDark_(isPaletteDark()), isDark_(isPaletteDark_) {
    // Qt finds a slot's types by their names, and this one's is unknown to it until somebody has used it.
    qRegisterMetaType<QDBusVariant>();
    bus_.connect(portal, portalPath, settings, QStringLiteral("SettingChanged"), this,
                 SLOT(takeSetting(QString, QString, QDBusVariant)));
    auto call = QDBusMessage::createMethodCall(portal, portalPath, settings, QStringLiteral("Read"));
    call << group << schemeKey;
    auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (!reply.isError())
            takeScheme(unwrapped(reply.value().variant()).toUInt());
        watcher->deleteLater();
    });
}

void SystemAppearance::takeSetting(const QString& changedGroup, const QString& key,
                                   const QDBusVariant& value) {
    if (changedGroup == group && key == schemeKey)
        takeScheme(unwrapped(value.variant()).toUInt());
}

void SystemAppearance::takeScheme(uint scheme) {
    constexpr uint prefersDark = 1;
    constexpr uint prefersLight = 2;
    const bool dark = scheme == prefersDark || (scheme != prefersLight && isPaletteDark_);
    if (dark == isDark_)
        return;
    isDark_ = dark;
    Q_EMIT darkChanged(dark);
}

} // namespace orbel
