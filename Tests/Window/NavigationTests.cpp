#include "Scan/TreeScanner.h"
#include "Views/ButtonKeys.h"
#include "WindowScene.h"

#include <atomic>
#include <gtest/gtest.h>
#include <QTest>
#include <QWindow>

namespace orbel::test {

namespace {

const std::array screens{"overview", "map", "large", "duplicates", "uninstall", "tidy", "journal"};

/// What the keyboard can click in an item, seen or not.
void collectButtons(QQuickItem& item, std::vector<QQuickItem*>& buttons) {
    const bool isButton = item.inherits("QQuickAbstractButton") || item.inherits("QQuickComboBox");
    if (isButton && item.property("focusPolicy").toInt() != Qt::NoFocus)
        buttons.push_back(&item);
    for (auto* const child : item.childItems())
        collectButtons(*child, buttons);
}

} // namespace

TEST(WindowNavigation, NoButtonLeavesItsKeysToTheDesktop) {
    WindowScene scene;
    scene.open();
    scene.app().scan()->scanDisk();
    ASSERT_TRUE(
        scene.waitUntil([&] { return scene.app().scan()->scanState() == ScanFlow::ScanState::done; }));
    std::size_t looked = 0;
    const auto look = [&](const char* screen) {
        scene.settle();
        std::vector<QQuickItem*> buttons;
        collectButtons(*scene.window().contentItem(), buttons);
        for (auto* const button : buttons)
            EXPECT_NE(qmlAttachedPropertiesObject<ButtonKeys>(button, false), nullptr)
                << screen << ": " << button->objectName().toStdString() << " ("
                << button->metaObject()->className() << ")";
        looked += buttons.size();
    };
    for (const auto* screen : screens) {
        scene.app().setScreenName(QLatin1String(screen));
        look(screen);
    }
    scene.press(Qt::Key_Comma, Qt::ControlModifier);
    look("settings");
    EXPECT_GT(looked, 100);
}

TEST(WindowNavigation, MouseAndKeysReachEveryScreen) {
    WindowScene scene;
    scene.open();
    for (const auto* screen : screens) {
        scene.click(QStringLiteral("sidebar.") + QLatin1String(screen));
        EXPECT_EQ(scene.app().screenName(), QLatin1String(screen));
        EXPECT_TRUE(scene.isShown(QLatin1String(screen)));
    }
    for (int index = 0; index < static_cast<int>(screens.size()); ++index) {
        scene.press(Qt::Key_1 + index, Qt::ControlModifier);
        const QLatin1String screen(screens.at(static_cast<std::size_t>(index)));
        EXPECT_EQ(scene.app().screenName(), screen);
        EXPECT_TRUE(scene.isShown(screen));
    }
}

TEST(WindowNavigation, KeysScrollAPageOfText) {
    WindowScene scene;
    scene.open();
    scene.window().resize(800, 560);
    scene.press(Qt::Key_F1);
    const auto top = [&] { return scene.item("help.motto")->mapToScene({}).y(); };
    const double start = top();
    scene.press(Qt::Key_PageDown);
    EXPECT_LT(top(), start - 200);
    scene.press(Qt::Key_End);
    const double end = top();
    scene.press(Qt::Key_PageDown);
    EXPECT_EQ(top(), end);
    scene.press(Qt::Key_Home);
    EXPECT_EQ(top(), start);
}

TEST(WindowNavigation, SettingsAndHelpStandInPlaceOfAScreenUntilOneIsWanted) {
    WindowScene scene;
    scene.open();
    scene.press(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_TRUE(scene.isShown(QStringLiteral("settings")));
    EXPECT_FALSE(scene.isShown(QStringLiteral("overview")));
    scene.press(Qt::Key_F1);
    EXPECT_TRUE(scene.isShown(QStringLiteral("help.motto")));
    EXPECT_FALSE(scene.isShown(QStringLiteral("settings")));
    scene.press(Qt::Key_1, Qt::ControlModifier);
    EXPECT_TRUE(scene.isShown(QStringLiteral("overview")));
    scene.app().showAbout();
    EXPECT_TRUE(scene.isShown(QStringLiteral("help.motto")));

    scene.app().showAbout();
    EXPECT_TRUE(scene.isShown(QStringLiteral("help.motto")));
    scene.click(QStringLiteral("sidebar.settings"));
    EXPECT_TRUE(scene.isShown(QStringLiteral("settings")));
    scene.app().setScreenName(QStringLiteral("journal"));
    EXPECT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("journal")); }));
    EXPECT_FALSE(scene.isShown(QStringLiteral("settings")));
}

