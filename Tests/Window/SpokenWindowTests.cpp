#include "AppModel/AppsFlow.h"
#include "AppModel/LargeOldFlow.h"
#include "HookedTrash.h"
#include "PastMoves.h"
#include "RealHome.h"
#include "SampleApps.h"
#include "SampleDisk.h"
#include "SpokenTree.h"

#include <atomic>
#include <gtest/gtest.h>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDir>
#include <QDragEnterEvent>
#include <QFile>
#include <QMimeData>
#include <QtTest/QTest>
#include <set>

namespace orbel::test {

namespace {

/// Without what only separates, isolates names, or is a sign.
QString essence(const QString& words) {
    QString kept;
    for (const auto letter : words)
        if (letter.isLetterOrNumber())
            kept += letter.toLower();
    return kept;
}

/// What can be seen of an item in the scene.
QRectF seen(const QQuickItem& item) {
    QRectF part = item.mapRectToScene(item.boundingRect());
    for (const auto* around = &item; around != nullptr; around = around->parentItem()) {
        if (!around->isVisible() || around->opacity() == 0)
            return {};
        if (around != &item && around->clip())
            part &= around->mapRectToScene(around->boundingRect());
    }
    return part & QRectF({0, 0}, QSizeF(item.window()->size()));
}

/// Events are sent only where something listens: on a display with a bus for accessibility.
bool isListenedTo() {
    auto* const bus = QDBusConnection::sessionBus().interface();
    if (qEnvironmentVariableIsEmpty("QT_LINUX_ACCESSIBILITY_ALWAYS_ON") || bus == nullptr)
        return false;
    bus->startService(QStringLiteral("org.a11y.Bus"));
    return QTest::qWaitFor([] { return QAccessible::isActive(); }, 3'000);
}

/// What a screen reader was told since it was cleared: "focus" and "say", with the name.
QStringList said;

void hear(QAccessibleEvent* event) {
    auto* const interface = event->accessibleInterface();
    if (interface == nullptr)
        return;
    if (event->type() == QAccessible::Focus)
        said << QStringLiteral("focus ") + interface->text(QAccessible::Name);
    if (event->type() == QAccessible::ObjectShow && interface->role() == QAccessible::Notification)
        said << QStringLiteral("say ") + interface->text(QAccessible::Name);
}

/// A window that is heard as it is seen.
struct SpokenWindow : WindowScene {
    SpokenWindow() { isListenedTo(); }
    ~SpokenWindow() {
        QAccessible::installUpdateHandler(nullptr);
        if (!QAccessible::isActive())
            QAccessible::setActive(false);
    }
    SpokenWindow(const SpokenWindow&) = delete;
    SpokenWindow& operator=(const SpokenWindow&) = delete;

    SpokenTree tree() {
        // Where nothing listens, Qt says nothing of the controls that were made since.
        if (!QAccessible::isActive())
            QAccessible::setActive(true);
        return SpokenTree(window());
    }
    void measure(const std::string& path) {
        app().scan()->startScan(path);
        EXPECT_TRUE(waitUntil([this] {
            return app().scan()->scanState() == ScanFlow::ScanState::done && app().largeOld()->isKnown();
        }));
        settle();
    }
    void show(const char* screen) {
        app().setScreenName(QLatin1String(screen));
        settle();
        EXPECT_TRUE(waitUntil([this] { return !app().isShownScreenBusy(); }));
        settle();
    }
    /// Whether something that begins so is heard, at once or soon: "focus" or "say", and the name.
    testing::AssertionResult hears(const QString& begin) {
        const bool isHeard = waitUntil([&] {
            return std::ranges::any_of(said, [&](const auto& each) { return each.startsWith(begin); });
        });
        return isHeard ? testing::AssertionSuccess()
                       : testing::AssertionFailure() << "heard instead: " << said.join(u'|').toStdString();
    }
    /// Holds the tree against the window, and keeps it as a text beside the pictures.
    void expectSpoken(const char* name) {
        SCOPED_TRACE(name);
        const auto spoken = tree();
        QDir().mkpath(QStringLiteral(ORBEL_SNAPSHOTS));
        QFile file(QStringLiteral(ORBEL_SNAPSHOTS "/%1.spoken.txt").arg(QLatin1String(name)));
        EXPECT_TRUE(file.open(QFile::WriteOnly));
        file.write(spoken.text().toUtf8());
        expectSoundNodes(spoken);
        expectTextsSpoken(spoken);
    }

private:
    static std::string told(const SpokenTree::Node& node) {
        const auto* const object = node.interface->object();
        return (roleName(node.role()) + QStringLiteral(" \"") + node.name + QStringLiteral("\" of ")
                + (object == nullptr
                       ? QString()
                       : object->objectName() + u' ' + QLatin1String(object->metaObject()->className())))
            .toStdString();
    }
    static void expectSoundNodes(const SpokenTree& spoken) {
        bool hasHead = false;
        bool hasSorted = false;
        for (std::size_t i = 0; i < spoken.nodes().size(); ++i) {
            const auto& node = spoken.nodes()[i];
            const auto role = node.role();
            if (!node.isShowing())
                continue;
            if (const auto* const item = node.item()) {
                // What Qt itself tells of may be scrolled under an edge, where it still counts as showing.
                const bool isPart = role == QAccessible::ListItem || item->inherits("QQuickAbstractButton");
                EXPECT_TRUE(item->isVisible() && (!isPart || !seen(*item).isEmpty()))
                    << "not in sight: " << told(node);
            }
            const auto above = static_cast<std::size_t>(std::max(0, node.above));
            EXPECT_FALSE(spoken.nodes()[above].state.invisible) << "in what is hidden: " << told(node);
            EXPECT_FALSE(role == QAccessible::StaticText && spoken.nodes()[above].role() == role)
                << "said twice: " << told(node);
            EXPECT_FALSE(role == QAccessible::NoRole || role == QAccessible::Client)
                << "without a role: " << told(node);
            const bool needsName = node.state.focusable || role == QAccessible::Dialog
                                   || role == QAccessible::PopupMenu || role == QAccessible::List
                                   || role == QAccessible::Table || role == QAccessible::Grouping
                                   || role == QAccessible::ListItem || role == QAccessible::MenuItem
                                   || role == QAccessible::StaticText;
            EXPECT_FALSE(needsName && node.name.trimmed().isEmpty()) << "without a name: " << told(node);
            for (const auto& words : {node.name, node.description, node.value})
                for (const auto* const generated : {"QQuick", "_QML", "undefined", "[object"})
                    EXPECT_FALSE(words.contains(QLatin1String(generated))) << told(node);
            EXPECT_FALSE(node.item() != nullptr && role != QAccessible::StaticText
                         && !node.item()->isEnabled() && !node.state.disabled
                         && !(node.name + node.description).contains(QLatin1String("not available")))
                << "not said to be disabled: " << told(node);
            if (role == QAccessible::MenuItem || role == QAccessible::Button
                || role == QAccessible::CheckBox) {
                EXPECT_TRUE(node.state.disabled
                            || node.actions().contains(QAccessibleActionInterface::pressAction()))
                    << "cannot be pressed: " << told(node);
            }
            if (role == QAccessible::ColumnHeader) {
                hasHead = true;
                hasSorted = hasSorted || node.description.startsWith(QLatin1String("sorted"));
            }
            if (role == QAccessible::List || role == QAccessible::Tree || role == QAccessible::PopupMenu)
                expectInOrder(spoken, static_cast<int>(i));
            if (node.item() != nullptr && node.item()->property("refused").toBool()) {
                EXPECT_FALSE(node.state.checkable && !node.state.disabled) << told(node);
                EXPECT_FALSE(node.description.isEmpty()) << "refused, and not why: " << told(node);
            }
        }
        EXPECT_EQ(hasHead, hasSorted) << "by what it is sorted";
    }
    static void expectInOrder(const SpokenTree& spoken, int list) {
        auto* const item = spoken.nodes()[static_cast<std::size_t>(list)].item();
        if (item == nullptr || item->objectName() == QLatin1String("map.view"))
            return;
        int above = INT_MIN;
        for (const auto& row : spoken.childrenOf(list)) {
            if (!row.isShowing())
                continue;
            EXPECT_GE(row.interface->rect().y(), above) << "out of order: " << told(row);
            above = row.interface->rect().y();
        }
    }
    /// Every text is part of what is said of itself, or of something that it lies in.
    void expectTextsSpoken(const SpokenTree& spoken) {
        std::map<const QQuickItem*, QString> saidOf;
        for (const auto& node : spoken.nodes())
            if (node.isShowing() && node.item() != nullptr)
                saidOf[node.item()] =
                    essence(node.name) + u'\n' + essence(node.description) + u'\n' + essence(node.value);
        for (const auto* const text : texts()) {
            const auto words = essence(text->property("text").toString());
            const auto part = seen(*text);
            // What is scrolled away by more than a half waits for its turn.
            if (part.height() < text->height() / 2 || part.width() < 1)
                continue;
            bool isSaid = false;
            for (const auto* at = text; at != nullptr && !isSaid; at = at->parentItem()) {
                const auto found = saidOf.find(at);
                isSaid = found != saidOf.end() && found->second.contains(words);
            }
            EXPECT_TRUE(isSaid) << "seen and not heard: " << text->property("text").toString().toStdString()
                                << " in " << text->parentItem()->metaObject()->className();
        }
    }
};

/// A home with something for every list in it.
struct FilledWindow : SpokenWindow {
    FilledWindow() {
        environment.trash = trash;
        for (const auto* name : {"Videos/harbour.mkv", "Downloads/harbour.mkv", "Downloads/old/harbour.mkv",
                                 "Pictures/Raw/festival.tar", "Downloads/festival.tar"})
            past.home.file(
                name,
                std::string(2'000'000, QLatin1String(name).contains(QLatin1String("harb")) ? 'h' : 'f'));
        past.home.folder("Downloads/empty/inside");
        past.home.folder("Downloads/hollow");
        past.home.file("snap/poplar/common/state");
        useRealHome(environment, past.home.path());
        environment.journalPath = past.journalPath;
        environment.installedApps = [apps = sample.inventory] { return apps; };
        environment.installedIds = SampleApps::installedIds;
        past.move("old", {"proxies.mov", "statement.pdf"}, "2026-01-02T17:40:00Z");
        past.skip("old", "kit_011.wav", "2026-01-02T17:40:00Z");
        open();
        measure(past.home.path());
    }
    void searchDuplicates() {
        show("duplicates");
        click(QStringLiteral("duplicates.empty.action"));
        EXPECT_TRUE(waitUntil([&] { return isShown(QStringLiteral("duplicates.table")); }));
        settle();
    }

    SampleApps sample;
    PastMoves past;
    std::shared_ptr<HookedTrash> trash = std::make_shared<HookedTrash>(past.trash);
};

} // namespace

TEST(SpokenWindowOf, AMeasuredDisk) {
    SpokenWindow scene;
    scene.open();
    scene.expectSpoken("overview-first-run");
    scene.holdScans();
    scene.app().scan()->scanDisk();
    ASSERT_TRUE(scene.waitUntil([&] { return scene.says(QStringLiteral("612,408")); }));
    scene.settle();
    scene.expectSpoken("overview-scanning");
    scene.show("large");
    scene.expectSpoken("large-scanning");
    scene.show("overview");
    scene.app().scan()->stop();
    scene.releaseScans();
    ASSERT_TRUE(scene.waitUntil([&] { return scene.app().scan()->isPartial(); }));
    scene.settle();
    scene.expectSpoken("overview-partial");
    scene.measure("/");
    for (const auto* const screen :
         {"overview", "map", "large", "duplicates", "uninstall", "tidy", "journal"}) {
        scene.show(screen);
        scene.expectSpoken(screen);
    }
    scene.press(Qt::Key_Comma, Qt::ControlModifier);
    scene.expectSpoken("settings");
    scene.click(QStringLiteral("settings.alert"));
    scene.click(QStringLiteral("settings.threshold"));
    scene.expectSpoken("settings-choices");
    scene.press(Qt::Key_Escape);
    scene.press(Qt::Key_F1);
    scene.expectSpoken("help");
    scene.show("overview");
    scene.click(QStringLiteral("overview.volume"));
    scene.expectSpoken("overview-volumes");
    scene.press(Qt::Key_Escape);
    scene.click(QStringLiteral("overview.by.1"));
    scene.expectSpoken("overview-extensions");
    scene.press(Qt::Key_F, Qt::ControlModifier);
    scene.press(Qt::Key_R);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("overview.find.row.0")); }));
    scene.expectSpoken("overview-find");
    scene.press(Qt::Key_Escape);
    scene.item(QStringLiteral("overview.find"))->forceActiveFocus(Qt::TabFocusReason);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.says(QStringLiteral("Find")); })) << "a tooltip";
    scene.expectSpoken("overview-tooltip");
    scene.click(QStringLiteral("overview.unreadable"));
    scene.press(Qt::Key_Down);
    scene.expectSpoken("unreadable");
    scene.press(Qt::Key_Escape);
    scene.show("map");
    scene.item(QStringLiteral("map.list"))->forceActiveFocus(Qt::TabFocusReason);
    scene.press(Qt::Key_Home);
    scene.press(Qt::Key_Right);
    scene.expectSpoken("map-list");
    scene.item(QStringLiteral("map.view"))->forceActiveFocus(Qt::TabFocusReason);
    scene.press(Qt::Key_Home);
    scene.press(Qt::Key_F10, Qt::ShiftModifier);
    scene.expectSpoken("map-menu");
    scene.press(Qt::Key_Escape);
    scene.show("large");
    scene.click(QStringLiteral("large.age"));
    scene.expectSpoken("large-filter-menu");
    scene.press(Qt::Key_Escape);
    scene.press(Qt::Key_F, Qt::ControlModifier);
    scene.press(Qt::Key_Z);
    scene.press(Qt::Key_Q);
    scene.settle();
    scene.expectSpoken("large-no-match");
}

