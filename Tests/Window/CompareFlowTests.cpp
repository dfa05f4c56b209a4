#include "AppModel/TreeEdits.h"
#include "ModelScene.h"
#include "Support/TreeBuilder.h"

#include <gtest/gtest.h>
#include <QAbstractItemModelTester>

namespace orbel::test {
namespace {

constexpr std::uint64_t MB = 1'000'000;

ScanResult scanOf(std::uint64_t films, bool cancelled = false) {
    TreeBuilder builder("/data");
    builder.file(builder.folder(builder.folder(0, "home"), "films"), "a.mkv", films * MB);
    builder.file(builder.folder(0, "notes"), "a.pdf", 7 * MB);
    ScanResult result;
    result.startedAt = std::chrono::system_clock::now();
    result.tree = builder.build();
    result.cancelled = cancelled;
    return result;
}

TEST(WindowCompare, ComparesCompleteScansOfOneFolder) {
    ModelScene scene;
    const TemporaryFolder folder;
    scene.environment.scansFolder = folder.path("scans");
    scene.world()->now = std::chrono::system_clock::now();
    auto& growth = *scene.model().compare()->growth();
    const QAbstractItemModelTester tester(growth.folders());
    const auto scanWith = [&](ScanResult result) {
        scene.scanWith("/data", std::move(result));
        scene.waitUntil([&] { return !scene.model().compare()->isBusy(); });
    };
    scanWith(scanOf(10));
    EXPECT_EQ(growth.statement(), QStringLiteral("No comparison yet"));
    EXPECT_EQ(growth.since(), QString());
    scanWith(scanOf(99, true));
    EXPECT_EQ(growth.statement(), QStringLiteral("No comparison yet"));
    scanWith(scanOf(10));
    EXPECT_EQ(growth.statement(), QStringLiteral("Nothing grew")) << "what was stopped is not compared with";

    scene.world()->now += std::chrono::hours(24 * 400);
    scanWith(scanOf(52));
    ASSERT_EQ(growth.folders()->rowCount(), 1);
    EXPECT_EQ(growth.folders()->rows().front().path, QStringLiteral("/data/home/films"));
    EXPECT_EQ(growth.folders()->rows().front().size(), QStringLiteral("42 MB"));
    EXPECT_EQ(growth.folders()->rows().front().kind, static_cast<int>(FileKind::video));
    const auto grown = [&] {
        const auto node = growth.folders()->rows().front().node;
        return scene.model().scan()->tree()->walkedPath(node);
    };
    EXPECT_EQ(grown(), "/data/home/films");
    for (const bool isGone : {false, true}) {
        TreeBuilder fresh("/data/home");
        for (const auto* name : {"a", "b", "c"})
            fresh.folder(0, name);
        if (!isGone)
            fresh.file(fresh.folder(0, "films"), "a.mkv", 60 * MB);
        const auto before = scene.model().scan()->treeVersion();
        scene.model().treeEdits().splice("/data/home", std::make_shared<const FileTree>(fresh.build()));
        scene.waitUntil([&] { return scene.model().scan()->treeVersion() > before; });
        ASSERT_EQ(growth.folders()->rowCount(), isGone ? 0 : 1);
        if (!isGone) {
            EXPECT_EQ(grown(), "/data/home/films") << "nodes have other numbers in the edited tree";
        }
    }
    EXPECT_TRUE(growth.since().contains(QStringLiteral(" 20")))
        << "of another year: " << growth.since().toStdString();
    scene.model().scan()->startScan("/data");
    EXPECT_EQ(growth.folders()->rowCount(), 0) << "of the scan before, and its nodes are gone";
}

TEST(WindowCompare, TellsWhenAScanCannotBeKept) {
    ModelScene scene;
    const TemporaryFolder folder;
    scene.environment.scansFolder = folder.file("scans");
    scene.scanWith("/data", scanOf(10));
    scene.waitUntil([&] { return !scene.model().compare()->isBusy(); });
    EXPECT_TRUE(scene.model().notice()->text().contains(QStringLiteral("could not be kept")));
}

} // namespace
} // namespace orbel::test