TEST(WindowNavigation, TabGoesThroughTheScreenThenTheSidebar) {
    WindowScene scene;
    scene.open();
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("overview.measure")));
    scene.press(Qt::Key_Tab);
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("overview.folder")));
    scene.press(Qt::Key_Tab);
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("sidebar.overview")));
    scene.press(Qt::Key_Tab, Qt::ShiftModifier);
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("overview.folder")));
    scene.press(Qt::Key_F6);
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("sidebar.overview")));
    scene.press(Qt::Key_Tab);
    scene.press(Qt::Key_Return);
    EXPECT_EQ(scene.app().screenName(), QStringLiteral("map"));
}

TEST(WindowNavigation, TheSidebarFoldsToARailWhereTheWindowIsNarrow) {
    WindowScene scene;
    scene.open(800, 560);
    EXPECT_LT(scene.item(QStringLiteral("sidebar"))->width(), 100);
    EXPECT_FALSE(scene.says(QStringLiteral("Large and Old")));
    scene.click(QStringLiteral("sidebar.tidy"));
    EXPECT_EQ(scene.app().screenName(), QStringLiteral("tidy"));
    scene.window().resize(1440, 900);
    EXPECT_TRUE(scene.waitUntil([&] { return scene.says(QStringLiteral("Large and Old")); }));
}

TEST(WindowNavigation, TheSidebarIsTheSameAfterItWasARail) {
    WindowScene scene;
    scene.open();
    const auto places = [&] {
        scene.settle();
        std::vector<QRectF> found;
        for (auto* const text : scene.texts()) {
            if (text->mapToScene({0, 0}).x() < 212)
                found.push_back(text->mapRectToScene({0, 0, text->width(), text->height()}));
        }
        return found;
    };
    const auto before = places();
    scene.window().resize(800, 560);
    scene.settle();
    scene.window().resize(1440, 900);
    EXPECT_TRUE(places() == before);
}

TEST(WindowOverview, TheBracketIsAsLongAsWhatIsUsedAndTheSumStaysInOneRowWhileItFits) {
    WindowScene scene;
    scene.open(1100, 700);
    scene.press(Qt::Key_F5);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("overview.term.total")); }));
    scene.settle();
    const auto y = [&](const char* term) {
        return scene.item(QStringLiteral("overview.term.") + QLatin1String(term))->mapToScene({0, 0}).y();
    };
    EXPECT_EQ(y("measured"), y("total"));
    const auto* const bar = scene.item(QStringLiteral("overview.ledger"));
    double used = 0;
    for (const auto* const row : bar->childItems()) {
        for (auto* const segment : row->childItems()) {
            if (const auto part = segment->property("part");
                part.isValid() && part.toInt() < DiskLedger::Reserved)
                used = std::max(used, segment->x() + segment->width());
        }
    }
    EXPECT_GT(used, 0);
    EXPECT_EQ(scene.item(QStringLiteral("overview.bracket"))->width(), used);
    scene.window().resize(800, 560);
    scene.settle();
    EXPECT_LT(y("measured"), y("total"));
}

TEST(WindowScan, ShowsWhatAFolderHoldsFromTheFirstRunToTheEnd) {
    WindowScene scene;
    scene.environment.home = scene.folder();
    scene.environment.dataVolumePath = scene.folder();
    TemporaryFolder disk;
    disk.file("films/long.mkv", std::size_t{3'000'000});
    disk.file("notes/one.pdf", std::size_t{40'000});
    scene.environment.dataVolumePath = disk.path();
    scene.environment.scan = [](const std::string& root, const ScanCancellation& cancellation,
                                const ScanProgressCallback& progress, const Exclusions& exclusions) {
        return TreeScanner::scan(root, 1, cancellation, progress, exclusions);
    };
    scene.open();
    EXPECT_TRUE(scene.says(QStringLiteral("See where 421.8 GB went")));
    scene.press(Qt::Key_Return);
    ASSERT_TRUE(
        scene.waitUntil([&] { return scene.app().scan()->scanState() == ScanFlow::ScanState::done; }));
    scene.settle();
    EXPECT_TRUE(scene.isShown(QStringLiteral("overview.kinds")));
    EXPECT_TRUE(scene.says(QStringLiteral("Video")));
    EXPECT_TRUE(scene.says(QStringLiteral("films")));
    EXPECT_TRUE(scene.says(QStringLiteral("No comparison yet")));
    EXPECT_FALSE(scene.isShown(QStringLiteral("overview.partial")));
}

TEST(WindowScan, StopsAndKeepsWhatWasMeasuredAsPartial) {
    WindowScene scene;
    scene.holdScans();
    scene.open();
    scene.click(QStringLiteral("overview.measure"));
    ASSERT_TRUE(scene.waitUntil([&] { return scene.says(QStringLiteral("612,408")); }));
    EXPECT_TRUE(scene.says(QStringLiteral("Top level so far")));
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("overview.stop")));
    scene.press(Qt::Key_Escape);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.app().scan()->isPartial(); }));
    scene.settle();
    EXPECT_TRUE(scene.says(QStringLiteral("Scan cancelled — partial")));

    // It stays until the next scan is done, whatever is shown meanwhile.
    scene.press(Qt::Key_2, Qt::ControlModifier);
    scene.press(Qt::Key_1, Qt::ControlModifier);
    EXPECT_TRUE(scene.isShown(QStringLiteral("overview.partial")));
    scene.releaseScans();
    scene.click(QStringLiteral("overview.partial.action"));
    ASSERT_TRUE(
        scene.waitUntil([&] { return scene.app().scan()->scanState() == ScanFlow::ScanState::done; }));
    scene.settle();
    EXPECT_FALSE(scene.isShown(QStringLiteral("overview.partial")));
}