TEST(SpokenWindowOf, AScanOfAnotherComputer) {
    SpokenWindow scene;
    scene.environment.options.openScanPath = SampleDisk::keptIn(scene.folder(), "larch");
    scene.open();
    ASSERT_TRUE(scene.waitUntil([&] { return scene.app().scan()->isForeign(); }));
    for (const auto* const screen : {"overview", "map", "large", "duplicates", "uninstall", "tidy"}) {
        scene.show(screen);
        scene.expectSpoken((std::string("foreign-") + screen).c_str());
    }
    scene.show("overview");
    scene.click(QStringLiteral("overview.volume"));
    scene.expectSpoken("foreign-volumes");
    scene.press(Qt::Key_Escape);
    scene.show("map");
    scene.item(QStringLiteral("map.view"))->forceActiveFocus(Qt::TabFocusReason);
    scene.press(Qt::Key_Home);
    scene.press(Qt::Key_F10, Qt::ShiftModifier);
    scene.expectSpoken("foreign-map-menu");
}

TEST(SpokenWindowOf, TheLastScanAndWhatIsKept) {
    SpokenWindow scene;
    SampleDisk::keepAsLast(scene.environment, scene.folder());
    scene.open();
    ASSERT_TRUE(scene.waitUntil([&] { return scene.app().scan()->isKept(); }));
    for (const auto* const screen : {"overview", "tidy"}) {
        scene.show(screen);
        scene.expectSpoken((std::string("last-") + screen).c_str());
    }
    scene.press(Qt::Key_Comma, Qt::ControlModifier);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.app().keeping()->isAny(); }));
    scene.item(QStringLiteral("settings.keep"))->forceActiveFocus(Qt::TabFocusReason);
    scene.expectSpoken("last-settings");
    scene.press(Qt::Key_Space);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("clearScans.cancel")); }));
    scene.settle();
    scene.expectSpoken("last-clear");
}

