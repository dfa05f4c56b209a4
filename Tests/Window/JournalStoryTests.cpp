#include "AppModel/JournalFlow.h"
#include "AppModel/PutBackFlow.h"
#include "PastMoves.h"
#include "WindowScene.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <QtTest/QTest>

namespace orbel::test {

namespace {

namespace fs = std::filesystem;

/// The journal's screen of somebody who has moved things for a while.
struct TheJournalInTheWindow : testing::Test {
    TheJournalInTheWindow() {
        scene.environment.home = past.home.path();
        scene.environment.trashFolder = past.trash;
        scene.environment.journalPath = past.journalPath;
    }
    void fill() {
        const auto today = iso8601(currentDate() - std::chrono::minutes(1));
        past.move("old", {"proxies.mov", "statement.pdf"}, "2026-01-02T17:40:00Z",
                  DeletionModule::emptyFolders);
        past.move("middle", {"lecture_04.mkv", "lecture_03.mkv", "accounts-2024.zip"},
                  "2026-02-18T21:04:00Z");
        past.skip("middle", "kit_011.wav", "2026-02-18T21:04:00Z");
        past.move(
            "new",
            {"raspios-full.img", "dataset-lidar-tampere-with-a-name-that-goes-on-and-on.zip", "Win11.iso"},
            today, DeletionModule::largeOld);
        fs::remove(past.trashed("proxies.mov"));
        past.home.file("Videos/accounts-2024.zip", "newer");
    }
    void open(int width = 1440, int height = 900) {
        scene.open(width, height);
        scene.press(Qt::Key_7, Qt::ControlModifier);
        scene.settle();
    }
    bool waitFor(const char* words) {
        const bool isThere = scene.waitUntil([&] { return scene.says(QString::fromUtf8(words)); });
        scene.settle();
        return isThere;
    }
    void keep(const QString& name) {
        for (const auto& appearance : {QStringLiteral("dark"), QStringLiteral("light")}) {
            scene.setAppearance(appearance);
            scene.picture().save(QStringLiteral(ORBEL_SNAPSHOTS "/journal-") + name + QLatin1Char('-')
                                 + appearance + QLatin1String(".png"));
        }
    }

    PastMoves past;
    WindowScene scene;
};

} // namespace

TEST_F(TheJournalInTheWindow, IsReadFoldedAndPutBackByKeys) {
    fill();
    open();
    ASSERT_TRUE(waitFor("all 3 can be put back"));
    ASSERT_TRUE(waitFor("Place occupied"));
    EXPECT_TRUE(scene.item(QStringLiteral("journal.table"))->hasActiveFocus())
        << "opening it puts the focus on the list";
    EXPECT_TRUE(scene.says(QStringLiteral("Something already exists at the original location")));
    EXPECT_TRUE(scene.says(QStringLiteral("3 sessions · 9 items")));
    keep(QStringLiteral("filled"));

    scene.press(Qt::Key_Left);
    EXPECT_EQ(scene.app().journal()->list()->rowCount(), 9);
    keep(QStringLiteral("folded"));
    scene.press(Qt::Key_Space);
    EXPECT_EQ(scene.app().journal()->list()->rowCount(), 12);
    scene.press(Qt::Key_W);
    scene.press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(scene.requests().copied, QString::fromStdString(past.video("Win11.iso")));
    scene.press(Qt::Key_Menu);
    EXPECT_TRUE(scene.isShown(QStringLiteral("journal.menu.show")));
    keep(QStringLiteral("menu"));
    scene.click(QStringLiteral("journal.menu.show"));
    EXPECT_EQ(scene.requests().shown, past.trashed("Win11.iso"));
    scene.press(Qt::Key_Return);
    ASSERT_TRUE(waitFor("Put back “Win11.iso”"));
    EXPECT_TRUE(fs::exists(past.video("Win11.iso")));
    scene.click(QStringLiteral("journal.strip.show"));
    EXPECT_EQ(scene.requests().shown, past.video("Win11.iso"));
    keep(QStringLiteral("put-back"));
    scene.click(QStringLiteral("journal.strip.close"));
    EXPECT_FALSE(scene.isShown(QStringLiteral("journal.strip")));

    scene.press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("journal.find")));
    for (const int key : {Qt::Key_L, Qt::Key_E, Qt::Key_C, Qt::Key_T})
        scene.press(key);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.app().journal()->list()->rowCount() == 3; }));
    scene.press(Qt::Key_X);
    ASSERT_TRUE(waitFor("Nothing found"));
    keep(QStringLiteral("nothing-found"));
    scene.press(Qt::Key_Escape);
    EXPECT_EQ(scene.app().journal()->list()->rowCount(), 12);
}

TEST_F(TheJournalInTheWindow, CtrlZPutsTheLastBatchBackFromEveryScreen) {
    fill();
    open();
    scene.press(Qt::Key_1, Qt::ControlModifier);
    scene.holdScans();
    scene.app().scan()->scanDisk();
    scene.press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(scene.app().putBack()->isRunning()) << "not beside a scan";
    scene.releaseScans();
    ASSERT_TRUE(
        scene.waitUntil([&] { return scene.app().scan()->scanState() == ScanFlow::ScanState::done; }));
    scene.press(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(waitFor("and 2 more"));
    EXPECT_TRUE(fs::exists(past.video("raspios-full.img")) && fs::exists(past.video("Win11.iso")));
    EXPECT_FALSE(fs::exists(past.video("lecture_03.mkv"))) << "only the last batch";
    keep(QStringLiteral("ctrl-z"));
    scene.press(Qt::Key_7, Qt::ControlModifier);
    EXPECT_TRUE(scene.isShown(QStringLiteral("journal.strip")));
    EXPECT_FALSE(scene.isShown(QStringLiteral("putBack.strip"))) << "it is told once";
    ASSERT_TRUE(waitFor("nothing left to put back"));
}

TEST_F(TheJournalInTheWindow, FitsASmallWindowAndALargeFont) {
    fill();
    open(800, 560);
    ASSERT_TRUE(waitFor("In the Trash"));
    keep(QStringLiteral("filled-800x560"));
    scene.window().resize(1440, 900);
    scene.setFontScale(2);
    keep(QStringLiteral("filled-large-font"));
}

TEST_F(TheJournalInTheWindow, IsEmptyOrSaysWhatIsWrong) {
    open();
    ASSERT_TRUE(waitFor("Nothing has been moved yet"));
    keep(QStringLiteral("empty"));
    past.move("new", {"a.mkv"}, "2026-02-18T21:04:00Z");
    scene.press(Qt::Key_1, Qt::ControlModifier);
    scene.press(Qt::Key_7, Qt::ControlModifier);
    ASSERT_TRUE(waitFor("a.mkv")) << "what another process appended";
    fs::rename(past.journalPath, past.home.path("elsewhere"));
    past.home.link("journal/journal.jsonl", past.home.path("elsewhere"));
    scene.press(Qt::Key_1, Qt::ControlModifier);
    scene.press(Qt::Key_7, Qt::ControlModifier);
    ASSERT_TRUE(waitFor("The journal could not be read"));
    EXPECT_FALSE(scene.says(QStringLiteral("a.mkv")));
    keep(QStringLiteral("failed"));
    fs::remove(past.journalPath);
    fs::rename(past.home.path("elsewhere"), past.journalPath);
    scene.click(QStringLiteral("journal.empty.action"));
    ASSERT_TRUE(waitFor("a.mkv"));
}

} // namespace orbel::test
