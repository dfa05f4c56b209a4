#include "AppModel/ItemActions.h"
#include "FakeDesktop.h"
#include "Models/ItemKey.h"
#include "Safety/PathCanonicalizer.h"
#include "Safety/SafetyPolicy.h"
#include "Support/TemporaryFolder.h"
#include "Support/TreeBuilder.h"

#include <gtest/gtest.h>
#include <QtTest/QTest>

namespace orbel::test {

namespace {

std::shared_ptr<const SafetyPolicy> anyPolicy() {
    return std::make_shared<const SafetyPolicy>("/home/mira");
}

} // namespace

TEST(ItemActionsOn, APathReachesTheDesktopAsItIsOnTheDisk) {
    FakeDesktop desktop;
    const FileTree none;
    Notice notice;
    const ItemActions actions(desktop, anyPolicy(), notice, [&]() -> const FileTree& { return none; });
    for (const std::string path : {"/home/mira/Videos/harbour.mkv", "/tmp/caf\xe9 #1%20?.txt", "/tmp/a\nb"}) {
        actions.open(keyOf(path));
        EXPECT_EQ(desktop.opened, path);
        actions.showInFileManager(keyOf(path));
        EXPECT_EQ(desktop.shown, path);
    }
    actions.copyPath(keyOf("/tmp/harbour.mkv"));
    EXPECT_EQ(desktop.copied, QStringLiteral("/tmp/harbour.mkv"));

    desktop.opened.clear();
    desktop.shown.clear();
    desktop.copied.clear();
    for (const auto& invalid : {QString(), QStringLiteral("/tmp/a"), QStringLiteral("file:///tmp/%")}) {
        actions.open(invalid);
        actions.showInFileManager(invalid);
        actions.copyPath(invalid);
    }
    EXPECT_EQ(desktop.opened + desktop.shown, "");
    EXPECT_EQ(desktop.copied, QString());
}

TEST(ItemActionsOn, WhatAnotherProgramManagesIsManagedThere) {
    FakeDesktop desktop;
    const FileTree none;
    Notice notice;
    const TemporaryFolder home;
    home.file("steamapps/appmanifest_70.acf", R"("A"{"appid" "70" "name" "N" "installdir" "House"})");
    const auto game = keyOf(home.path("steamapps/common/House/x"));
    ItemActions actions(desktop, std::make_shared<const SafetyPolicy>(home.path()), notice,
                        [&]() -> const FileTree& { return none; });
    const auto app = keyOf("/home/mira/.local/share/flatpak/app/org.a.B");
    const auto words = QStringLiteral("Managed by Flatpak: flatpak uninstall --user org.a.B");
    actions.copyCommand(app, QStringLiteral("On another volume"));
    EXPECT_EQ(desktop.copied, QString()) << "another reason";
    actions.copyCommand(app, words);
    EXPECT_EQ(desktop.copied, QStringLiteral("flatpak uninstall --user org.a.B"));
    EXPECT_EQ(actions.managerOf(app, words), QString());

    const auto gameWords = QStringLiteral("Managed by Steam: N. Uninstall it there");
    EXPECT_EQ(actions.commandOf(game, gameWords), QString());
    EXPECT_EQ(actions.managerOf(game, gameWords), QStringLiteral("Steam"));
    EXPECT_EQ(desktop.openedAddress, QString()) << "never without being asked to";
    actions.openManager(game);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !desktop.openedAddress.isEmpty(); }));
    EXPECT_EQ(desktop.openedAddress, QStringLiteral("steam://uninstall/70"));
}

TEST(ItemActionsOn, ARowIsALineOfATableAndATerminalOpensInAFolder) {
    TreeBuilder builder("/data");
    const auto films = builder.folder(0, "films");
    builder.file(films, "long\tname.mkv", 4'100'000);
    const FileTree shown = builder.build();
    FakeDesktop desktop;
    Notice notice;
    const ItemActions actions(desktop, anyPolicy(), notice, [&]() -> const FileTree& { return shown; });
    actions.copyRow(keyOf("/data/films/long\tname.mkv"), {}, {});
    EXPECT_EQ(desktop.copied.toStdString(),
              "long\\tname.mkv\t/data/films/long\\tname.mkv\tVideo\t4100000\t4 MB");
    actions.copyRow(keyOf("/opt/editor"), QStringLiteral("Editor"), QStringLiteral("4.1 KB"));
    EXPECT_EQ(desktop.copied, QStringLiteral("Editor\t/opt/editor\t\t\t4.1 KB"));
    desktop.copied.clear();
    actions.copyRow({}, QStringLiteral("Editor"), {});
    EXPECT_EQ(desktop.copied, QString());

    actions.openTerminal(keyOf("/data/films/long\tname.mkv"));
    EXPECT_EQ(desktop.terminal, "/data/films");
    actions.openTerminal(keyOf("/data/films"));
    EXPECT_EQ(desktop.terminal, "/data/films");
}

TEST(ItemActionsOn, WhatTheTreeHasIsFoundInItByPathAndNothingElse) {
    TreeBuilder builder("/data");
    const auto films = builder.folder(0, "films");
    builder.file(films, "a\xff.mkv", 100);
    FileTree shown;
    FakeDesktop desktop;
    Notice notice;
    ItemActions actions(desktop, anyPolicy(), notice, [&]() -> const FileTree& { return shown; });
    std::vector<std::string> wanted;
    QObject::connect(&actions, &ItemActions::mapWanted,
                     [&](quint32 node) { wanted.push_back("map " + shown.walkedPath(node)); });
    QObject::connect(&actions, &ItemActions::measureWanted,
                     [&](quint32 node) { wanted.push_back("measure " + shown.walkedPath(node)); });
    const auto film = keyOf("/data/films/a\xff.mkv");
    actions.showOnMap(film);
    EXPECT_FALSE(actions.isMeasured(film)) << "nothing is measured yet";

    shown = builder.build();
    EXPECT_TRUE(actions.isMeasured(film));
    EXPECT_EQ(actions.keyOf(shown.index("/data/films/a\xff.mkv", PathCanonicalizer::shared()).value()), film);
    EXPECT_EQ(actions.keyOf(static_cast<quint32>(shown.count())), QString());
    EXPECT_FALSE(actions.isMeasured(keyOf("/data/films/b.mkv")));
    EXPECT_FALSE(actions.isMeasured(keyOf("/elsewhere")));
    actions.showOnMap(film);
    actions.measureAgain(keyOf("/data/films"));
    notice.dismiss();
    actions.measureAgain(keyOf("/elsewhere"));
    EXPECT_EQ(notice.text(), QStringLiteral("/elsewhere is not in what was measured."));
    EXPECT_EQ(wanted, (std::vector<std::string>{"map /data/films/a\xff.mkv", "measure /data/films"}));
}

} // namespace orbel::test