TEST(SpokenWindowOf, WhatChanged) {
    for (const auto& [suffix, width, height] : {std::tuple("", 1440, 900), {"-800x560", 800, 560}}) {
        SpokenWindow scene;
        scene.keepScan(SampleDisk::lastWeek(), 7);
        scene.open(width, height);
        scene.measure("/");
        ASSERT_TRUE(scene.waitUntil([&] { return scene.app().compare()->scan() == 0; }));
        const auto expectSpoken = [&](const char* name) {
            scene.expectSpoken((std::string(name) + suffix).c_str());
        };
        scene.settle();
        expectSpoken("overview-compared");
        scene.app().showChanges();
        ASSERT_TRUE(scene.waitUntil([&] { return scene.app().changes()->isKnown(); }));
        scene.settle();
        expectSpoken("changes");
        scene.click(QStringLiteral("changes.since"));
        expectSpoken("changes-since");
        scene.press(Qt::Key_Escape);
        scene.press(Qt::Key_F10, Qt::ShiftModifier);
        expectSpoken("changes-menu");
        scene.press(Qt::Key_Escape);
        scene.app().map()->setByChange(true);
        scene.show("map");
        ASSERT_TRUE(scene.waitUntil([&] { return scene.app().map()->nodeChanges() != nullptr; }));
        scene.settle();
        expectSpoken("map-changes");
    }
}

