#include "AppModel/DuplicatesFlow.h"
#include "AppModel/MoveFlow.h"
#include "AppModel/TreeEdits.h"
#include "ModelScene.h"
#include "RealHome.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <QAbstractItemModelTester>
#include <random>

namespace orbel::test {

namespace {

namespace fs = std::filesystem;

/// A measured home with three groups: of three films, of two songs and of five
/// archives, one of them protected.
struct DuplicatesFlowOn : testing::Test {
    DuplicatesFlowOn() {
        useRealHome(scene.environment, home.path());
        scene.environment.dataVolumePath = home.path();
        scene.environment.journalPath = home.path("journal/journal.jsonl");
        for (const auto* name : {"Videos/old.mkv", "Videos/new.mkv", "Downloads/film.mkv"})
            add(name, 900'000);
        for (const auto* name : {"Music/a.flac", "Music/b.flac"})
            add(name, 400'000);
        for (const auto* name : {"w/1.zip", "x/1.zip", "y/1.zip", "z/1.zip", "Pictures/1.zip"})
            add(name, 200'000);
    }

    void add(const std::string& name, std::size_t bytes) const {
        static constexpr std::chrono::hours day(24);
        const auto path = home.file(name, bytes);
        const auto age = name.starts_with("Videos/new")                                   ? day
                         : name.starts_with("Videos/old") || name.starts_with("Pictures") ? 90 * day
                                                                                          : 9 * day;
        fs::last_write_time(path, fs::file_time_type::clock::now() - age);
    }
    void measure() {
        app().setScreen(Screen::duplicates);
        app().scan()->startScan(home.path());
        scene.waitUntil([this] { return app().scan()->scanState() == ScanFlow::ScanState::done; });
    }
    void search() {
        flow().setMinimumChoice(0);
        flow().search();
        // The answer about one copy comes with those about all others.
        scene.waitUntil([this] {
            const int archive = row("Pictures/1.zip");
            return archive >= 0 && !told(archive, "refusal").toString().isEmpty();
        });
    }
    AppModel& app() { return scene.model(); }
    DuplicatesFlow& flow() { return *app().duplicates(); }
    int row(const std::string& name) {
        for (int i = 0; i < flow().groups()->rowCount(); ++i) {
            if (!flow().groups()->isHead(i) && flow().groups()->fileAt(i).path == home.path(name))
                return i;
        }
        return -1;
    }
    QVariant told(int row, const char* role) { return flow().groups()->value(row, role); }
    std::string kept(std::size_t group) { return flow().duplicateGroups().at(group).keptFile().path; }
    void review() {
        flow().review();
        scene.waitUntil([this] { return app().moves()->isConfirming(); });
    }
    void confirm() {
        app().moves()->confirm();
        scene.waitUntil([this] { return app().moves()->isReporting() && !app().treeEdits().isBusy(); });
    }

    TemporaryFolder home;
    ModelScene scene;
};

} // namespace

TEST_F(DuplicatesFlowOn, OneCopyOfEachGroupStaysWhateverIsClicked) {
    measure();
    const QAbstractItemModelTester tester(flow().groups(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(flow().duplicateMinimumBytes(), 1'000'000) << "at first";
    search();
    ASSERT_EQ(flow().duplicateGroups().size(), 3U);
    EXPECT_EQ(flow().duplicateProgress()->groupsFound, 3);
    std::mt19937 random(7); // NOLINT(cert-msc51-cpp): the same clicks every time
    const std::vector<QString> filters{
        {}, QStringLiteral("films"), QStringLiteral("VIDEOS"), QStringLiteral("/1.")};
    for (int click = 0; click < 3000; ++click) {
        const int row = static_cast<int>(random() % 13);
        const auto anyFile = [&] {
            const auto& files = flow().duplicateGroups()[random() % 3].group().files;
            return std::vector{files[random() % files.size()].path};
        };
        switch (random() % 12) {
        case 0:
            flow().keep(row);
            break;
        case 1:
            flow().tickAllOthers();
            break;
        case 2:
            flow().keepOldest();
            break;
        case 3:
            flow().keepNewest();
            break;
        case 4:
            flow().keepFolderFirst(QUrl::fromLocalFile(QString::fromStdString(home.path("Downloads"))));
            break;
        case 5:
            flow().setFilter(filters[random() % filters.size()]);
            break;
        case 6:
            flow().setFolded(row, random() % 2 == 0);
            break;
        case 7:
            flow().groups()->setGone(anyFile(), true);
            break;
        case 8:
            flow().groups()->setGone(anyFile(), false);
            break;
        default:
            flow().toggleTick(row);
        }
        int ticked = 0;
        for (const auto& group : flow().duplicateGroups()) {
            const auto paths = group.tickedPaths();
            ticked += static_cast<int>(paths.size());
            ASSERT_FALSE(paths.contains(group.keptFile().path)) << "after click " << click;
            const auto staying = std::ranges::count_if(group.group().files, [&](const DuplicateFile& file) {
                const auto copy = static_cast<std::size_t>(&file - group.group().files.data());
                return !group.copy(copy).isGone && !paths.contains(file.path);
            });
            ASSERT_TRUE(staying >= 1 || (paths.empty() && !group.isShown())) << "after click " << click;
        }
        ASSERT_EQ(flow().tickedCount(), ticked);
    }
}

TEST_F(DuplicatesFlowOn, RulesAndChoicesSayWhichCopyStays) {
    measure();
    search();
    EXPECT_EQ(flow().summary(), QStringLiteral("3 groups · up to 3 MB"));
    EXPECT_EQ(kept(0), home.path("Videos/new.mkv"));
    flow().keepOldest();
    EXPECT_EQ(kept(0), home.path("Videos/old.mkv"));
    flow().keepFolderFirst(QUrl::fromLocalFile(QString::fromStdString(home.path("Downloads"))));
    EXPECT_EQ(kept(0), home.path("Downloads/film.mkv"));
    EXPECT_EQ(flow().ruleFolderText(), QStringLiteral("~/Downloads"));

    const int film = row("Videos/old.mkv");
    EXPECT_EQ(told(0, "frees"), QStringLiteral("frees up to 2 MB"));
    flow().toggleTick(film);
    EXPECT_TRUE(told(film, "ticked").toBool());
    flow().keep(film);
    EXPECT_EQ(row("Videos/old.mkv"), 1) << "the kept copy is the first";
    EXPECT_FALSE(told(1, "ticked").toBool());
    flow().toggleTick(1);
    EXPECT_EQ(flow().tickedCount(), 0) << "what is kept cannot be ticked";
    flow().toggleTick(0);
    EXPECT_EQ(told(0, "frees"), QStringLiteral("frees 2 MB"));
    EXPECT_EQ(flow().tickedText(), QStringLiteral("2 copies ticked"));
    flow().setFilter(QStringLiteral("music/B"));
    EXPECT_EQ(flow().groupsText(), QStringLiteral("1 of 3 groups"));
    EXPECT_EQ(flow().tickedRemark(), QStringLiteral("2 of 2 hidden by filters"));

    review();
    for (const auto& ticked : app().moves()->confirmRequest()->items)
        EXPECT_EQ(ticked.item.keep->path, home.path("Videos/old.mkv"));
}

TEST_F(DuplicatesFlowOn, WhatMovedGoesAtOnceAndComesBackWhenItIsPutBack) {
    measure();
    search();
    flow().toggleTick(flow().headOf(row("Music/b.flac")));
    flow().toggleTick(row("Downloads/film.mkv"));
    home.file("Downloads/film.mkv", "another film");
    review();
    EXPECT_EQ(app().moves()->items()->rowCount(), 1) << "the other one changed";
    EXPECT_TRUE(
        app().notice()->text().startsWith(QStringLiteral("1 ticked copy can no longer be moved: Changed")));
    EXPECT_FALSE(told(row("Downloads/film.mkv"), "refusal").toString().isEmpty());
    confirm();
    EXPECT_EQ(row("Music/a.flac"), -1) << "it is the only one left";
    EXPECT_EQ(flow().countText(), QStringLiteral("2"));
    EXPECT_FALSE(flow().isStale()) << "an edited tree is no other measurement";
    app().moves()->putBackAll();
    scene.waitUntil([this] { return !app().moves()->isPuttingBack(); });
    EXPECT_NE(row("Music/a.flac"), -1);
    EXPECT_EQ(flow().countText(), QStringLiteral("3"));
    EXPECT_EQ(flow().tickedCount(), 0);
}

TEST_F(DuplicatesFlowOn, AScanEndsTheSearchAndWhatWasFoundBeforeIsStale) {
    measure();
    flow().search();
    app().scan()->measureAgain();
    EXPECT_FALSE(flow().duplicatesRunning());
    scene.waitUntil([this] { return app().scan()->scanState() == ScanFlow::ScanState::done; });
    search();
    EXPECT_EQ(flow().duplicateGroups().size(), 3U)
        << "not those of one megabyte of the search that was dropped";
    flow().tickAllOthers();
    app().scan()->measureAgain();
    EXPECT_TRUE(flow().isStale());
    EXPECT_EQ(flow().tickedCount(), 0);
    scene.waitUntil([this] { return app().scan()->scanState() == ScanFlow::ScanState::done; });
    flow().setMinimumChoice(2);
    EXPECT_EQ(flow().groups()->rowCount(), 0);
    flow().search();
    flow().stop();
    scene.waitUntil([this] { return flow().duplicatesSearched(); });
    EXPECT_FALSE(flow().isStale());
    flow().setMinimumChoice(1);
    EXPECT_TRUE(flow().isTooFew());
}

} // namespace orbel::test
