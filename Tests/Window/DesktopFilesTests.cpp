#include "AppModel/AppearanceSettings.h"
#include "FakeDesktop.h"
#include "Platform/Linux/Portable/DesktopEntry.h"
#include "Platform/Linux/Portable/ExecLine.h"
#include "Services/AutostartLoginItem.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <QSettings>
#include <QSignalSpy>

namespace orbel::test {
namespace {

TEST(AutostartLoginItem, WritesAnEntryThatStartsThisVeryProgram) {
    const TemporaryFolder config;
    const auto file = config.path("autostart/ostrevo-orbel.desktop");
    for (const std::string program : {"/usr/bin/ostrevo-orbel", "/a b/\"q\" $HOME `x` 50% \\ back/vanto"}) {
        AutostartLoginItem item(config.path("autostart"), program);
        EXPECT_FALSE(item.isEnabled());
        EXPECT_TRUE(item.setEnabled(true));
        EXPECT_TRUE(item.isEnabled());
        const auto entry = platform::DesktopEntry::read(file);
        ASSERT_TRUE(entry);
        EXPECT_EQ(platform::execWords(entry->text("Exec").value_or("")), std::vector{program});
        EXPECT_TRUE(item.setEnabled(false));
    }
    EXPECT_FALSE(platform::DesktopEntry::read(file)) << "off leaves nothing behind";
    config.file("autostart/ostrevo-orbel.desktop", "[Desktop Entry]\nExec=x\nHidden=true\n");
    EXPECT_FALSE(AutostartLoginItem(config.path("autostart"), "/x").isEnabled()) << "switched off elsewhere";
    config.file("notAFolder");
    EXPECT_FALSE(AutostartLoginItem(config.path("notAFolder"), "/x").setEnabled(true));
}

TEST(AppearanceSettings, IsWhatWasChosenElseTheCommandLinesElseTheDesktops) {
    const TemporaryFolder folder;
    const auto desktop = std::make_shared<FakeAppearance>();
    AppEnvironment environment;
    environment.settings = std::make_shared<QSettings>(QString::fromStdString(folder.path("settings.ini")),
                                                       QSettings::IniFormat);
    environment.appearance = desktop;
    AppearanceSettings appearance(environment);
    const QSignalSpy changes(&appearance, &AppearanceSettings::darkChanged);
    desktop->wantsDark = true;
    Q_EMIT desktop->changed();
    EXPECT_TRUE(appearance.isDark());
    appearance.overrideWith("anything else");
    EXPECT_FALSE(appearance.isDark());
    appearance.setChoice(QStringLiteral("dark"));
    EXPECT_TRUE(appearance.isDark()) << "a choice made later wins";
    EXPECT_EQ(changes.count(), 3);
    appearance.setChoice(QStringLiteral("mauve"));
    EXPECT_EQ(AppearanceSettings(environment).choice(), QStringLiteral("dark"));
    environment.settings->setValue(QStringLiteral("appearance"), QStringLiteral("mauve"));
    EXPECT_EQ(AppearanceSettings(environment).choice(), QStringLiteral("system"));
}

} // namespace
} // namespace orbel::test
