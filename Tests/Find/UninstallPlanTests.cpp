#include "Delete/LiveTrash.h"
#include "Find/UninstallPlan.h"
#include "Journal/LiveRestore.h"
#include "Journal/PutBack.h"
#include "Support/AppHome.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace orbel {
namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;
using Programs = std::vector<platform::RunningProgram>;

class UninstallPlanTest : public ::testing::Test {
protected:
    UninstallPlan planOf(const InstalledApp& app, const Programs& running = {}) const {
        const auto measure = [this](const std::string& path) {
            auto measured = TreeScanner::measure(path);
            measured.unreadable = unreadable;
            return measured;
        };
        return UninstallPlan::make(app, home.othersThan(app), home.matcher(), home.policy, measure,
                                   [&] { return running; });
    }
    /// Each item as "tag relative path".
    Words linesOf(const UninstallPlan& plan) const {
        Words lines;
        for (const auto& item : plan.items)
            lines.push_back((item.blockedReason ? *item.blockedReason
                             : item.preselected ? "ticked"
                                                : "ok")
                            + " "
                            + (item.path.starts_with(home.path()) ? item.path.substr(home.path().size() + 1)
                                                                  : item.path));
        return lines;
    }

    test::AppHome home;
    std::uint64_t unreadable = 0; ///< in each item
};

TEST_F(UninstallPlanTest, BeginsWithTheApplicationAndTicksOnlyCertainCaches) {
    const auto image = home.appImage("Applications/tool.AppImage");
    home.launcher("org.example.Tool", image, "Icon=org.example.Tool\nStartupWMClass=Tooly\n");
    for (const auto* file :
         {".local/share/icons/hicolor/48x48/apps/org.example.Tool.png", ".cache/org.example.Tool/big",
          ".config/org.example.Tool/settings", ".cache/tooly/x", ".config/tooly/Family.photoslibrary/x",
          ".local/share/evolution/x"})
        home.file(file, 5000);
    const auto plan = planOf(home.app("org.example.Tool"));
    EXPECT_EQ(linesOf(plan),
              (Words{"ok Applications/tool.AppImage", "ok .local/share/applications/org.example.Tool.desktop",
                     "ok .local/share/icons/hicolor/48x48/apps/org.example.Tool.png",
                     "ticked .cache/org.example.Tool", "ok .config/org.example.Tool", "ok .cache/tooly",
                     "Contains protected data: ~/.config/tooly/Family.photoslibrary .config/tooly"}));
    EXPECT_EQ(plan.items[0].root, AllowedRoot::applicationBundle);
    EXPECT_EQ(plan.items[0].title, "org.example.Tool");
    EXPECT_EQ(plan.items[3].module, DeletionModule::uninstall);
    EXPECT_GE(plan.items[3].estimatedBytes, 5000);
    EXPECT_EQ(plan.items[3].detail,
              home.path(".cache/org.example.Tool") + " · Named by its whole id “org.example.Tool”");
}

TEST_F(UninstallPlanTest, ARunningApplicationStaysWithAllThatIsIts) {
    home.program("opt/Suite/bin/suite");
    home.launcher("suite", home.path("opt/Suite/bin/suite"));
    home.folder(".config/suite");
    const auto app = home.app("suite");
    const Programs other{{.pid = 1, .name = "x", .paths = {home.path("opt/Suite2/x"), "/usr/bin/sh"}}};
    EXPECT_EQ(linesOf(planOf(app, other))[0], "ok opt/Suite");
    const Programs script{
        {.pid = 2, .name = "python3", .paths = {"/usr/bin/python3", home.path("opt/Suite/run.py")}}};
    const auto plan = planOf(app, script);
    EXPECT_EQ(plan.runningProcesses, script);
    for (const auto& item : plan.items)
        EXPECT_EQ(item.blockedReason, "suite is running: quit it first") << item.path;
    EXPECT_EQ(plan.items.size(), 3);
}