TEST(SpokenWindowOf, ANarrowWindow) {
    SpokenWindow scene;
    scene.open(800, 560);
    scene.expectSpoken("overview-first-run-800x560");
    scene.measure("/");
    for (const auto* const screen :
         {"overview", "map", "large", "duplicates", "uninstall", "tidy", "journal"}) {
        scene.show(screen);
        scene.expectSpoken((screen + std::string("-800x560")).c_str());
    }
    scene.press(Qt::Key_F1);
    scene.expectSpoken("help-800x560");
    scene.press(Qt::Key_Comma, Qt::ControlModifier);
    scene.expectSpoken("settings-800x560");
}

TEST(SpokenWindowOf, TheOnboarding) {
    SpokenWindow scene;
    scene.environment.isFullDiskAccessGranted = [](const std::string& /*home*/) {
        return std::optional(false);
    };
    scene.open();
    scene.expectSpoken("onboarding");
    EXPECT_EQ(scene.tree().named(QStringLiteral("Overview")), nullptr);
}

TEST(SpokenWindowOf, ARecentFolderAndOneThatIsDropped) {
    SpokenWindow scene;
    TemporaryFolder places;
    scene.open();
    scene.measure(places.folder("Films"));
    scene.show("overview");
    scene.click(QStringLiteral("overview.recent"));
    scene.expectSpoken("overview-recent");
    scene.press(Qt::Key_Escape);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(places.path("Films")))});
    QDragEnterEvent enter({400, 300}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&scene.window(), &enter);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("drop.overlay")); }));
    scene.expectSpoken("drop");
}