TEST(WindowScan, MeasuringAgainAsksForTheSameRootByF5) {
    WindowScene scene;
    scene.open();
    scene.press(Qt::Key_F5);
    ASSERT_TRUE(
        scene.waitUntil([&] { return scene.app().scan()->scanState() == ScanFlow::ScanState::done; }));
    const auto version = scene.app().scan()->treeVersion();
    scene.settle();
    scene.click(QStringLiteral("overview.again"));
    EXPECT_TRUE(scene.waitUntil([&] { return scene.app().scan()->treeVersion() == version + 2; }));
}

TEST(WindowOverview, ListsWhatCouldNotBeReadWithItsCommand) {
    WindowScene scene;
    scene.open();
    scene.press(Qt::Key_F5);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("overview.unreadable")); }));
    scene.settle();
    scene.click(QStringLiteral("overview.unreadable"));
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("unreadable.close")));
    scene.click(QStringLiteral("unreadable.copy.0"));
    EXPECT_EQ(scene.requests().copied, QStringLiteral("sudo orbel --scan-json '/home/mira/it'\\''s closed'"));
    scene.press(Qt::Key_Escape);
    EXPECT_TRUE(scene.waitUntil([&] { return !scene.isShown(QStringLiteral("unreadable.close")); }));
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("overview.unreadable")));
}

TEST(WindowOverview, OffersTheOtherFileSystems) {
    WindowScene scene;
    scene.open();
    scene.click(QStringLiteral("overview.volume"));
    ASSERT_TRUE(scene.waitUntil([&] { return scene.says(QStringLiteral("/media/mira/backup")); }));
    scene.click(QStringLiteral("overview.volume.1"));
    ASSERT_TRUE(
        scene.waitUntil([&] { return scene.app().scan()->scanState() == ScanFlow::ScanState::done; }));
    EXPECT_EQ(scene.app().scan()->scanRoot(), "/media/mira/backup");
}

TEST(WindowOverview, ArrowsMoveWithinAListAndEnterOpensTheMap) {
    WindowScene scene;
    scene.open();
    scene.press(Qt::Key_F5);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("overview.folders")); }));
    scene.settle();
    scene.item(QStringLiteral("overview.folders"))->forceActiveFocus(Qt::TabFocusReason);
    scene.press(Qt::Key_Down);
    EXPECT_EQ(scene.item(QStringLiteral("overview.folders"))->property("currentIndex").toInt(), 1);
    scene.press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(scene.requests().copied, QStringLiteral("/home/mira/virtual-machines"));
    scene.press(Qt::Key_Return);
    EXPECT_EQ(scene.app().screenName(), QStringLiteral("map"));
}

