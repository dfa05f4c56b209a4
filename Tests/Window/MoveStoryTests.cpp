#include "AppModel/MoveFlow.h"
#include "AppModel/TreeEdits.h"
#include "HookedTrash.h"
#include "Journal/MoveRecord.h"
#include "Platform/HomeTrash.h"
#include "RealHome.h"
#include "Support/DesktopSession.h"
#include "Views/TreemapItem.h"
#include "WindowScene.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <QProcess>
#include <QtTest/QTest>
#include <set>
#include <thread>

namespace orbel::test {

namespace {

namespace fs = std::filesystem;

/// The desktop's own tools for the Trash, run in a session of their own whose home is the test's.
class DesktopTrash {
public:
    explicit DesktopTrash(std::string home) : home_(std::move(home)) {}

    /// Whether there are such tools; where not, only the Trash's own files tell what is in it.
    bool isThere() const {
        return !printed(QStringLiteral("command -v gio && command -v trash-list && gio info trash:///"))
                    .isEmpty();
    }
    /// Asked until there are as many, because the service needs a moment to find what is there.
    std::set<std::string> listedByFileManager(int expected) const {
        return paths(QStringLiteral("for try in 1 2 3 4 5 6 7 8 9; do\n"
                                    "    gio trash --list | cut -f 2 > \"$HOME/list\"\n"
                                    "    [ $(wc -l < \"$HOME/list\") -ne %1 ] || break\n"
                                    "    sleep 0.5\n"
                                    "done; cat \"$HOME/list\"; rm \"$HOME/list\"")
                         .arg(expected));
    }
    std::set<std::string> listedByTrashList() const {
        return paths(QStringLiteral("trash-list | cut -d ' ' -f 3-"));
    }

private:
    QByteArray printed(const QString& command) const {
        QStringList words;
        for (const auto& word : desktopSession(home_, command.toStdString()))
            words.append(QString::fromStdString(word));
        QProcess session;
        session.start(words.takeFirst(), words);
        session.waitForFinished();
        return session.readAllStandardOutput();
    }
    std::set<std::string> paths(const QString& command) const {
        std::set<std::string> found;
        for (const auto& line : printed(command).split('\n')) {
            if (line.startsWith(home_.c_str()))
                found.insert(line.toStdString());
        }
        return found;
    }