TEST(SpokenWindowOf, WhatIsFoundMovedAndPutBack) {
    FilledWindow scene;
    auto& trash = scene.trash;
    scene.show("duplicates");
    scene.expectSpoken("duplicates-unsearched");
    scene.searchDuplicates();
    scene.press(Qt::Key_Down);
    scene.expectSpoken("duplicates-filled");
    for (const auto* name : {"uninstall", "tidy", "journal"}) {
        scene.show(name);
        if (scene.app().screen() == Screen::uninstall) {
            scene.app().apps()->selectNamed("Aster");
            EXPECT_TRUE(scene.waitUntil([&] { return !scene.app().isShownScreenBusy(); }));
            scene.settle();
        }
        scene.expectSpoken((name + std::string("-filled")).c_str());
    }
    scene.show("journal");
    scene.press(Qt::Key_Down);
    scene.press(Qt::Key_F10, Qt::ShiftModifier);
    scene.expectSpoken("journal-menu");
    scene.press(Qt::Key_Escape);
    scene.show("duplicates");
    scene.press(Qt::Key_Home);
    scene.press(Qt::Key_Space);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("duplicates.tickBar.review")); }));
    scene.settle();
    scene.expectSpoken("duplicates-ticked");
    scene.press(Qt::Key_Delete);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("confirm.cancel")); }));
    scene.settle();
    scene.expectSpoken("confirm");
    trash->beforeMoving = [&](const std::string& /*path*/) {
        QMetaObject::invokeMethod(
            &scene.app(), [&] { scene.expectSpoken("moving"); }, Qt::BlockingQueuedConnection);
    };
    scene.click(QStringLiteral("confirm.commit"));
    ASSERT_TRUE(scene.waitUntil([&] { return scene.app().moves()->isReporting(); }));
    trash->beforeMoving = nullptr;
    scene.settle();
    scene.expectSpoken("report");
    scene.click(QStringLiteral("report.done"));
    scene.press(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("putBack.strip")); }));
    scene.settle();
    scene.expectSpoken("put-back");
}

