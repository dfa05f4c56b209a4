#include "Services/SystemAppearance.h"

#include <array>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPalette>
#include <QSettings>
#include <utility>

namespace orbel {

namespace {

const QString portal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString portalSettings = QStringLiteral("org.freedesktop.portal.Settings");

// What is asked: the portal's own keys, then those of desktops, which it passes on.
const QString scheme = QStringLiteral("org.freedesktop.appearance color-scheme");
const QString contrast = QStringLiteral("org.freedesktop.appearance contrast");
const QString lessMotion = QStringLiteral("org.freedesktop.appearance reduced-motion");
const QString animations = QStringLiteral("org.gnome.desktop.interface enable-animations");
const QString themeName = QStringLiteral("org.gnome.desktop.interface gtk-theme");
const QString highContrast = QStringLiteral("org.gnome.desktop.a11y.interface high-contrast");
const QString animationFactor = QStringLiteral("org.kde.kdeglobals.KDE AnimationDurationFactor");

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

bool isHighContrastTheme(const QVariant& name) {
    return name.toString().startsWith(QLatin1String("HighContrast"));
}

/// KDE's factor is text; 0 stands for "at once".
bool isNoTime(const QVariant& factor) {
    bool isNumber = false;
    return factor.toDouble(&isNumber) == 0 && isNumber;
}

} // namespace

SystemAppearance::SystemAppearance(QDBusConnection bus, QString configFolder)
    : bus_(std::move(bus)), configFolder_(std::move(configFolder)), isPaletteDark_(isPaletteDark()) {
    connect(&files_, &QFileSystemWatcher::fileChanged, this, &SystemAppearance::readFiles);
    connect(&files_, &QFileSystemWatcher::directoryChanged, this, &SystemAppearance::readFiles);
    readFiles();
    // Qt finds a slot's types by their names, and this one's is unknown to it until it has been used.
    qRegisterMetaType<QDBusVariant>();
    bus_.connect(portal, portalPath, portalSettings, QStringLiteral("SettingChanged"), this,
                 SLOT(takeSetting(QString, QString, QDBusVariant)));
    for (const auto& name :
         {scheme, contrast, lessMotion, animations, themeName, highContrast, animationFactor})
        ask(name.section(QLatin1Char(' '), 0, 0), name.section(QLatin1Char(' '), 1));
}

void SystemAppearance::ask(const QString& group, const QString& key) {
    auto call = QDBusMessage::createMethodCall(portal, portalPath, portalSettings, QStringLiteral("Read"));
    call << group << key;
    auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, group, key] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (!reply.isError())
            takeSetting(group, key, reply.value());
        watcher->deleteLater();
    });
}

void SystemAppearance::takeSetting(const QString& group, const QString& key, const QDBusVariant& value) {
    portal_[group + QLatin1Char(' ') + key] = unwrapped(value.variant());
    update();
}

/// Programs replace these files rather than write into them, so their folders are watched as well.
void SystemAppearance::readFiles() {
    isMotionReducedInFiles_ = false;
    isContrastHighInFiles_ = false;
    const auto watch = [this](const QString& path) {
        if (QFileInfo::exists(path) && !files_.files().contains(path) && !files_.directories().contains(path))
            files_.addPath(path);
    };
    watch(configFolder_);
    for (const auto* const version : {"gtk-3.0", "gtk-4.0"}) {
        const auto folder = configFolder_ + QLatin1Char('/') + QLatin1String(version);
        const auto file = folder + QStringLiteral("/settings.ini");
        watch(folder);
        watch(file);
        const QSettings gtk(file, QSettings::IniFormat);
        isMotionReducedInFiles_ |=
            !gtk.value(QStringLiteral("Settings/gtk-enable-animations"), true).toBool();
        isContrastHighInFiles_ |= isHighContrastTheme(gtk.value(QStringLiteral("Settings/gtk-theme-name")));
    }
    const auto globals = configFolder_ + QStringLiteral("/kdeglobals");
    watch(globals);
    const QSettings kde(globals, QSettings::IniFormat);
    isMotionReducedInFiles_ |= isNoTime(kde.value(QStringLiteral("KDE/AnimationDurationFactor")));
    update();
}

bool SystemAppearance::wantsDark() const {
    constexpr uint prefersDark = 1;
    constexpr uint prefersLight = 2;
    const auto wanted = portal_.value(scheme).toUInt();
    return wanted == prefersDark || (wanted != prefersLight && isPaletteDark_);
}

bool SystemAppearance::wantsLessMotion() const {
    if (!portal_.contains(lessMotion) && !portal_.contains(animations) && !portal_.contains(animationFactor))
        return isMotionReducedInFiles_;
    return portal_.value(lessMotion).toUInt() == 1 || !portal_.value(animations, true).toBool()
           || isNoTime(portal_.value(animationFactor));
}

bool SystemAppearance::wantsContrast() const {
    if (!portal_.contains(contrast) && !portal_.contains(highContrast) && !portal_.contains(themeName))
        return isContrastHighInFiles_;
    return portal_.value(contrast).toUInt() == 1 || portal_.value(highContrast).toBool()
           || isHighContrastTheme(portal_.value(themeName));
}

void SystemAppearance::update() {
    const auto now = std::array{wantsDark(), wantsLessMotion(), wantsContrast()};
    if (now == std::array{isDark_, isMotionReduced_, isContrastHigh_})
        return;
    isDark_ = now[0];
    isMotionReduced_ = now[1];
    isContrastHigh_ = now[2];
    Q_EMIT changed();
}

} // namespace orbel