TEST(WindowSettings, ApplyAtOnce) {
    WindowScene scene;
    scene.open();
    scene.press(Qt::Key_Comma, Qt::ControlModifier);
    const auto light = scene.picture().pixelColor(400, 5);
    scene.click(QStringLiteral("settings.appearance.2"));
    EXPECT_EQ(scene.app().appearance()->choice(), QStringLiteral("dark"));
    EXPECT_LT(scene.picture().pixelColor(400, 5).lightness(), 60);
    scene.press(Qt::Key_Left);
    EXPECT_EQ(scene.app().appearance()->choice(), QStringLiteral("light"));
    EXPECT_EQ(scene.picture().pixelColor(400, 5), light);

    EXPECT_FALSE(scene.item(QStringLiteral("settings.threshold"))->isEnabled());
    scene.click(QStringLiteral("settings.alert"));
    EXPECT_TRUE(scene.app().alert()->isEnabled());
    EXPECT_TRUE(scene.item(QStringLiteral("settings.threshold"))->isEnabled());
    scene.item(QStringLiteral("settings.threshold"))->forceActiveFocus(Qt::TabFocusReason);
    scene.press(Qt::Key_Down);
    EXPECT_EQ(scene.app().alert()->lowDisk().threshold, 20'000'000'000U);
    scene.click(QStringLiteral("settings.threshold"));
    EXPECT_TRUE(scene.waitUntil([&] { return scene.says(QStringLiteral("50 GB")); }));
    scene.press(Qt::Key_Down);
    scene.press(Qt::Key_Return);
    EXPECT_EQ(scene.app().alert()->lowDisk().threshold, 50'000'000'000U);
    scene.item(QStringLiteral("settings.login"))->forceActiveFocus(Qt::TabFocusReason); // which scrolls to it
    scene.press(Qt::Key_Space);
    EXPECT_TRUE(scene.app().alert()->opensAtLogin());
}

TEST(WindowOnboarding, StandsAloneUntilAccessIsGranted) {
    WindowScene scene;
    auto isGranted = std::make_shared<std::atomic<bool>>(false);
    scene.environment.isFullDiskAccessGranted = [isGranted](const std::string& /*home*/) {
        return std::optional(isGranted->load());
    };
    scene.open();
    EXPECT_TRUE(scene.isShown(QStringLiteral("onboarding")));
    EXPECT_FALSE(scene.isShown(QStringLiteral("sidebar")));
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("onboarding.open")));
    scene.press(Qt::Key_F5);
    EXPECT_EQ(scene.app().scan()->scanState(), ScanFlow::ScanState::idle);
    isGranted->store(true);
    EXPECT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("overview.measure")); }));
    EXPECT_FALSE(scene.isShown(QStringLiteral("onboarding")));
}

TEST(WindowFrame, LooksAtTheDiskAgainWhenItIsReturnedTo) {
    WindowScene scene;
    const auto trash = std::make_shared<std::atomic<std::uint64_t>>(5);
    scene.environment.measureTrash = [trash](const std::string&) { return std::optional(trash->load()); };
    scene.open();
    QWindow other;
    other.show();
    other.requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    *trash = 7;
    scene.window().requestActivate();
    EXPECT_TRUE(scene.waitUntil([&] { return scene.app().disk()->trashBytes() == 7; }));
}

TEST(WindowFrame, BlamesWhatCouldNotBeReadForNothingOutsideTheFolder) {
    WindowScene scene;
    scene.open();
    const auto remark = [&] {
        return scene.item(QStringLiteral("overview.term.notmeasured"))->property("remark").toString();
    };
    const auto link = [&] {
        return scene.item(QStringLiteral("overview.term.notmeasured"))->property("link").toString();
    };
    scene.app().scan()->startScan("/home/mira/Videos");
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("overview.unreadable")); }));
    EXPECT_EQ(remark(), QStringLiteral("outside of ~/Videos"));
    EXPECT_EQ(link(), QString());
    scene.app().scan()->scanDisk();
    ASSERT_TRUE(scene.waitUntil(
        [&] { return scene.isShown(QStringLiteral("overview.term.notmeasured")) && !link().isEmpty(); }));
    EXPECT_EQ(remark(), QString());
}

namespace {

/// A desktop without a file manager.
struct BareDesktop final : Desktop {
    void open(const std::string&) override {}
    void showInFileManager(const std::string&) override {}
    bool hasTerminal() override { return false; }
    void openTerminal(const std::string&) override {}
    void openTrash(const std::string&) override { reportFailure(QStringLiteral("No program")); }
    void openAddress(const QString&) override {}
    void copyText(const QString&) override {}
};

} // namespace

TEST(WindowFrame, SaysWhenTheTrashCannotBeOpened) {
    WindowScene scene;
    scene.environment.desktop = std::make_shared<BareDesktop>();
    scene.open();
    scene.click(QStringLiteral("sidebar.trash"));
    EXPECT_TRUE(scene.isShown(QStringLiteral("notice")));
    EXPECT_TRUE(scene.says(QStringLiteral("No program")));
}

TEST(WindowFrame, OpensTheTrash) {
    WindowScene scene;
    scene.open();
    EXPECT_TRUE(scene.says(QStringLiteral("5.8 GB")));
    scene.click(QStringLiteral("sidebar.trash"));
    EXPECT_EQ(scene.requests().openedTrash, scene.folder() + "/Trash/files");
}

} // namespace orbel::test