TEST(SpokenWindow, FollowsTheArrowsInEveryList) {
    if (!isListenedTo())
        GTEST_SKIP() << "nothing listens to accessibility events here";
    const auto expectFocused = [](SpokenWindow& scene, const char* list, int key) {
        SCOPED_TRACE(list);
        scene.item(QLatin1String(list))->forceActiveFocus(Qt::TabFocusReason);
        scene.settle();
        ASSERT_TRUE(scene.hasFocus(QLatin1String(list)));
        said.clear();
        scene.press(key);
        QStringList focused;
        const auto tree = scene.tree();
        for (const auto& node : tree.nodes())
            if (node.isShowing() && node.state.focused)
                focused << node.name;
        ASSERT_EQ(focused.size(), 1) << focused.join(u'|').toStdString();
        EXPECT_TRUE(said.contains(QStringLiteral("focus ") + focused[0])) << said.join(u'|').toStdString();
    };
    SpokenWindow disk;
    disk.open();
    disk.measure("/");
    QAccessible::installUpdateHandler(hear);
    expectFocused(disk, "overview.kinds", Qt::Key_Down);
    expectFocused(disk, "overview.folders", Qt::Key_Down);
    expectFocused(disk, "overview.by", Qt::Key_Right);
    disk.show("map");
    expectFocused(disk, "map.list", Qt::Key_Down);
    disk.item(QStringLiteral("map.view"))->forceActiveFocus(Qt::TabFocusReason);
    disk.press(Qt::Key_Home);
    EXPECT_TRUE(disk.hears(QStringLiteral("focus home, Folder, 361.6 GB, 86 % of This disk")));
    disk.press(Qt::Key_Return);
    EXPECT_TRUE(disk.hears(QStringLiteral("focus Map of home")));
    disk.press(Qt::Key_Home);
    EXPECT_TRUE(disk.hears(QStringLiteral("focus mira, Folder, 361.6 GB, 100 % of home")));
    said.clear();
    disk.press(Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_TRUE(disk.hears(QStringLiteral("focus mira"))) << "the menu";
    disk.press(Qt::Key_Down);
    EXPECT_TRUE(disk.hears(QStringLiteral("focus Open")));
    disk.press(Qt::Key_Escape);
    disk.show("large");
    expectFocused(disk, "large.table", Qt::Key_End);
    expectFocused(disk, "large.table", Qt::Key_Home);
    FilledWindow scene;
    QAccessible::installUpdateHandler(hear);
    scene.searchDuplicates();
    expectFocused(scene, "duplicates.table", Qt::Key_Down);
    expectFocused(scene, "duplicates.table", Qt::Key_Down);
    expectFocused(scene, "duplicates.table", Qt::Key_Right); // on to its Keep
    scene.show("uninstall");
    expectFocused(scene, "uninstall.apps", Qt::Key_Down);
    scene.show("tidy");
    expectFocused(scene, "tidy.folders.table", Qt::Key_Down);
    scene.show("journal");
    expectFocused(scene, "journal.table", Qt::Key_Down);
    scene.show("duplicates");
    scene.press(Qt::Key_Home);
    scene.press(Qt::Key_Space);
    scene.press(Qt::Key_Delete);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("confirm.cancel")); }));
    scene.settle(); // it takes the focus once it has faded in
    expectFocused(scene, "confirm.table", Qt::Key_Down);
}

