#include "AppModel/KnownRoots.h"
#include "ModelScene.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace orbel::test {

TEST(KnownRoots, KeepsTheLastEightFoldersAndTheDiskBesideThem) {
    const TemporaryFolder folder;
    QSettings settings(QString::fromStdString(folder.path("settings.ini")), QSettings::IniFormat);
    {
        KnownRoots roots(settings, "/");
        roots.note("/", 1'000'000);
        for (int i = 0; i < 10; ++i)
            roots.note("/home/mira/f\xff " + std::to_string(i), 10 + i);
        roots.note("/home/mira/f\xff 5", std::nullopt);
        roots.note("/stopped", std::nullopt);
    }
    KnownRoots roots(settings, "/");
    EXPECT_EQ(roots.entriesOf("/"), 1'000'000U);
    EXPECT_EQ(roots.entriesOf("/home/mira/f\xff 5"), 15U) << "a stopped scan tells nothing new";
    EXPECT_EQ(roots.entriesOf("/stopped"), std::nullopt);
    EXPECT_EQ(roots.entriesOf("/home/mira/f\xff 2"), std::nullopt);
    const auto folders = roots.folders();
    ASSERT_EQ(folders.size(), 8U);
    EXPECT_EQ(folders[0], "/stopped");
    EXPECT_EQ(folders[1], "/home/mira/f\xff 5");
    roots.forgetFolders();
    EXPECT_TRUE(KnownRoots(settings, "/").folders().empty());
    EXPECT_EQ(KnownRoots(settings, "/").entriesOf("/"), 1'000'000U);
}

TEST(KnownRootsInAScan, ProgressIsShownAgainstTheEntriesOfTheLastScan) {
    ModelScene scene;
    auto& flow = *scene.model().scan();
    scene.scanWith("/films", sampleScan());
    EXPECT_EQ(flow.share(), -1) << "only while measuring";
    const auto report = [&](std::size_t number, std::uint64_t entries) {
        scene.scan(number).progress(
            {.entries = entries, .bytes = 1, .unreadable = 0, .elapsed = 1, .topLevel = {}});
        scene.waitUntil([&] { return flow.progress() && flow.progress()->entries == entries; });
    };
    flow.startScan("/elsewhere");
    report(1, 3);
    EXPECT_EQ(flow.share(), -1) << "not known";
    EXPECT_EQ(flow.shareWords(), QString());
    flow.stop();
    scene.waitUntil([&] { return !flow.isScanning(); });

    flow.startScan("/films");
    EXPECT_EQ(flow.share(), 0);
    report(2, 3);
    EXPECT_EQ(flow.share(), 0.5);
    EXPECT_EQ(flow.shareWords(), QStringLiteral("About 50 % of the 6 entries of the last scan"));
    report(2, 7);
    EXPECT_EQ(flow.share(), 1);
    EXPECT_EQ(flow.shareWords(), QStringLiteral("More than the 6 entries of the last scan"));
    scene.endScan(2, sampleScan());
    scene.waitUntil([&] { return !flow.isScanning(); });
}

} // namespace orbel::test