TEST_F(UninstallPlanTest, WhatAnotherApplicationNeedsStays) {
    home.program("opt/Suite/bin/suite");
    home.launcher("suite", home.path("opt/Suite/bin/suite"));
    home.appImage("opt/Suite/inner.AppImage");
    home.launcher("inner", home.path("opt/Suite/inner.AppImage"));
    EXPECT_EQ(linesOf(planOf(home.app("suite")))[0], "Holds what inner runs opt/Suite");
    home.program("opt/Other/run");
    home.launcher("other", home.path("opt/Other/run"));
    home.link(".local/bin/run", home.path("opt/Other/run"));
    const auto link = "Is a symbolic link; links are never followed for deletion .local/bin/run";
    EXPECT_EQ(linesOf(planOf(home.app("other"))),
              (Words{"ok opt/Other", "ok .local/share/applications/other.desktop", link}));
    home.program("usr/bin/python3");
    home.launcher("script", "python3 " + home.path("opt/Other/script.py"));
    EXPECT_EQ(linesOf(planOf(home.app("other")))[0], "Holds what script runs opt/Other");
}

TEST_F(UninstallPlanTest, WhatAPackageManagerOwnsIsNotMovedHere) {
    home.program("usr/bin/editor");
    const auto launcher = home.systemLauncher("org.example.Editor", "editor");
    home.owners[launcher] = {.manager = platform::PackageOwner::Manager::dpkg, .name = "editor"};
    home.folder(".cache/org.example.Editor");
    auto app = home.app("org.example.Editor");
    const auto plan = planOf(app);
    EXPECT_EQ(linesOf(plan),
              (Words{"Remove it with the package manager system/applications/org.example.Editor.desktop",
                     "ok .cache/org.example.Editor"}))
        << "nothing is ticked while it is installed";
    EXPECT_EQ(plan.items[0].note, "sudo apt remove editor");
    EXPECT_EQ(plan.items[1].note, "org.example.Editor is still installed: sudo apt remove editor removes it");
    unreadable = 2;
    EXPECT_EQ(planOf(app).items[1].note, "org.example.Editor is still installed: sudo apt remove editor "
                                         "removes it · 2 entries in it could not be read");
    app.status = InstalledApp::Status::system;
    EXPECT_EQ(planOf(app).items.size(), 1);
}

TEST_F(UninstallPlanTest, EveryRemovableApplicationGoesToTheTrashAndComesBack) {
    home.appImage("Applications/one.AppImage");
    home.appImage(".local/bin/two.AppImage");
    home.appImage("bin/three.AppImage");
    home.launcher("one", home.path("Applications/one.AppImage"), "Icon=one\n");
    home.launcher("two", home.path(".local/bin/two.AppImage"));
    home.file(".local/share/icons/hicolor/scalable/apps/one.svg");
    for (const std::string place : {".local/opt/Four", "Applications/Five", "opt/Six"}) {
        home.program(place + "/bin/run");
        home.launcher(place.substr(place.rfind('/') + 1), home.path(place + "/bin/run"));
    }
    home.folder(".config/Four-data");
    std::vector<DeletionItem> items;
    for (const auto& app : home.inventory()) {
        EXPECT_EQ(app.status, InstalledApp::Status::removable) << app.path;
        for (auto& item : planOf(app).items)
            items.push_back(std::move(item));
    }
    ASSERT_EQ(items.size(), 12) << "six applications, five launchers, an icon";

    Trasher trasher = home.trasher;
    trasher.trash = std::make_shared<LiveTrash>(home.trash());
    const auto report = trasher.run(items, "session", nullptr, nullptr);
    for (const auto& skipped : report.skipped)
        ADD_FAILURE() << skipped.path << ": " << skipped.reason;
    for (const auto& item : items)
        EXPECT_FALSE(fs::exists(item.path)) << item.path;
    const PutBack putBack(home.policy, home.journal, std::make_shared<LiveRestore>());
    const auto results = putBack.putBackSession("session");
    EXPECT_EQ(results.size(), items.size());
    for (const auto& result : results)
        EXPECT_TRUE(result.restored) << result.path << ": " << result.reason.value_or("");
    for (const auto& item : items)
        EXPECT_EQ(FileStamp::of(item.path), item.scanStamp) << item.path;
}

} // namespace
} // namespace orbel