TEST(SpokenWindow, AnnouncesWhatIsTickedMeasuredAndRefused) {
    if (!isListenedTo())
        GTEST_SKIP() << "nothing listens to accessibility events here";
    SpokenWindow scene;
    scene.open();
    QAccessible::installUpdateHandler(hear);
    said.clear();
    scene.measure("/");
    EXPECT_TRUE(scene.hears(QStringLiteral("say ") + scene.app().scan()->measuredText()));
    scene.show("large");
    scene.press(Qt::Key_Home);
    scene.press(Qt::Key_Space);
    EXPECT_TRUE(scene.hears(QStringLiteral("say 1 item ticked · 46.3 GB")));
    scene.press(Qt::Key_Down);
    scene.press(Qt::Key_Space);
    EXPECT_TRUE(scene.hears(QStringLiteral("say 2 items ticked · 87.8 GB")));
    scene.press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(scene.hears(QStringLiteral("say ") + scene.app().putBack()->putBackMessage()));
    scene.press(Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(scene.hears(QStringLiteral("say Nothing is ticked")));
    scene.press(Qt::Key_Backtab);
    scene.press(Qt::Key_Return);
    EXPECT_TRUE(scene.hears(QStringLiteral("say sorted ascending")));
    scene.press(Qt::Key_F, Qt::ControlModifier);
    scene.press(Qt::Key_Z);
    scene.press(Qt::Key_Q);
    EXPECT_TRUE(scene.hears(QStringLiteral("say 0 of 14 files, 0 B")));
    scene.show("map");
    scene.item(QStringLiteral("map.list"))->forceActiveFocus(Qt::TabFocusReason);
    scene.press(Qt::Key_Right);
    EXPECT_TRUE(scene.hears(QStringLiteral("say expanded")));
    scene.show("overview");
    scene.press(Qt::Key_F, Qt::ControlModifier);
    scene.press(Qt::Key_R);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("overview.find.row.1")); }));
    scene.press(Qt::Key_Down);
    EXPECT_TRUE(
        scene.hears(QStringLiteral("say ")
                    + scene.item(QStringLiteral("overview.find.row.1"))->property("words").toString()));
}

TEST(SpokenWindow, AnnouncesWhatWasFoundAndMoved) {
    if (!isListenedTo())
        GTEST_SKIP() << "nothing listens to accessibility events here";
    FilledWindow scene;
    QAccessible::installUpdateHandler(hear);
    said.clear();
    scene.searchDuplicates();
    EXPECT_TRUE(scene.hears(QStringLiteral("say 2 groups")));
    scene.press(Qt::Key_Home);
    scene.press(Qt::Key_Space);
    scene.press(Qt::Key_Delete);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("confirm.commit")); }));
    scene.click(QStringLiteral("confirm.commit"));
    EXPECT_TRUE(scene.hears(QStringLiteral("say Moved to Trash: 4 MB")));
    EXPECT_TRUE(said.filter(QStringLiteral("Nothing is ticked")).isEmpty()) << "the report says it";
}

TEST(SpokenWindow, AnnouncesHowFarAScanIs) {
    if (!isListenedTo())
        GTEST_SKIP() << "nothing listens to accessibility events here";
    SpokenWindow scene;
    scene.open();
    QAccessible::installUpdateHandler(hear);
    scene.holdScans();
    said.clear();
    scene.app().scan()->scanDisk();
    EXPECT_TRUE(scene.hears(QStringLiteral("say 186.2 GB · 612,408 entries")));
    EXPECT_EQ(said.filter(QStringLiteral("say ")).size(), 1) << "not at every step";
    scene.app().scan()->stop();
    scene.releaseScans();
    EXPECT_TRUE(scene.hears(QStringLiteral("say Partial")));
}

} // namespace orbel::test
