#include "PrivateBus.h"
#include "Services/AppQuitter.h"
#include "Services/LiveNotifier.h"
#include "Services/SystemAppearance.h"
#include "Services/TrayItem.h"

#include <gtest/gtest.h>
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

class Portal final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public Q_SLOTS:
    QDBusVariant Read(const QString&, const QString&) {
        return QDBusVariant(QVariant::fromValue(QDBusVariant(1U)));
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

TEST(SystemAppearance, FollowsThePortal) {
    PrivateBus bus;
    Portal portal;
    auto desktop = bus.connect();
    serve(desktop, QStringLiteral("org.freedesktop.portal.Desktop"),
          QStringLiteral("/org/freedesktop/portal/desktop"), portal);
    SystemAppearance appearance(bus.connect()); // not const: what the bus tells changes it
    EXPECT_TRUE(QTest::qWaitFor([&] { return appearance.isDark(); }, patience));
    Q_EMIT portal.SettingChanged(QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme"),
                                 QDBusVariant(2U));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !appearance.isDark(); }, patience));
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