    std::string home_;
};

/// The map of a home with two films and something small.
struct MovingInTheWindow : testing::Test {
    /// `edit`: what the scan finds otherwise than it is.
    void open(int width = 1440, int height = 900, const std::function<void(FileTree&)>& edit = nullptr) {
        const auto place = scene.folder() + "/home";
        fs::create_directories(place + "/Videos/Travels with a name that goes on");
        for (const auto& [name, bytes] :
             {std::pair{"Videos/a.mkv", 600'000}, {"Videos/b.mkv", 500'000}, {"Videos/notes.txt", 90'000}}) {
            films.push_back(place + '/' + name);
            std::ofstream(films.back()) << std::string(static_cast<std::size_t>(bytes), 'x');
        }
        useRealHome(scene.environment, place);
        if (edit) {
            scene.environment.scan =
                [edit, scan = scene.environment.scan](const auto& root, const auto& token,
                                                      const auto& progress, const auto& exclusions) {
                    auto result = scan(root, token, progress, exclusions);
                    edit(result.tree);
                    return result;
                };
        }
        scene.open(width, height);
        scene.app().scan()->startScan(place);
        ASSERT_TRUE(
            scene.waitUntil([&] { return scene.app().scan()->scanState() == ScanFlow::ScanState::done; }));
        scene.app().setScreen(Screen::map);
        scene.settle();
        map = qobject_cast<TreemapItem*>(scene.item(QStringLiteral("map.view")));
        ASSERT_NE(map, nullptr);
    }
    QRectF box(const std::string& path) {
        const auto node = scene.app().scan()->tree()->index(path, scene.app().policy().canonicalizer());
        return node ? map->boxOf(*node) : QRectF();
    }
    void tick(const std::string& path, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(&scene.window(), button, Qt::NoModifier,
                          map->mapToScene(box(path).center()).toPoint());
        scene.settle();
    }
    int ticked() { return static_cast<int>(map->ticked().size()); }
    bool allThere() {
        return std::ranges::all_of(films, [](const auto& film) { return fs::exists(film); });
    }
    void keep(const QString& name) {
        for (const auto& appearance : {QStringLiteral("dark"), QStringLiteral("light")}) {
            scene.setAppearance(appearance);
            scene.picture().save(QStringLiteral(ORBEL_SNAPSHOTS "/") + name + QLatin1Char('-') + appearance
                                 + QLatin1String(".png"));
        }
    }

    WindowScene scene;
    std::vector<std::string> films;
    TreemapItem* map = nullptr;
};

} // namespace

TEST_F(MovingInTheWindow, FromTwoTilesToTheTrashAndBackAgain) {
    open();
    const auto before = box(films[0]);
    tick(films[0]);
    scene.press(Qt::Key_Space);
    ASSERT_TRUE(scene.waitUntil([&] { return ticked() == 1; }));
    tick(films[1], Qt::RightButton);
    scene.click(QStringLiteral("map.menu.tick"));
    ASSERT_TRUE(scene.waitUntil([&] { return ticked() == 2; }));
    EXPECT_TRUE(scene.says(QStringLiteral("2 items ticked")));
    keep(QStringLiteral("map-ticked"));

    scene.press(Qt::Key_Delete);
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("confirm.cancel")));
    EXPECT_TRUE(scene.says(QString::fromStdString(films[0]))) << "the whole path";
    keep(QStringLiteral("confirmation"));
    scene.press(Qt::Key_Return);
    EXPECT_FALSE(scene.app().moves()->isConfirming());
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("map.view")));
    scene.press(Qt::Key_Delete);
    scene.press(Qt::Key_Tab);
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("confirm.commit")));
    for (const int key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) {
        scene.press(key);
        EXPECT_FALSE(scene.isShown(QStringLiteral("confirm.commit")));
        scene.press(Qt::Key_Delete);
        scene.press(Qt::Key_Tab);
    }
    EXPECT_TRUE(allThere());
    scene.press(Qt::Key_Tab);
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("confirm.table"))) << "the focus stays in the sheet";
    scene.press(Qt::Key_Tab);
    scene.press(Qt::Key_Tab);

    scene.press(Qt::Key_Space);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("report.headline")); }));
    EXPECT_FALSE(fs::exists(films[0]) || fs::exists(films[1]));
    EXPECT_TRUE(fs::exists(films[2]));
    const auto trash = scene.environment.trashFolder;
    EXPECT_TRUE(fs::exists(trash + "/files/a.mkv") && fs::exists(trash + "/info/b.mkv.trashinfo"));
    scene.settle();
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("report.done")));
    keep(QStringLiteral("report"));
    ASSERT_TRUE(scene.waitUntil([&] { return !scene.app().treeEdits().isBusy(); }));
    EXPECT_TRUE(box(films[0]).isEmpty());

    scene.click(QStringLiteral("report.putBack"));
    ASSERT_TRUE(scene.waitUntil([&] { return scene.says(QStringLiteral("Put back 2 items.")); }));
    EXPECT_FALSE(scene.says(QStringLiteral("Moved to Trash")));
    EXPECT_TRUE(allThere());
    ASSERT_TRUE(scene.waitUntil([&] { return !scene.app().treeEdits().isBusy(); }));
    keep(QStringLiteral("report-put-back"));
    scene.press(Qt::Key_Escape);
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("map.view")));
    EXPECT_EQ(box(films[0]), before);
    EXPECT_EQ(ticked(), 0);
}

