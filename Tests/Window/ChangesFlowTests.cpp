#include "AppModel/TreeEdits.h"
#include "Models/ItemKey.h"
#include "ModelScene.h"
#include "Support/TreeBuilder.h"

#include <gtest/gtest.h>
#include <QAbstractItemModelTester>

#include <unistd.h>

namespace orbel::test {
namespace {

constexpr std::uint64_t megabyte = 1'000'000;

struct Laid {
    const char* name;
    std::uint64_t megabytes;
    std::uint64_t inode;
};

/// "/data" with files in "films" and in "notes".
ScanResult laidOut(Date measuredAt, std::vector<Laid> films, std::vector<Laid> notes) {
    TreeBuilder builder("/data");
    const auto lay = [&](const char* name, const std::vector<Laid>& files) {
        const auto folder = builder.folder(0, name);
        for (const auto& file : files)
            builder.tree.inodes[builder.file(folder, file.name, file.megabytes * megabyte)] = file.inode;
    };
    lay("films", films);
    lay("notes", notes);
    ScanResult result;
    result.startedAt = std::chrono::time_point_cast<std::chrono::system_clock::duration>(measuredAt);
    result.tree = builder.build();
    return result;
}

/// Three scans of "/data", of which two were kept before, and the list of what changed.
struct ChangesScene : ModelScene {
    ChangesScene() {
        environment.scansFolder = folder.path("scans");
        world()->now = std::chrono::system_clock::now();
        const auto now = currentDate();
        scanned(laidOut(now - std::chrono::days(9), {{"ridge.mkv", 10, 1}}, {}));
        scanned(laidOut(now - std::chrono::days(2),
                        {{"ridge.mkv", 10, 1}, {"harbour.mkv", 40, 2}, {"Old.mkv", 70, 3}},
                        {{"list.pdf", 8, 4}, {"moving.pdf", 5, 5}}));
        scanned(laidOut(now, {{"ridge.mkv", 30, 1}, {"harbour.mkv", 40, 2}, {"moving.pdf", 5, 5}},
                        {{"list.pdf", 2, 4}, {"new.pdf", 9, 6}}));
    }

    void scanned(ScanResult result) {
        scanWith("/data", std::move(result));
        waitUntil([this] { return !model().compare()->isBusy(); });
    }
    void rest() {
        waitUntil([this] { return !changes().isRunning(); });
    }
    void open() {
        changes().setShown(true);
        rest();
    }
    ChangesFlow& changes() { return *model().changes(); }
    /// "New new.pdf +9 MB".
    std::vector<std::string> rows() {
        rest();
        std::vector<std::string> all;
        auto& list = *changes().rows();
        for (int row = 0; row < list.rowCount(); ++row) {
            QStringList words;
            for (const auto* role : {"changeName", "name", "difference"})
                words << list.value(row, role).toString();
            all.push_back(words.join(u' ').toStdString());
        }
        return all;
    }
    QString of(const std::string& name, const char* role) {
        auto& list = *changes().rows();
        for (int row = 0; row < list.rowCount(); ++row)
            if (list.value(row, "name").toString().toStdString() == name)
                return list.value(row, role).toString();
        return QStringLiteral("no row");
    }

