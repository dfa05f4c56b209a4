#include "PrivateBus.h"
#include "Services/AppQuitter.h"
#include "Services/LiveNotifier.h"
#include "Services/SystemAppearance.h"
#include "Services/TrayItem.h"

#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QSignalSpy>
#include <QTest>

namespace orbel::test {

// Stand-ins for the desktop's services. Their slots are the interfaces' own words.

class NotificationServer final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    QStringList shown;
    QVariantMap hints;
    uint replaced = 0;

public Q_SLOTS:
    uint Notify(const QString&, uint replaces, const QString&, const QString& title, const QString& body,
                const QStringList&, const QVariantMap& given, int) {
        shown << title + QLatin1Char('|') + body;
        hints = given;
        replaced = replaces;
        return 7;
    }

Q_SIGNALS:
    void ActionInvoked(uint id, const QString& action);
};

class Portal final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    QVariantMap settings; ///< by "group key"; what is not there is answered with an error

    void set(const QString& group, const QString& key, const QVariant& value) {
        settings[group + QLatin1Char(' ') + key] = value;
        Q_EMIT SettingChanged(group, key, QDBusVariant(value));
    }

public Q_SLOTS:
    QDBusVariant Read(const QString& group, const QString& key) {
        const auto value = settings.value(group + QLatin1Char(' ') + key);
        if (!value.isValid())
            sendErrorReply(QStringLiteral("org.freedesktop.portal.Error.NotFound"));
        return QDBusVariant(QVariant::fromValue(QDBusVariant(value)));
    }

Q_SIGNALS:
    void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);
};

class TrayHost final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")

public:
    QStringList items;

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& item) { items << item; }
};

class Launcher final : public QObject {
    Q_OBJECT

public:
    QVariantMap update;

public Q_SLOTS:
    void take(const QString&, const QVariantMap& values) { update = values; }
};

namespace {

constexpr int patience = 10'000;

void serve(QDBusConnection& bus, const QString& name, const QString& path, QObject& object) {
    ASSERT_TRUE(bus.registerObject(path, &object,
                                   QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals));
    ASSERT_TRUE(bus.registerService(name));
}

const QString notifications = QStringLiteral("org.freedesktop.Notifications");
const QString notificationsPath = QStringLiteral("/org/freedesktop/Notifications");

TEST(LiveNotifier, ShowsAMessageAndOpensTheWindowOnAClick) {
    PrivateBus bus;
    NotificationServer server;
    auto desktop = bus.connect();
    serve(desktop, notifications, notificationsPath, server);
    LiveNotifier notifier(bus.connect());
    std::optional<bool> mayShow;
    notifier.requestPermission([&](bool answer) { mayShow = answer; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return mayShow.has_value(); }, patience));
    EXPECT_EQ(mayShow, true);

    notifier.post({.title = "Low", .body = "<1 GB & falling"});
    EXPECT_TRUE(QTest::qWaitFor([&] { return server.shown.size() == 1; }, patience));
    EXPECT_EQ(server.shown.front(), QStringLiteral("Low|&lt;1 GB &amp; falling"));
    EXPECT_EQ(server.hints.value(QStringLiteral("urgency")).value<uchar>(), 1);
    QTest::qWait(50);
    notifier.post({.title = "Lower", .body = ""});
    EXPECT_TRUE(QTest::qWaitFor([&] { return server.shown.size() == 2; }, patience));
    EXPECT_EQ(server.replaced, 7) << "takes the place of the first";

    const QSignalSpy opened(&notifier, &LiveNotifier::opened);
    QTest::qWait(50);
    Q_EMIT server.ActionInvoked(7, QStringLiteral("default"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return opened.count() == 1; }, patience));
}

TEST(LiveNotifier, MarksTheLauncherWhereNobodyShowsMessages) {
    PrivateBus bus;
    Launcher launcher;
    auto desktop = bus.connect();
    desktop.connect(QString(), QString(), QStringLiteral("com.canonical.Unity.LauncherEntry"),
                    QStringLiteral("Update"), &launcher, SLOT(take(QString, QVariantMap)));
    LiveNotifier notifier(bus.connect());
    notifier.post({.title = "Low", .body = ""});
    EXPECT_TRUE(QTest::qWaitFor([&] { return !launcher.update.isEmpty(); }, patience));
    EXPECT_TRUE(launcher.update.value(QStringLiteral("urgent")).toBool());
    notifier.clearBadge();
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return !launcher.update.value(QStringLiteral("count-visible")).toBool(); }, patience));
}

const QString freedesktop = QStringLiteral("org.freedesktop.appearance");

/// The desktop's portal, and a settings folder with what files there are.
struct DesktopSettings {
    DesktopSettings() : desktop(bus.connect()) {}

    SystemAppearance& open() {
        serve(desktop, QStringLiteral("org.freedesktop.portal.Desktop"),
              QStringLiteral("/org/freedesktop/portal/desktop"), portal);
        return appearance.emplace(bus.connect(), QString::fromStdString(config.path()));
    }
    bool becomes(const std::function<bool()>& met) const { return QTest::qWaitFor(met, patience); }

    PrivateBus bus;
    QDBusConnection desktop;
    Portal portal;
    TemporaryFolder config;
    std::optional<SystemAppearance> appearance;
};

TEST(SystemAppearance, FollowsThePortal) {
    DesktopSettings desktop;
    desktop.portal.settings[freedesktop + QStringLiteral(" color-scheme")] = 1U;
    const auto& appearance = desktop.open();
    EXPECT_TRUE(desktop.becomes([&] { return appearance.isDark(); }));
    desktop.portal.set(freedesktop, QStringLiteral("color-scheme"), 2U);
    EXPECT_TRUE(desktop.becomes([&] { return !appearance.isDark(); }));
}