TEST_F(MovingInTheWindow, WhatIsNotAllBackSaysSo) {
    open();
    tick(films[0], Qt::LeftButton);
    scene.press(Qt::Key_Space);
    tick(films[1], Qt::LeftButton);
    scene.press(Qt::Key_Space);
    ASSERT_TRUE(scene.waitUntil([&] { return ticked() == 2; }));
    scene.press(Qt::Key_Delete);
    scene.click(QStringLiteral("confirm.commit"));
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("report.headline")); }));
    std::ofstream(films[0]) << "another one";
    scene.click(QStringLiteral("report.putBack"));
    EXPECT_TRUE(scene.waitUntil([&] { return scene.says(QStringLiteral("Put back 1 of 2 items.")); }));
    EXPECT_TRUE(scene.says(QStringLiteral("Moved to Trash (2)"))) << "one of them still is";

    // Qt's own dialog stands in for the desktop's.
    scene.click(QStringLiteral("report.export"));
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("fileNameTextField")); }));
    EXPECT_TRUE(scene.says(QStringLiteral("Save")));
    EXPECT_EQ(scene.item(QStringLiteral("fileNameTextField"))->property("text").toString(),
              QStringLiteral("Vanto report.md"));
    keep(QStringLiteral("save-dialog"));
    QTest::keyClick(scene.item(QStringLiteral("fileNameTextField"))->window(), Qt::Key_Escape);
    EXPECT_TRUE(scene.waitUntil([&] { return !scene.isShown(QStringLiteral("fileNameTextField")); }));
    EXPECT_TRUE(scene.isShown(QStringLiteral("report.headline"))) << "Esc is for what has opened last";
}

TEST_F(MovingInTheWindow, DelWithNothingTickedSaysSo) {
    open();
    scene.press(Qt::Key_Delete);
    EXPECT_TRUE(scene.isShown(QStringLiteral("notice")));
    EXPECT_TRUE(scene.says(QStringLiteral("Nothing is ticked.")));
    EXPECT_FALSE(scene.isShown(QStringLiteral("confirm.commit")));
}

TEST_F(MovingInTheWindow, WhatCouldNotBeReadIsToldBeforeItMoves) {
    open(1440, 900, [](FileTree& tree) {
        for (NodeIndex node = 1; node < tree.count(); ++node) {
            if (tree.name(node).starts_with("Travels"))
                tree.nodeFlags[node] |= NodeFlags::unreadable.rawValue;
        }
        tree.recomputeTotals();
    });
    const auto videos = scene.environment.home + "/Videos";
    scene.app().showOnMap(
        scene.app().scan()->tree()->index(videos, scene.app().policy().canonicalizer()).value());
    scene.settle();
    scene.click(QStringLiteral("map.tick.Travels with a name that goes on/"));
    ASSERT_TRUE(scene.waitUntil([&] { return ticked() == 1; }));
    const auto note = QStringLiteral("1 entry in it could not be read");
    EXPECT_TRUE(scene.waitUntil([&] { return scene.says(note); })) << "beside what is selected";
    keep(QStringLiteral("map-unreadable"));
    scene.press(Qt::Key_Delete);
    EXPECT_TRUE(scene.says(note));
    EXPECT_TRUE(scene.says(QStringLiteral("Frees at least 0 B")));
    keep(QStringLiteral("confirmation-unreadable"));
}

TEST_F(MovingInTheWindow, AKeyThatIsHeldOpensTheSheetAndConfirmsNothing) {
    open();
    tick(films[0]);
    scene.press(Qt::Key_Space);
    ASSERT_TRUE(scene.waitUntil([&] { return ticked() == 1; }));
    const auto send = [&](QEvent::Type type, Qt::Key key, bool isRepeated) {
        QKeyEvent event(type, key, Qt::NoModifier, QString(), isRepeated);
        QCoreApplication::sendEvent(&scene.window(), &event);
        scene.settle();
    };
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        SCOPED_TRACE(key);
        scene.item(QStringLiteral("map.tickBar.review"))->forceActiveFocus(Qt::TabFocusReason);
        scene.press(key);
        EXPECT_TRUE(scene.hasFocus(QStringLiteral("confirm.cancel")));
        // As if the button before had taken the key when it went down.
        for (const bool isRepeated : {true, true, false}) {
            send(QEvent::KeyPress, key, true);
            send(QEvent::KeyRelease, key, isRepeated);
        }
        EXPECT_TRUE(scene.app().moves()->isConfirming()) << "it neither cancels nor confirms";
        scene.press(Qt::Key_Tab);
        EXPECT_TRUE(scene.hasFocus(QStringLiteral("confirm.commit")));
        send(QEvent::KeyPress, key, true);
        send(QEvent::KeyRelease, key, false);
        EXPECT_FALSE(scene.app().moves()->isDeleting());
        scene.app().moves()->cancel();
        scene.settle();
        for (const auto* place : {"map.view", "map.list"}) {
            scene.item(QLatin1String(place))->forceActiveFocus(Qt::TabFocusReason);
            send(QEvent::KeyPress, key, true);
            EXPECT_EQ(ticked(), 1) << "nor does it do anything behind the sheet";
        }
    }
    EXPECT_TRUE(allThere());
}

