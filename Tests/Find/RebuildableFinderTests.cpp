#include "Find/RebuildableFinder.h"
#include "Safety/PathCanonicalizer.h"
#include "Safety/SafetyPolicy.h"
#include "Scan/TreeScanner.h"
#include "Support/Policies.h"
#include "Support/RunProgram.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>

namespace orbel {
namespace {

namespace fs = std::filesystem;
using test::TemporaryFolder;

constexpr const char* signature = "Signature: 8a477f597d28d172789f06886806bc55\n";

class RebuildableTest : public ::testing::Test {
protected:
    using Evidence = std::map<std::string, std::string>; ///< by path below the home

    std::vector<RebuildableFinder::Row> rows(const std::string& root, double daysLater = 0) const {
        const ScanCancellation nobodyCancels;
        const auto tree = TreeScanner::scan(root, 1, nobodyCancels, nullptr).tree;
        const auto then =
            currentDate() + Date::duration(std::chrono::seconds(static_cast<int>(daysLater * 86'400)));
        return RebuildableFinder().run(tree, policy, then, InUseChecker::OpenFiles());
    }
    Evidence found(const std::string& below = "") const {
        Evidence evidence;
        for (const auto& row : rows(below.empty() ? home.path() : home.path(below))) {
            EXPECT_EQ(row.item.blockedReason, std::nullopt) << row.item.path;
            evidence[row.item.path.substr(home.path().size() + 1)] = row.evidence;
        }
        return evidence;
    }
    /// Of a folder that is offered under this name beside these files.
    std::string evidenceOf(const std::string& name, const std::vector<std::string>& beside,
                           const std::vector<std::string>& inside = {"made"}) const {
        const TemporaryFolder other;
        for (const auto& file : beside)
            other.file("code/app/" + file);
        for (const auto& file : inside)
            other.file("code/app/" + name + "/" + file, std::size_t{5000});
        const SafetyPolicy itsPolicy(other.path(), test::linuxOptions());
        const ScanCancellation nobodyCancels;
        const auto tree = TreeScanner::scan(other.path(), 1, nobodyCancels, nullptr).tree;
        const auto listed =
            RebuildableFinder().run(tree, itsPolicy, currentDate(), InUseChecker::OpenFiles());
        if (listed.empty())
            return "";
        EXPECT_EQ(listed.size(), 1U);
        EXPECT_EQ(listed.front().item.path, other.path("code/app/" + name));
        return listed.front().evidence + " | " + listed.front().program;
    }

    TemporaryFolder home;
    SafetyPolicy policy{home.path(), test::linuxOptions()};
};

TEST_F(RebuildableTest, IsToldByWhatLiesBesideIt) {
    EXPECT_EQ(evidenceOf("node_modules", {"package.json"}), "package.json beside it | npm");
    EXPECT_EQ(evidenceOf("target", {"Cargo.toml"}), "Cargo.toml beside it | cargo");
    EXPECT_EQ(evidenceOf("target", {"pom.xml"}), "pom.xml beside it | maven");
    EXPECT_EQ(evidenceOf("build", {"build.gradle.kts"}, {"libs/a.jar", "tmp/x"}),
              "build.gradle.kts beside it | gradle");
    EXPECT_EQ(evidenceOf(".venv", {"pyproject.toml"}, {"pyvenv.cfg", "lib/x.py"}),
              "pyvenv.cfg in it, pyproject.toml beside it | python");
    EXPECT_EQ(evidenceOf("vendor", {"composer.json", "composer.lock"}),
              "composer.json and composer.lock beside it | composer");
    EXPECT_EQ(evidenceOf("dist-newstyle", {"app.cabal"}), "app.cabal beside it | cabal");
    EXPECT_EQ(evidenceOf(".terraform", {"main.tf"}), "main.tf beside it | terraform");
    EXPECT_EQ(evidenceOf("__pycache__", {}, {"a.cpython-311.pyc", "b.pyc"}),
              "Only compiled Python in it | python");

    // Each with what is missing, or one thing too much.
    EXPECT_EQ(evidenceOf("node_modules", {"package-lock.json"}), "");
    EXPECT_EQ(evidenceOf("target", {"cargo.toml"}), "");
    EXPECT_EQ(evidenceOf("build", {"Makefile"}), "");
    EXPECT_EQ(evidenceOf("build", {"build.gradle"}, {"libs/a.jar", "deploy.sh"}), "");
    EXPECT_EQ(evidenceOf(".venv", {"pyproject.toml"}, {"lib/x.py"}), "");
    EXPECT_EQ(evidenceOf("venv", {"notes.txt"}, {"pyvenv.cfg"}), "");
    EXPECT_EQ(evidenceOf("vendor", {"composer.json"}), "");
    EXPECT_EQ(evidenceOf("vendor", {"go.mod"}), "");
    EXPECT_EQ(evidenceOf("deps", {"package.json"}), "");
    EXPECT_EQ(evidenceOf("__pycache__", {}, {"a.pyc", "a.py"}), "");
    EXPECT_EQ(evidenceOf("__pycache__", {}, {"inner/a.pyc"}), "");
}

TEST_F(RebuildableTest, IsToldByWhatIsInAFile) {
    home.file("work/tagged/CACHEDIR.TAG",
              std::string(signature) + "# This file is a cache directory tag created by ccache.\n");
    home.file("work/anonymous/CACHEDIR.TAG", signature);
    home.file("work/near/CACHEDIR.TAG", "Signature: 8a477f597d28d172789f06886806bc56\n");
    home.file("work/empty/CACHEDIR.TAG");
    home.file("work/linked/.keep");
    home.link("work/linked/CACHEDIR.TAG", home.path("work/tagged/CACHEDIR.TAG"));
    const auto cache = [](const std::string& source) {
        return "# CMake\n//x\nFOO:BOOL=ON\nCMAKE_HOME_DIRECTORY:INTERNAL=" + source + "\nZ:INTERNAL=1\n";
    };
    home.file("work/app/CMakeLists.txt");
    home.file("work/app/out/CMakeCache.txt", cache(home.path("work/app")));
    home.file("work/insource/CMakeCache.txt", cache(home.path("work/insource")));
    home.file("work/above/CMakeCache.txt", cache(home.path("work/above/src")));
    home.file("work/torn/CMakeCache.txt", "CMAKE_HOME_DIRECTORY:INTERN");
    EXPECT_EQ(found(), (Evidence{{"work/tagged", "CACHEDIR.TAG"},
                                 {"work/anonymous", "CACHEDIR.TAG"},
                                 {"work/app/out", "CMakeCache.txt"}}));
    for (const auto& row : rows(home.path()))
        EXPECT_EQ(row.program, row.item.path.ends_with("tagged") ? "ccache"
                               : row.item.path.ends_with("out")  ? "cmake"
                                                                 : "");
}

TEST_F(RebuildableTest, IsToldByItsPlace) {
    for (const auto* path :
         {".cache/pip/x", ".cache/huggingface/hub/x", ".npm/_cacache/x", ".npm/other/x", "go/pkg/mod/cache/x",
          "go/src/mine.go", ".cargo/registry/src/x", ".cargo/bin/tool", ".config/Code/Cache/x",
          ".config/Code/User/settings.json", ".local/share/pnpm/store/x", ".local/share/notes/x",
          ".var/app/org.example.App/cache/x", ".var/app/org.example.App/data/x",
          "snap/editor/common/.cache/x", "snap/editor/current/work.txt"})
        home.file(path, std::size_t{5000});
    const auto listed = found();
    std::vector<std::string> paths;
    for (const auto& [path, evidence] : listed)
        paths.push_back(path);
    EXPECT_EQ(paths, (std::vector<std::string>{".cache/huggingface", ".cache/pip", ".cargo/registry/src",
                                               ".config/Code/Cache", ".local/share/pnpm/store",
                                               ".npm/_cacache", ".var/app/org.example.App/cache",
                                               "go/pkg/mod", "snap/editor/common/.cache"}));
    EXPECT_EQ(found(".config/Code").size(), 1U) << "also where the scan begins in the middle of a place";
    EXPECT_EQ(found(".cache/pip"), Evidence()) << "never the root";
    std::map<std::string, std::string> programs;
    for (const auto& row : rows(home.path()))
        programs[row.item.path.substr(home.path().size() + 1)] = row.program;
    EXPECT_EQ(programs[".cache/pip"], "pip");
    EXPECT_EQ(programs[".config/Code/Cache"], "Code");
    EXPECT_EQ(programs[".local/share/pnpm/store"], "pnpm");
    EXPECT_EQ(programs[".var/app/org.example.App/cache"], "org.example.App");
}

TEST_F(RebuildableTest, IsToldByThePlacesOfTheOtherPlatformToo) {
    for (const auto* path : {"Library/Caches/com.example.App/x", "Library/Application Support/App/Cache/x",
                             "Library/Caches/com.apple.Safari/x", ".cargo/registry/src/x", ".cache/pip/x"})
        home.file(path, std::size_t{5000});
    const ScanCancellation nobodyCancels;
    const auto tree = TreeScanner::scan(home.path(), 1, nobodyCancels, nullptr).tree;
    std::map<std::string, std::string> programs;
    for (const auto& row :
         RebuildableFinder().run(tree, SafetyPolicy(home.path(), test::macOSOptions()), currentDate(), {})) {
        EXPECT_EQ(row.item.blockedReason, std::nullopt) << row.item.path;
        programs[row.item.path.substr(home.path().size() + 1)] = row.program;
    }
    EXPECT_EQ(programs,
              (std::map<std::string, std::string>{{"Library/Caches/com.example.App", "com.example.App"},
                                                  {"Library/Caches/com.apple.Safari", "com.apple.Safari"},
                                                  {".cargo/registry/src", "cargo"}}));
}

TEST_F(RebuildableTest, IsNeverWhatHoldsWorkOrBelongsToAProgram) {
    // In the home itself; what a program brings along; in a program's own data; a link.
    home.file("package.json");
    home.file("node_modules/x/index.js");
    for (const auto* folder : {".vscode/extensions/tool", ".local/share/tool", "code/x/node_modules/y"}) {
        home.file(std::string(folder) + "/package.json");
        home.file(std::string(folder) + "/node_modules/x/index.js");
    }
    home.file("code/linked/package.json");
    home.link("code/linked/node_modules", home.path("code/x/node_modules"));
    // With work of its own, at any depth.
    home.file("code/a/mix.exs");
    home.file("code/a/deps/fork/.git/HEAD");
    home.file("code/b/composer.json");
    home.file("code/b/composer.lock");
    home.file("code/b/vendor/own/.git", std::string("gitdir: ../../x\n"));
    home.file("code/c/CACHEDIR.TAG", signature);
    home.file("code/c/bare.git/HEAD");
    home.folder("code/c/bare.git/objects");
    home.folder("code/c/bare.git/refs");
    // With what is protected wherever it lies.
    home.file("code/d/CACHEDIR.TAG", signature);
    home.file("code/d/passwords.kdbx");
    home.file(".mozilla/CACHEDIR.TAG", signature);
    EXPECT_EQ(found(), Evidence());

    // Bare repositories are what a package manager's cache holds.
    home.file("go/pkg/mod/cache/vcs/1/HEAD");
    home.folder("go/pkg/mod/cache/vcs/1/objects");
    home.folder("go/pkg/mod/cache/vcs/1/refs");
    EXPECT_EQ(found().size(), 1U);
    home.file("go/pkg/mod/fork/.git/HEAD");
    EXPECT_EQ(found(), Evidence());
}

TEST_F(RebuildableTest, ListsTheTopmostTheLargestFirstAndTicksWhatIsOld) {
    home.file("code/web/package.json");
    home.file("code/web/node_modules/a/package.json");
    home.file("code/web/node_modules/a/node_modules/b/x", std::size_t{9000});
    home.file("code/app/Cargo.toml");
    home.file("code/app/target/debug/app", std::size_t{90'000});
    const auto today = rows(home.path());
    ASSERT_EQ(today.size(), 2U);
    EXPECT_EQ(today[0].item.path, home.path("code/app/target"));
    EXPECT_EQ(today[1].item.path, home.path("code/web/node_modules"));
    EXPECT_FALSE(today[0].item.preselected);
    EXPECT_FALSE(rows(home.path(), 89)[0].item.preselected);
    const auto later = rows(home.path(), 91);
    EXPECT_TRUE(later[0].item.preselected && later[1].item.preselected);
    EXPECT_EQ(later[0].item.module, DeletionModule::rebuildable);
}

TEST_F(RebuildableTest, SaysWhatGitDoesNotIgnoreAndRunsNothingOfTheRepository) {
    if (test::runProgram({"git", "--version"}).status != 0)
        GTEST_SKIP() << "git is not installed";
    for (const auto* app : {"code/one", "code/two"}) {
        home.file(std::string(app) + "/Cargo.toml");
        home.file(std::string(app) + "/target/debug/app", std::size_t{9000});
        ASSERT_EQ(test::runProgram({"git", "init", "-q", home.path(app)}).status, 0);
    }
    home.file("code/one/.gitignore", "/target/\n");
    home.file("code/two/web/package.json");
    home.file("code/two/web/node_modules/x", std::size_t{9000});
    home.file("code/two/.git/info/exclude", "node_modules\n");
    const auto trap = home.path("trap");
    home.file("code/two/.git/hostile", "#!/bin/sh\ntouch " + trap + "\n");
    fs::permissions(home.path("code/two/.git/hostile"), fs::perms::owner_all);
    test::runProgram(
        {"git", "-C", home.path("code/two"), "config", "core.fsmonitor", home.path("code/two/.git/hostile")});

    std::map<std::string, std::optional<std::string>> notes;
    for (const auto& row : rows(home.path(), 365)) {
        notes[row.item.path.substr(home.path().size() + 1)] = row.item.note;
        EXPECT_EQ(row.item.preselected, !row.item.note);
    }
    EXPECT_EQ(notes, (std::map<std::string, std::optional<std::string>>{
                         {"code/one/target", std::nullopt},
                         {"code/two/target", "Not ignored by git"},
                         {"code/two/web/node_modules", std::nullopt}}));
    EXPECT_FALSE(fs::exists(trap));
}

TEST_F(RebuildableTest, FindsWhatADeveloperWouldAndNothingElse) {
    const auto made = test::runProgram({ORBEL_TEST_SUPPORT "/developer-home", home.path()});
    ASSERT_EQ(made.status, 0) << made.errors;
    const ScanCancellation nobodyCancels;
    const auto tree = TreeScanner::scan(home.path(), 1, nobodyCancels, nullptr).tree;
    std::set<std::string> wanted;
    std::uint64_t wantedBytes = 0;
    std::istringstream lines(made.output);
    for (std::string line; std::getline(lines, line);) {
        wanted.insert(home.path(line));
        const auto node = tree.index(home.path(line), PathCanonicalizer::shared());
        ASSERT_TRUE(node) << line;
        wantedBytes += tree.allocated(*node);
    }
    std::uint64_t foundBytes = 0;
    for (const auto& row : rows(home.path())) {
        EXPECT_TRUE(wanted.contains(row.item.path)) << row.item.path << ": " << row.evidence;
        EXPECT_EQ(row.item.blockedReason, std::nullopt) << row.item.path;
        EXPECT_NE(row.program, "") << row.item.path;
        foundBytes += row.item.estimatedBytes;
    }
    EXPECT_GE(static_cast<double>(foundBytes), 0.8 * static_cast<double>(wantedBytes));
}

} // namespace
} // namespace orbel