TEST(SystemAppearance, KnowsEveryWayToAskForLessMotionAndMoreContrast) {
    struct Way {
        QString group;
        QString key;
        QVariant on;
        QVariant off;
    };
    const auto gnome = QStringLiteral("org.gnome.desktop.interface");
    DesktopSettings desktop;
    const auto& appearance = desktop.open();
    const auto follows = [&](const Way& way, const auto& isOn) {
        desktop.portal.set(way.group, way.key, way.on);
        EXPECT_TRUE(desktop.becomes(isOn)) << way.key.toStdString();
        desktop.portal.set(way.group, way.key, way.off);
        EXPECT_TRUE(desktop.becomes([&] { return !isOn(); })) << way.key.toStdString();
    };
    for (const auto& way :
         {Way{freedesktop, QStringLiteral("reduced-motion"), 1U, 0U},
          Way{gnome, QStringLiteral("enable-animations"), false, true},
          Way{QStringLiteral("org.kde.kdeglobals.KDE"), QStringLiteral("AnimationDurationFactor"),
              QStringLiteral("0"), QStringLiteral("0.5")}})
        follows(way, [&] { return appearance.isMotionReduced(); });
    for (const auto& way : {Way{freedesktop, QStringLiteral("contrast"), 1U, 0U},
                            Way{QStringLiteral("org.gnome.desktop.a11y.interface"),
                                QStringLiteral("high-contrast"), true, false},
                            Way{gnome, QStringLiteral("gtk-theme"), QStringLiteral("HighContrastInverse"),
                                QStringLiteral("Adwaita")}})
        follows(way, [&] { return appearance.isContrastHigh(); });
}

TEST(SystemAppearance, ReadsTheSettingsFilesWhereThePortalSaysNothing) {
    DesktopSettings desktop;
    desktop.config.file("gtk-3.0/settings.ini",
                        "[Settings]\ngtk-enable-animations=0\ngtk-theme-name=HighContrast\n");
    const auto& appearance = desktop.open();
    EXPECT_TRUE(appearance.isMotionReduced());
    EXPECT_TRUE(appearance.isContrastHigh());
    desktop.config.file("gtk-3.0/settings.ini", "[Settings]\ngtk-enable-animations=true\n");
    EXPECT_TRUE(
        desktop.becomes([&] { return !appearance.isMotionReduced() && !appearance.isContrastHigh(); }));
    desktop.config.file("kdeglobals", "[KDE]\nAnimationDurationFactor=0\n");
    EXPECT_TRUE(desktop.becomes([&] { return appearance.isMotionReduced(); }));
    desktop.portal.set(freedesktop, QStringLiteral("reduced-motion"), 0U);
    EXPECT_TRUE(desktop.becomes([&] { return !appearance.isMotionReduced(); })) << "the portal knows better";
}

TEST(TrayItem, IsShownWhileThereIsAPanelAndSomethingToShow) {
    PrivateBus bus;
    TrayItem item(bus.connect());
    QSignalSpy activated(&item, &TrayItem::activated);
    item.setWanted(true);
    QTest::qWait(50);
    EXPECT_FALSE(item.isShown() || item.isAvailable());

    TrayHost host;
    auto panel = bus.connect();
    const auto watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
    serve(panel, watcher, QStringLiteral("/StatusNotifierWatcher"), host);
    EXPECT_TRUE(QTest::qWaitFor([&] { return item.isShown(); }, patience)) << "panels may come later";
    EXPECT_TRUE(item.isAvailable());
    TrayItem late(bus.connect());
    EXPECT_TRUE(QTest::qWaitFor([&] { return late.isAvailable(); }, patience))
        << "the panel was there before";
    auto click = QDBusMessage::createMethodCall(host.items.value(0), QStringLiteral("/StatusNotifierItem"),
                                                QStringLiteral("org.kde.StatusNotifierItem"),
                                                QStringLiteral("Activate"));
    click << 0 << 0;
    panel.asyncCall(click);
    EXPECT_TRUE(QTest::qWaitFor([&] { return activated.count() == 1; }, patience));
    panel.unregisterService(watcher);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !item.isShown() && !item.isAvailable(); }, patience));
}

TEST(AppQuitter, AsksAnApplicationByItsMenuAndForcesNothing) {
    PrivateBus bus;
    TemporaryFolder folder;
    const auto bundle = folder.folder("Editor");
    const auto program = QString::fromStdString(bundle) + QStringLiteral("/editor");
    ASSERT_TRUE(QFile::copy(QStringLiteral(ORBEL_EDITOR), program));
    EXPECT_FALSE(AppQuitter::quit(bundle, bus.connect())) << "nothing runs";

    QProcess editor;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
    editor.setProcessEnvironment(environment);
    editor.start(program, {});
    ASSERT_TRUE(editor.waitForReadyRead(patience));
    EXPECT_EQ(AppQuitter::runningApplications(bundle).size(), 1);
    EXPECT_TRUE(AppQuitter::runningApplications(folder.path("Edit")).empty()) << "only whole names";
    EXPECT_TRUE(AppQuitter::quit(bundle, bus.connect()));
    EXPECT_EQ(editor.readAll() + (editor.waitForReadyRead(patience) ? editor.readAll() : QByteArray()),
              "running\nasked to save\n");
    EXPECT_EQ(editor.state(), QProcess::Running) << "it may stay";
    editor.kill();
    editor.waitForFinished();
}

} // namespace
} // namespace orbel::test

#include "BusServicesTests.moc"