TEST_F(MovingInTheWindow, TheDesktopListsWhatMovedAndTheJournalPutsItBack) {
    open();
    const auto before = box(films[0]);
    for (int i = 0; i < 2; ++i) {
        tick(films.at(static_cast<std::size_t>(i)));
        scene.press(Qt::Key_Space);
        ASSERT_TRUE(scene.waitUntil([&] { return ticked() == i + 1; }));
    }
    scene.press(Qt::Key_Delete);
    scene.click(QStringLiteral("confirm.commit"));
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("report.headline")); }));
    if (const DesktopTrash desktop(scene.environment.home); desktop.isThere()) {
        EXPECT_EQ(desktop.listedByFileManager(2), (std::set{films[0], films[1]}));
        EXPECT_EQ(desktop.listedByTrashList(), (std::set{films[0], films[1]}));
    }

    scene.press(Qt::Key_7, Qt::ControlModifier);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.says(QStringLiteral("all 2 can be put back")); }));
    scene.settle();
    scene.click(QStringLiteral("journal.session.0.putBack"));
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("journal.strip")); }));
    EXPECT_TRUE(allThere());
    if (const DesktopTrash desktop(scene.environment.home); desktop.isThere()) {
        EXPECT_TRUE(desktop.listedByTrashList().empty());
    }
    scene.click(QStringLiteral("journal.strip.close"));
    scene.press(Qt::Key_2, Qt::ControlModifier);
    ASSERT_TRUE(scene.waitUntil([&] { return !scene.app().treeEdits().isBusy(); }));
    scene.settle();
    EXPECT_EQ(box(films[0]), before);
    EXPECT_EQ(ticked(), 0);
}

