#include "AppModel/ItemActions.h"
#include "FakeDesktop.h"
#include "Models/ItemKey.h"
#include "Safety/PathCanonicalizer.h"
#include "Support/TreeBuilder.h"

#include <gtest/gtest.h>

namespace orbel::test {

TEST(ItemActionsOn, APathReachesTheDesktopAsItIsOnTheDisk) {
    FakeDesktop desktop;
    const FileTree none;
    Notice notice;
    const ItemActions actions(desktop, PathCanonicalizer::shared(), notice,
                              [&]() -> const FileTree& { return none; });
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

TEST(ItemActionsOn, ARowIsALineOfATableAndATerminalOpensInAFolder) {
    TreeBuilder builder("/data");
    const auto films = builder.folder(0, "films");
    builder.file(films, "long\tname.mkv", 4'100'000);
    const FileTree shown = builder.build();
    FakeDesktop desktop;
    Notice notice;
    const ItemActions actions(desktop, PathCanonicalizer::shared(), notice,
                              [&]() -> const FileTree& { return shown; });
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
    ItemActions actions(desktop, PathCanonicalizer::shared(), notice,
                        [&]() -> const FileTree& { return shown; });
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
