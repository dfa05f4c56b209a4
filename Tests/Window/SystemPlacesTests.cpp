#include "ModelScene.h"
#include "RealHome.h"
#include "Snapshots.h"
#include "Support/TemporaryFolder.h"
#include "Support/TreeBuilder.h"
#include "WindowScene.h"

#include <gtest/gtest.h>
#include <QClipboard>
#include <QGuiApplication>
#include <QtTest/QTest>

namespace orbel::test {
namespace {

ScanResult diskScan(bool cancelled) {
    TreeBuilder disk("/");
    disk.file(disk.folder(0, "var"), "log", 100);
    return {
        .tree = disk.build(), .cancelled = cancelled, .startedAt = {}, .firstProgress = {}, .duration = 1};
}

TEST(SystemPlacesFlow, IsOfACompleteScanOfTheWholeDiskAlone) {
    ModelScene scene;
    const auto looks = std::make_shared<std::atomic<int>>(0);
    scene.environment.systemPlaces = [looks](const std::string&, const FileTree& tree,
                                             const ScanCancellation&) {
        ++*looks;
        EXPECT_EQ(tree.count(), 3);
        return std::vector<SystemPlace>{
            {.path = "/var/x", .bytes = 400'000'000, .isUpTo = true, .what = "Things", .command = "sudo x"}};
    };
    auto& places = *scene.model().system()->places();
    const auto whole = scene.environment.dataVolumePath;
    scene.scanWith("/films", sampleScan());
    scene.scanWith(whole, diskScan(true));
    QTest::qWait(20);
    EXPECT_EQ(*looks, 0);
    scene.scanWith(whole, diskScan(false));
    scene.waitUntil([&] { return places.rowCount() == 1; });
    EXPECT_EQ(places.rows().front().size(), QStringLiteral("up to 400 MB"));
    scene.scanWith("/films", sampleScan());
    EXPECT_EQ(places.rowCount(), 0) << "of another scan";
    QTest::qWait(20);
    EXPECT_EQ(places.rowCount() + *looks, 1);
}

TEST(WindowSystemPlaces, EachCommandIsReachedAndCopiedWithTheKeyboard) {
    for (const auto& [width, height, scale] :
         {std::tuple(1440, 900, 1.0), {800, 560, 1.0}, {800, 560, 2.0}}) {
        WindowScene scene;
        scene.open(width, height);
        if (scale != 1.0)
            scene.setFontScale(scale);
        scene.app().scan()->scanDisk();
        ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("overview.freed.2")); }));
        scene.settle();
        auto* const card = scene.item(QStringLiteral("overview.freed"));
        scene.item(QStringLiteral("overview.tidy"))->forceActiveFocus(Qt::TabFocusReason);
        for (const auto& [row, command] :
             {std::pair(0, QStringLiteral("docker system prune")), {1, QStringLiteral("sudo apt clean")}}) {
            scene.press(Qt::Key_Tab);
            const auto name = QStringLiteral("overview.freed.%1").arg(row);
            EXPECT_TRUE(scene.hasFocus(name + QStringLiteral(".command.copy")));
            scene.press(Qt::Key_Space);
            EXPECT_EQ(QGuiApplication::clipboard()->text(), command);
            EXPECT_EQ(scene.item(name + QStringLiteral(".command.copy"))->property("text"),
                      QStringLiteral("Copied"));
            const auto* const line = scene.item(name + QStringLiteral(".command"));
            const auto place = line->mapRectToItem(card, {0, 0, line->width(), line->height()});
            EXPECT_TRUE(card->contains(place.topLeft()) && card->contains(place.bottomRight()))
                << width << " at " << scale;
        }
        const auto shown = scene.item(QStringLiteral("overview.freed.1.command"))->mapToScene({0, 0});
        EXPECT_TRUE(shown.y() > 0 && shown.y() < height) << "what has the focus is in sight";
        // Without its tooltip, which lies over the row below.
        scene.item(QStringLiteral("overview.freed.0.command.copy"))->forceActiveFocus(Qt::OtherFocusReason);
        scene.settle();
        keepPicture(scene,
                    QStringLiteral("overview-freed-%1%2").arg(width).arg(scale > 1 ? "-large-font" : ""));
    }
}

TEST(WindowSystemPlaces, AnItemThatAProgramManagesLeadsToItsCommandAndToTheProgram) {
    const TemporaryFolder home;
    home.file("Games/steamapps/appmanifest_70.acf",
              R"("A"{"appid" "70" "name" "Old House" "installdir" "House"})");
    home.file("Games/steamapps/common/House/data.pak", 200'000);
    home.file(".local/share/flatpak/app/org.a.B/data", 100'000);
    WindowScene scene;
    useRealHome(scene.environment, home.path());
    scene.open(1440, 900);
    auto& model = scene.app();
    model.scan()->startScan(home.path());
    ASSERT_TRUE(scene.waitUntil([&] { return model.scan()->hasTree(); }));
    const auto select = [&](const char* path) {
        const auto node = model.scan()->tree()->index(home.path(path), PathCanonicalizer::shared()).value();
        model.showOnMap(model.scan()->tree()->parent(node).value());
        model.map()->select(node);
    };
    select("Games/steamapps/common/House");
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("map.manager")); }));
    EXPECT_TRUE(scene.says(QStringLiteral("Managed by Steam: Old House. Uninstall it there")));
    EXPECT_FALSE(scene.isShown(QStringLiteral("map.command")));
    auto* const safety = scene.item(QStringLiteral("map.safety"));
    for (auto* const text : safety->childItems())
        EXPECT_FALSE(text->property("truncated").toBool()) << "the name of the game is not left out";
    keepPicture(scene, QStringLiteral("map-managed-game"));
    EXPECT_EQ(scene.requests().openedAddress, QString());
    scene.click(QStringLiteral("map.manager"));
    EXPECT_TRUE(scene.waitUntil([&] { return !scene.requests().openedAddress.isEmpty(); }));
    EXPECT_EQ(scene.requests().openedAddress, QStringLiteral("steam://uninstall/70"));

    select(".local/share/flatpak/app/org.a.B");
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("map.command")); }));
    EXPECT_FALSE(scene.isShown(QStringLiteral("map.manager")));
    keepPicture(scene, QStringLiteral("map-managed-app"));
    scene.item(QStringLiteral("map.view"))->forceActiveFocus();
    scene.settle();
    scene.press(Qt::Key_Menu);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("map.menu.copyCommand")); }));
    EXPECT_FALSE(scene.isShown(QStringLiteral("map.menu.manager")));
    scene.click(QStringLiteral("map.menu.copyCommand"));
    EXPECT_EQ(scene.requests().copied, QStringLiteral("flatpak uninstall --user org.a.B"));
}

} // namespace
} // namespace orbel::test