TEST_F(MovingInTheWindow, AFolderIsMeasuredAgainFromTheMap) {
    open();
    const auto added = scene.environment.home + "/Videos/new.mkv";
    std::ofstream(added) << std::string(400'000, 'x');
    tick(films[2]);
    scene.press(Qt::Key_F5, Qt::ShiftModifier);
    ASSERT_TRUE(scene.waitUntil([&] { return !box(added).isEmpty(); }));
    scene.settle();
    EXPECT_EQ(scene.app().scan()->scanState(), ScanFlow::ScanState::done) << "no whole scan";

    fs::remove(added);
    const auto folder = box(scene.environment.home + "/Videos");
    QTest::mouseClick(&scene.window(), Qt::RightButton, Qt::NoModifier,
                      map->mapToScene(folder.topLeft() + QPointF(40, 8)).toPoint());
    scene.settle();
    keep(QStringLiteral("map-menu"));
    scene.click(QStringLiteral("map.menu.rescan"));
    ASSERT_TRUE(scene.waitUntil([&] { return box(added).isEmpty(); }));
}

TEST_F(MovingInTheWindow, WhatCannotMoveIsToldInTheReport) {
    open();
    tick(films[0]);
    scene.press(Qt::Key_Space);
    ASSERT_TRUE(scene.waitUntil([&] { return ticked() == 1; }));
    scene.press(Qt::Key_Delete);
    std::ofstream(films[0]) << "another film";
    scene.click(QStringLiteral("confirm.commit"));
    ASSERT_TRUE(
        scene.waitUntil([&] { return scene.says(QStringLiteral("Changed since the scan — scan again")); }));
    scene.settle();
    scene.click(QStringLiteral("report.done"));

    fs::remove(scene.environment.journalPath);
    fs::create_directory(scene.environment.journalPath);
    tick(films[1]);
    scene.press(Qt::Key_Space);
    ASSERT_TRUE(scene.waitUntil([&] { return ticked() == 1; }));
    scene.press(Qt::Key_Delete);
    scene.click(QStringLiteral("confirm.commit"));
    ASSERT_TRUE(scene.waitUntil(
        [&] { return scene.says(QStringLiteral("Stopped: the journal could not be written.")); }));
    EXPECT_TRUE(allThere());
    keep(QStringLiteral("report-no-journal"));
}

TEST_F(MovingInTheWindow, WhatMayNotMoveIsLockedAndSaysWhy) {
    open(800, 560);
    scene.click(QStringLiteral("map.showList"));
    ASSERT_TRUE(scene.waitUntil([&] {
        const auto* const box = scene.item(QStringLiteral("map.tick.Videos/"));
        return box != nullptr && !box->property("refusal").toString().isEmpty();
    }));
    scene.click(QStringLiteral("map.tick.Videos/"));
    scene.settle();
    EXPECT_EQ(ticked(), 0);
    keep(QStringLiteral("map-locked-800x560"));
    scene.click(QStringLiteral("map.showList"));
    tick(films[0]);
    scene.press(Qt::Key_Space);
    ASSERT_TRUE(scene.waitUntil([&] { return ticked() == 1; }));
    scene.settle();
    scene.click(QStringLiteral("map.tickBar.review"));
    keep(QStringLiteral("confirmation-800x560"));
    EXPECT_TRUE(scene.isShown(QStringLiteral("confirm.commit")));
    scene.click(QStringLiteral("confirm.cancel"));
    scene.click(QStringLiteral("map.tickBar.clear"));
    EXPECT_EQ(ticked(), 0);
    EXPECT_TRUE(allThere());
}

TEST_F(MovingInTheWindow, TheSheetShowsEachItemUntilItIsToldToStop) {
    const auto trash = std::make_shared<HookedTrash>(platform::homeTrash(scene.folder() + "/home"));
    scene.environment.trash = trash;
    open(800, 560);
    trash->beforeMoving = [this](const std::string& path) {
        if (path == films[0])
            std::this_thread::sleep_for(MoveRecord::longestUnrecorded);
        if (path != films[1])
            return;
        QMetaObject::invokeMethod(
            &scene.app(),
            [this] {
                scene.settle();
                keep(QStringLiteral("moving-800x560"));
                EXPECT_TRUE(scene.says(QStringLiteral("In the Trash")));
                EXPECT_TRUE(scene.hasFocus(QStringLiteral("confirm.stop")));
                scene.press(Qt::Key_Return);
            },
            Qt::BlockingQueuedConnection);
    };
    for (int i = 0; i < 3; ++i) {
        tick(films.at(static_cast<std::size_t>(i)));
        scene.press(Qt::Key_Space);
        ASSERT_TRUE(scene.waitUntil([&] { return ticked() == i + 1; }));
    }
    scene.press(Qt::Key_Delete);
    scene.click(QStringLiteral("confirm.commit"));
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("report.headline")); }));
    EXPECT_TRUE(scene.says(QStringLiteral("Cancelled before all items ran.")));
    EXPECT_FALSE(fs::exists(films[1]));
    EXPECT_TRUE(fs::exists(films[2]));
    scene.settle();
    keep(QStringLiteral("report-800x560"));
}

TEST_F(MovingInTheWindow, TheWindowClosesOnlyAfterTheItemInProgress) {
    open();
    tick(films[0]);
    scene.press(Qt::Key_Space);
    ASSERT_TRUE(scene.waitUntil([&] { return ticked() == 1; }));
    scene.press(Qt::Key_Delete);
    scene.app().moves()->confirm();
    EXPECT_FALSE(scene.window().close());
    EXPECT_TRUE(scene.window().isVisible());
    ASSERT_TRUE(scene.waitUntil([&] { return !scene.window().isVisible(); }));
    EXPECT_FALSE(scene.app().moves()->isDeleting());
}

} // namespace orbel::test