    TemporaryFolder folder;
};

using Rows = std::vector<std::string>;

TEST(WindowChanges, ListsAllThatChangedByHowMuch) {
    ChangesScene scene;
    auto& changes = scene.changes();
    const QAbstractItemModelTester tester(changes.rows());
    EXPECT_EQ(scene.model().compare()->scanTexts().size(), 2) << "the one that is shown is not among them";
    EXPECT_EQ(scene.model().compare()->scan(), 0);
    EXPECT_FALSE(scene.model().compare()->compared()) << "nothing needs it";
    EXPECT_EQ(changes.rows()->rowCount(), 0);
    scene.open();
    EXPECT_EQ(scene.rows(),
              (Rows{"Gone Old.mkv \u221270 MB", "Shrank data \u221247 MB", "Shrank films \u221245 MB",
                    "Grew ridge.mkv +20 MB", "New new.pdf +9 MB", "Shrank list.pdf \u22126 MB",
                    "Shrank notes \u22122 MB", "Moved moving.pdf 0 B"}));
    EXPECT_EQ(changes.shownCount(), QStringLiteral("8 changes"));
    EXPECT_EQ(changes.shownNet(), QStringLiteral("\u221247 MB in all"))
        << "what lies in one another counts once";
    EXPECT_EQ(scene.of("Old.mkv", "before"), QStringLiteral("70 MB"));
    EXPECT_EQ(scene.of("Old.mkv", "after"), QStringLiteral("—"));
    EXPECT_EQ(scene.of("Old.mkv", "folderKey"), QStringLiteral("file:///data/films"));
    EXPECT_EQ(scene.of("new.pdf", "before"), QStringLiteral("—"));
    EXPECT_EQ(scene.of("moving.pdf", "detail"),
              QStringLiteral("Moved from /data/notes/moving.pdf, now in /data/films"));

    changes.setShown(false);
    EXPECT_EQ(changes.rows()->rowCount(), 0);
    EXPECT_FALSE(scene.model().compare()->compared()) << "both trees are let go";
}

TEST(WindowChanges, FiltersAndSorts) {
    ChangesScene scene;
    auto& changes = scene.changes();
    const QAbstractItemModelTester tester(changes.rows());
    scene.open();
    changes.setItems(2);
    changes.sortBy(ChangesFlow::Name);
    EXPECT_EQ(scene.rows(), (Rows{"Shrank list.pdf \u22126 MB", "Moved moving.pdf 0 B", "New new.pdf +9 MB",
                                  "Gone Old.mkv \u221270 MB", "Grew ridge.mkv +20 MB"}))
        << "files, from A on in any case of letters";
    EXPECT_EQ(changes.shownCount(), QStringLiteral("5 of 8 changes"));
    EXPECT_EQ(changes.shownNet(), QStringLiteral("\u221247 MB in all"))
        << "the folders stand for nothing more";
    changes.sortBy(ChangesFlow::Before);
    EXPECT_EQ(scene.rows().front(), "Gone Old.mkv \u221270 MB") << "figures begin with the largest";
    changes.sortBy(ChangesFlow::Before);
    EXPECT_EQ(scene.rows().front(), "New new.pdf +9 MB");
    changes.sortBy(ChangesFlow::Difference);
    changes.setText(QStringLiteral("FILMS/"));
    EXPECT_EQ(scene.rows(),
              (Rows{"Gone Old.mkv \u221270 MB", "Grew ridge.mkv +20 MB", "Moved moving.pdf 0 B"}));
    changes.setKind(4);
    EXPECT_EQ(changes.kinds().at(4), QStringLiteral("Gone"));
    EXPECT_EQ(scene.rows(), Rows{"Gone Old.mkv \u221270 MB"});
    changes.setItems(1);
    EXPECT_EQ(scene.rows(), Rows());
    EXPECT_FALSE(changes.isUnchanged()) << "the filters hide what there is";
    changes.clearFilter();
    EXPECT_EQ(scene.rows().size(), 8U);

    const auto match = [&](const char* typed) {
        auto& rows = *changes.rows();
        const auto found = rows.match(rows.index(0), Qt::DisplayRole, QLatin1String(typed));
        return found.isEmpty() ? QStringLiteral("nothing")
                               : rows.value(found.front().row(), "name").toString();
    };
    EXPECT_EQ(match("o"), QStringLiteral("Old.mkv"));
    EXPECT_EQ(match("ne"), QStringLiteral("new.pdf"));
    EXPECT_EQ(match("zz"), QStringLiteral("nothing"));
    for (int row = 0; row < changes.rows()->rowCount(); ++row)
        EXPECT_EQ(changes.rows()->match(changes.rows()->index(0), keyRole, changes.rows()->value(row, "key")),
                  QModelIndexList{changes.rows()->index(row)})
            << row;
}

TEST(WindowChanges, ComparesWithTheScanThatIsChosen) {
    ChangesScene scene;
    auto& compare = *scene.model().compare();
    const auto newest = compare.growth()->since();
    scene.open();
    compare.setScan(1);
    scene.waitUntil([&] { return !compare.isBusy(); });
    EXPECT_EQ(compare.scan(), 1);
    EXPECT_NE(compare.growth()->since(), newest) << "the card follows";
    EXPECT_EQ(scene.rows(), (Rows{"Grew data +76 MB", "Grew films +65 MB", "New harbour.mkv +40 MB",
                                  "Grew ridge.mkv +20 MB", "Grew notes +11 MB", "New new.pdf +9 MB",
                                  "New moving.pdf +5 MB", "New list.pdf +2 MB"}));

    // One that cannot be read leaves all as it was.
    const auto kept = ScanArchive(scene.environment.scansFolder).of("/data");
    ASSERT_EQ(kept.size(), 3U);
    ASSERT_EQ(::truncate(kept[1].path.c_str(), 400), 0);
    compare.setScan(0);
    scene.waitUntil([&] { return !compare.isBusy(); });
    EXPECT_EQ(compare.scan(), 1);
    EXPECT_TRUE(scene.model().notice()->text().contains(QStringLiteral("could not be compared with")));
    EXPECT_EQ(scene.rows().size(), 8U);

    scene.model().scan()->startScan("/data");
    EXPECT_EQ(scene.changes().rows()->rowCount(), 0) << "of the scan before";
    EXPECT_EQ(compare.scanTexts().size(), 0);
}

TEST(WindowChanges, FollowsTheTree) {
    ChangesScene scene;
    const QAbstractItemModelTester tester(scene.changes().rows());
    scene.open();
    scene.changes().setKind(4);
    EXPECT_EQ(scene.rows(), Rows{"Gone Old.mkv \u221270 MB"});
    const auto edited = scene.model().scan()->treeVersion();
    scene.model().treeEdits().remove({"/data/films/ridge.mkv"});
    scene.waitUntil([&] { return scene.model().scan()->treeVersion() > edited; });
    EXPECT_EQ(scene.rows(), (Rows{"Gone Old.mkv \u221270 MB", "Gone ridge.mkv \u221210 MB"}));
}

} // namespace
} // namespace orbel::test
