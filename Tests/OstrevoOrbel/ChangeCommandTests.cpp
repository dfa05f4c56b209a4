#include "Journal/IntentLog.h"
#include "Support/ChildProcess.h"
#include "Support/Faults.h"
#include "Support/ProgramHome.h"
#include "Util/PathText.h"
#include "Util/ReadFile.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace orbel {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using test::ProgramHome;
using test::TemporaryFolder;
using namespace std::string_literals;

std::vector<std::string> titlesIn(const json& list) {
    std::vector<std::string> names;
    for (const auto& item : list)
        names.push_back(item.at("title"));
    return names;
}
using Names = std::vector<std::string>;

/// By title, why it was skipped.
std::map<std::string, std::string> reasonsIn(const json& report) {
    std::map<std::string, std::string> reasons;
    for (const auto& item : report.at("skipped"))
        reasons[item.at("title")] = item.at("reason");
    return reasons;
}

/// All that lies in a folder, with its stamps.
std::map<std::string, std::optional<FileStamp>> everythingIn(const std::string& folder) {
    std::map<std::string, std::optional<FileStamp>> found;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        found[entry.path()] = FileStamp::of(entry.path());
    return found;
}

TEST(TrashCommand, TellsWhatCouldNotBeReadInWhatItMoves) {
    EXPECT_TRUE(test::inChildProcess([] {
        if (test::isRoot()) // who may read everything
            test::holdProgramsToPermissions();
        const ProgramHome home;
        const std::string note = "3 entries in it could not be read";
        home.folder("docs/folder/closed");
        home.file("docs/folder/listable/a");
        home.file("docs/folder/listable/b");
        fs::permissions(home.path("docs/folder/closed"), fs::perms::none);
        fs::permissions(home.path("docs/folder/listable"),
                        fs::perms(0444)); // names are readable, entries are not
        const auto planned = home.json({"--dry-run", "--trash", "docs/folder"}, 0);
        EXPECT_EQ(planned["moved"].at(0)["note"], note);
        const auto report = home.json({"--trash", "docs/folder"}, 0);
        EXPECT_EQ(report["moved"].at(0)["note"], note);
        EXPECT_EQ(home.entries().at(0).note, note);
        fs::permissions(home.trashed("folder/closed"), fs::perms::owner_all);
        fs::permissions(home.trashed("folder/listable"), fs::perms::owner_all);
    }));
}

TEST(TrashCommand, MovesAndReports) {
    const ProgramHome home;
    home.file("docs/folder/a", 5000);
    home.file("docs/file", 100);
    const auto report = home.json({"--trash", "docs/folder///", home.path("docs/file")}, 0);
    EXPECT_EQ(titlesIn(report["moved"]), (Names{"folder", "file"}));
    EXPECT_EQ(report["moved"][0]["path"], home.path("docs/folder"));
    EXPECT_GE(report["moved"][0]["bytes"], 5000);
    EXPECT_EQ(report["skipped"], json::array());
    EXPECT_FALSE(report.contains("dryRun"));
    EXPECT_EQ(home.contents(),
              (Names{"files/file", "files/folder", "info/file.trashinfo", "info/folder.trashinfo"}));
    const auto lines = home.entries();
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(report["sessionID"], lines[0].sessionID);
    EXPECT_EQ(lines[0].module, DeletionModule::map);
    EXPECT_EQ(lines[1].trashPath, home.trashed("file"));
    EXPECT_TRUE(fs::is_empty(home.path(".local/share/Ostrevo Orbel/intents")));
}

TEST(TrashCommand, TakesAPathByItsFolderAndItsLastName) {
    const ProgramHome home;
    home.file("docs/item", 10);
    home.file("docs/real/inside", 10);
    home.link("docs/link", home.path("docs/item"));
    home.link("docs/linked folder", home.path("docs/real"));
    home.link("docs/nowhere", "/nowhere");
    home.file("docs/-odd", 10);
    const auto reasons = reasonsIn(home.json(
        {"--trash", "docs/link", "docs/linked folder/", "docs/nowhere", "docs/missing", "missing/item"}, 1));
    constexpr auto link = "Is a symbolic link; links are never followed for deletion";
    EXPECT_EQ(reasons, (std::map<std::string, std::string>{{"link", link},
                                                           {"linked folder", link},
                                                           {"nowhere", link},
                                                           {"missing", "Already gone"},
                                                           {"item", "Already gone"}}));
    EXPECT_EQ(home.entries().back().originalPath, home.path("missing/item"));

    const auto through =
        home.json({"--trash", "docs/linked folder/inside", "docs/real/../item", "--", "docs/-odd"}, 0);
    EXPECT_EQ(through["moved"][0]["path"], home.path("docs/real/inside"));
    EXPECT_EQ(through["moved"][1]["path"], home.path("docs/item"));
    EXPECT_EQ(home.entries().back().originalPath, home.path("docs/-odd"));
}

TEST(TrashCommand, SkipsWhatMayNotBeMovedWithoutMeasuringIt) {
    const ProgramHome home;
    home.file("docs/good", 10);
    home.file("docs/bad\xFF", 10);
    home.file("docs/Family.photoslibrary/x", 10);
    home.file("docs/holds/Family.photoslibrary/x", 10);
    home.file(".local/share/Trash/files/old", 10);
    home.file(".config/app/x", 10);
    home.file("Library/Preferences/x", 10);
    const auto report =
        home.json({"--trash", "/", home.path(), "/usr", "docs", "docs/bad\xFF", "docs/Family.photoslibrary",
                   "docs/holds", ".local/share/Trash/files/old", ".local/share/Trash", ".config/app",
                   "Library/Preferences/x", "docs/good", "docs/good"},
                  1);
    const auto reasons = reasonsIn(report);
    constexpr auto system = "System-wide: needs an administrator; Vanto does not change it";
    constexpr auto trash = "Protected: ~/.local/share/Trash";
    constexpr auto library = "Contains protected data (a photo library, keychain or backup)";
    EXPECT_EQ(reasons,
              (std::map<std::string, std::string>{
                  {"/", system},
                  {std::string(lastPathComponent(home.path())), "Refusing to delete the root or home folder"},
                  {"usr", system},
                  {"docs", "Too close to the home folder"},
                  {"bad\uFFFD", "Its name is not valid text, so it could not be put back"},
                  {"Family.photoslibrary", "Protected library or backup"},
                  {"holds", library},
                  {"old", trash},
                  {"Trash", trash},
                  {"app", "Inside ~/.config: only caches can be moved from here"},
                  {"x", "Inside Library: only Caches and Logs can be moved from here"}}));
    EXPECT_EQ(titlesIn(report["moved"]), (Names{"good"})) << "once, although it was named twice";
    EXPECT_EQ(home.entries().size(), 12) << "each has its line";
}

TEST(TrashCommand, ADryRunChecksAllAndWritesNothing) {
    const ProgramHome home;
    home.file("docs/one", 1000);
    home.file("docs/two", 10);
    home.link("docs/link", "one");
    // An intent that an earlier run left behind stays too.
    {
        IntentLog interrupted(home.journalPath());
        MoveIntent intent;
        intent.entry.id = "id";
        intent.sourcePath = home.path("docs/one");
        intent.destinationPath = home.trashed("one");
        intent.stamp = *FileStamp::of(intent.sourcePath);
        ASSERT_TRUE(interrupted.begin({&intent, 1}));
    }
    const auto before = everythingIn(home.path());
    for (const auto& words : std::vector<Names>{{"--dry-run", "--trash", "docs/one", "docs/two"},
                                                {"--trash", "docs/one", "--dry-run", "docs/two"},
                                                {"--trash", "docs/one", "docs/two", "--dry-run"}}) {
        const auto report = home.json(words, 0);
        EXPECT_EQ(report["dryRun"], true);
        EXPECT_EQ(titlesIn(report["moved"]), (Names{"one", "two"}));
    }
    EXPECT_EQ(reasonsIn(home.json({"--trash", "--dry-run", "docs/link", "docs/missing"}, 1)).size(), 2);
    EXPECT_EQ(everythingIn(home.path()), before);
}

TEST(TrashCommand, AWrongLineTouchesNothing) {
    const ProgramHome home;
    home.file("docs/item", 10);
    const auto before = everythingIn(home.path());
    for (const auto& words : std::vector<Names>{{"--trash"},
                                                {"--trash", "docs/item", ""},
                                                {"--trash", "docs/item", "docs/."},
                                                {"--trash", "docs/item", "--dryrun"},
                                                {"--trash", "docs/item", "--scan-json", "docs"},
                                                {"--trash", "docs/item", "--put-back", "last"},
                                                {"docs/item", "--trash", "docs/item"},
                                                {"--put-back"},
                                                {"--put-back", "last", "--dry-run"},
                                                {"--journal-json", "--since", "yesterday"}}) {
        const auto run = home.run(words);
        EXPECT_EQ(run.status, 2) << testing::PrintToString(words);
        EXPECT_EQ(run.output, "");
        EXPECT_NE(run.errors, "");
    }
    const auto odd = home.run({"--trash", "--odd\033[2J\n\xFFname"});
    EXPECT_TRUE(odd.errors.starts_with("orbel: \"--odd[U+001B][2J[U+000A]\uFFFDname\" "))
        << "a terminal obeys no name";
    EXPECT_EQ(home.run({"--trash", "docs/item", "--help"}).status, 0);
    EXPECT_EQ(everythingIn(home.path()), before);
    EXPECT_EQ(reasonsIn(home.json({"--trash", "--", "--help"}, 1)).at("--help"), "Already gone");
}

TEST(TrashCommand, AFolderThatHoldsASubvolumeStays) {
    if (!test::isRoot())
        GTEST_SKIP() << "mounting needs root";
    const ProgramHome home;
    const auto image = home.file("image", 0);
    fs::resize_file(image, 128 << 20);
    if (test::runProgram({"mkfs.btrfs", "-q", image}).status != 0)
        GTEST_SKIP() << "no mkfs.btrfs here (package btrfs-progs)";
    const auto disk = home.folder("disk");
    test::inChildProcess([&] {
        test::useOwnMountTable();
        ASSERT_EQ(test::runProgram({"mount", "-o", "loop", image, disk}).status, 0);
        home.folder("disk/me/docs/work");
        ASSERT_EQ(
            test::runProgram({"btrfs", "subvolume", "create", home.path("disk/me/docs/work/nested")}).status,
            0);
        home.file("disk/me/docs/work/nested/All.photoslibrary/x", 10);
        auto start = home.start({"--trash", home.path("disk/me/docs/work")});
        start.environment = test::environmentOf(home.path("disk/me"));
        const auto report = json::parse(test::RunningProgram(start).finish().output);
        EXPECT_EQ(reasonsIn(report)["work"], "Contains another volume: ~/docs/work/nested");
        EXPECT_TRUE(fs::exists(home.path("disk/me/docs/work/nested/All.photoslibrary/x")));
    });
}

TEST(TrashCommand, TakesAListAsOneSession) {
    const ProgramHome home;
    std::string list;
    constexpr int count = 50;
    for (int i = 0; i < count; ++i)
        list += home.file("docs/" + std::string(200, 'x') + std::to_string(i), 1) + '\0';
    const auto odd = home.file("docs/two\nlines and \xFF", 1);
    const auto file = home.file("list", list + odd + '\0' + "docs/-dashed" + '\0');
    home.file("docs/-dashed", 1);
    const auto report = home.json({"--trash", "--files0-from", file}, 1);
    EXPECT_EQ(report["moved"].size(), count + 1);
    ASSERT_EQ(report["skipped"].size(), 1);
    EXPECT_EQ(report["skipped"][0]["reason"], "Its name is not valid text, so it could not be put back");
    EXPECT_TRUE(report["skipped"][0].contains("pathBytes"));
    EXPECT_EQ(home.json({"--put-back", "last"}, 0).size(), count + 1);

    auto pipe = home.start({});
    pipe.words = {"sh", "-c", "printf 'docs/-dashed\\0' | \"$0\" --trash --files0-from -", ORBEL_PROGRAM};
    EXPECT_EQ(titlesIn(json::parse(test::RunningProgram(pipe).finish().output)["moved"]), Names{"-dashed"});
    EXPECT_EQ(home.json({"--trash", "--files0-from=/dev/null"}, 0)["moved"], json::array());
}

TEST(TrashCommand, FollowsNoListThatIsNotWhole) {
    const ProgramHome home;
    home.file("docs/folder/item", 10);
    const auto before = everythingIn(home.path());
    for (const auto& list :
         {"docs/folder/item\0docs/folder"s, "docs/folder/item\0\0"s, "docs/folder/item\0.\0"s}) {
        const TemporaryFolder elsewhere;
        const auto run = home.run({"--trash", "--files0-from", elsewhere.file("list", list)});
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.output, "");
    }
    const auto missing = home.run({"--trash", "--files0-from", "missing"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.errors, "orbel: missing: No such file or directory\n");
    EXPECT_EQ(home.run({"--trash", "--files0-from", "docs"}).status, 1);
    EXPECT_EQ(home.run({"--trash", "docs/folder/item", "--files0-from", "/dev/null"}).status, 2);
    EXPECT_EQ(everythingIn(home.path()), before);
}

TEST(TrashCommand, KeepsTheCopyThatMustStay) {
    const ProgramHome home;
    const std::string content(300'000, 'x');
    auto other = content;
    other[150'000] = 'y';
    for (const auto* name : {"docs/keep", "docs/same", "docs/folder/also same"})
        home.file(name, content);
    home.file("docs/differs", other);
    home.file("docs/short", "x");
    const auto before = everythingIn(home.path());
    const Names words{"--trash",      "docs/same",  "docs/folder/also same",
                      "docs/differs", "docs/short", "docs/folder",
                      "--keep",       "docs/keep"};
    for (const auto& keep : {home.hardLink("docs/other name", "docs/same"), home.link("docs/link", "keep"),
                             home.path("docs/missing"), home.path("docs"), home.path("docs/same"),
                             home.path("docs/folder/../same")}) {
        auto wrong = words;
        wrong.back() = keep;
        const auto run = home.run(wrong);
        EXPECT_EQ(run.status, 2) << keep;
        EXPECT_TRUE(run.errors.starts_with("orbel: --keep ")) << run.errors;
    }
    fs::remove(home.path("docs/other name"));
    fs::remove(home.path("docs/link"));
    EXPECT_EQ(everythingIn(home.path()).size(), before.size());
    EXPECT_FALSE(fs::exists(home.trash()));

    const auto report = home.json(words, 1);
    EXPECT_EQ(titlesIn(report["moved"]), (Names{"same", "also same"}));
    constexpr auto reason = "Could not be proved the same as the copy you are keeping";
    EXPECT_EQ(reasonsIn(report), (std::map<std::string, std::string>{
                                     {"differs", reason}, {"short", reason}, {"folder", reason}}));
    EXPECT_EQ(home.entries().at(0).module, DeletionModule::duplicates);
    EXPECT_EQ(home.run({"--trash", "docs/differs", "--keep", home.trashed("same")}).status, 2)
        << "what lies in the Trash does not stay";
}

TEST(TrashCommand, AFolderThatHoldsAMountStays) {
    if (!test::isRoot())
        GTEST_SKIP() << "only root may mount";
    const ProgramHome home;
    home.file("docs/folder/kept", 10);
    home.folder("docs/folder/mounted");
    test::inChildProcess([&] {
        test::useOwnMountTable();
        test::mountTmpfs(home.path("docs/folder/mounted").c_str());
        EXPECT_EQ(
            reasonsIn(home.json({"--trash", "docs/folder", "docs/folder/mounted"}, 1)),
            (std::map<std::string, std::string>{{"folder", "Contains another volume: ~/docs/folder/mounted"},
                                                {"mounted", "On another volume"}}));
    });
    EXPECT_TRUE(fs::exists(home.path("docs/folder/kept")));
}

TEST(TrashCommand, LeavesWhatIsOpen) {
    const ProgramHome home;
    const std::ifstream file(home.file("docs/file", 10));
    const std::ifstream inside(home.file("docs/folder/deep/inside", 10));
    home.file("docs/free", 10);
    const auto report = home.json({"--trash", "docs/file", "docs/folder", "docs/free"}, 1);
    const auto reasons = reasonsIn(report);
    ASSERT_EQ(reasons.size(), 2);
    EXPECT_TRUE(reasons.at("file").starts_with("In use by "));
    EXPECT_EQ(reasons.at("folder"), reasons.at("file"));
    EXPECT_EQ(titlesIn(report["moved"]), Names{"free"});
}

TEST(TrashCommand, MovesAndPutsBackMoreThanItMayHaveOpen) {
    const ProgramHome home;
    constexpr std::size_t count = 150;
    for (std::size_t i = 0; i < count; ++i)
        home.file("docs/" + std::to_string(i), i);
    // As an old system, it flushes each file by itself and keeps it open for that.
    for (const std::string setting : {"ulimit -n 32; exec", "ulimit -n 64; exec setarch --uname-2.6"}) {
        const auto run = [&](const std::string& words) {
            auto start = home.start({});
            start.words = {"sh", "-c", setting + " \"$0\" " + words, ORBEL_PROGRAM};
            return test::RunningProgram(start).finish();
        };
        const auto trashed = run("--trash docs/*");
        EXPECT_EQ(trashed.status, 0) << setting << ": " << trashed.errors;
        EXPECT_EQ(json::parse(trashed.output)["moved"].size(), count) << setting;
        EXPECT_EQ(run("--put-back last").status, 0) << setting;
        EXPECT_EQ(everythingIn(home.path("docs")).size(), count) << setting;
    }
}

TEST(TrashCommand, AnUnusableHomeGetsNeitherMovesNorAJournal) {
    const ProgramHome home;
    home.file("docs/item", 10);
    const auto runAs = [&](const std::string& homeFolder, Names words) {
        words.insert(words.begin(), ORBEL_PROGRAM);
        return test::RunningProgram(
                   {.words = words, .environment = test::environmentOf(homeFolder), .folder = home.path()})
            .finish();
    };
    for (const auto& homeFolder : Names{"/", home.path("missing"), home.folder("bad\xFF")}) {
        const auto before = everythingIn(home.path());
        const auto trashed = runAs(homeFolder, {"--trash", "docs/item"});
        EXPECT_EQ(trashed.status, 1);
        EXPECT_TRUE(
            reasonsIn(json::parse(trashed.output)).at("item").ends_with("nothing is moved or put back"));
        for (const auto& words : std::vector<Names>{{"--put-back", "last"}, {"--journal-json"}}) {
            const auto run = runAs(homeFolder, words);
            EXPECT_EQ(run.status, 1);
            EXPECT_TRUE(run.errors.contains("nothing is moved or put back"));
        }
        EXPECT_EQ(everythingIn(home.path()), before);
    }
    if (!test::isRoot())
        GTEST_SKIP() << "only root can run with the home of another user";
    ASSERT_EQ(::lchown(home.path().c_str(), 65534, 65534), 0);
    EXPECT_EQ(runAs(home.path(), {"--trash", "docs/item"}).status, 1);
    EXPECT_FALSE(fs::exists(home.path(".local")));
}

TEST(TrashCommand, WithoutAJournalNothingMoves) {
    const ProgramHome home;
    home.file("docs/item", 10);
    home.folder(".local/share/Ostrevo Orbel/journal.jsonl");
    const auto report = home.json({"--trash", "docs/item"}, 1);
    EXPECT_EQ(report["journalFailed"], true);
    EXPECT_EQ(report["journalFailure"], home.journalPath() + ": is not a regular file");
    EXPECT_EQ(reasonsIn(report).at("item"), "Could not write the journal, so nothing was moved");
    EXPECT_EQ(home.run({"--journal-json"}).status, 1) << "an unreadable journal is not an empty one";
    EXPECT_EQ(home.run({"--put-back", "last"}).status, 1);
}

TEST(PutBackCommand, PutsBackAnEntryASessionOrTheNewest) {
    const ProgramHome home;
    for (const auto* name : {"docs/a", "docs/b", "docs/c", "docs/d"})
        home.file(name, name);
    const auto first = home.json({"--trash", "docs/a", "docs/b"}, 0)["sessionID"];
    const auto second = home.json({"--trash", "docs/c", "docs/d"}, 0)["sessionID"];
    const auto entry = home.entries().at(0).id;

    const json one = home.json({"--put-back", entry}, 0);
    EXPECT_EQ(one, (json{{{"title", "a"}, {"path", home.path("docs/a")}, {"restored", true}}}));
    EXPECT_EQ(home.json({"--put-back", entry}, 1), json::array()) << "it is back already";

    home.file("docs/d", "in the way");
    const json last = home.json({"--put-back", "last"}, 1);
    EXPECT_EQ(titlesIn(last), (Names{"d", "c"}));
    EXPECT_EQ(last[0]["reason"], "Something already exists at the original location");
    fs::rename(home.trashed("d"), home.path("emptied"));
    EXPECT_EQ(titlesIn(home.json({"--put-back", "last"}, 0)), Names{"b"}) << "of the session before";
    EXPECT_EQ(home.json({"--put-back", "last"}, 1)[0]["reason"], "No longer in the Trash (emptied or moved)");
    fs::rename(home.path("emptied"), home.trashed("d"));
    fs::remove(home.path("docs/d"));
    EXPECT_EQ(titlesIn(home.json({"--put-back", second}, 0)), Names{"d"});
    EXPECT_EQ(home.json({"--put-back", "last"}, 1), json::array()) << first;
    EXPECT_EQ(home.json({"--put-back", "unknown"}, 1), json::array());
    for (const std::string name : {"docs/a", "docs/b", "docs/c", "docs/d"})
        EXPECT_EQ(readFile(home.path(name)), name);
    EXPECT_TRUE(home.contents().empty()) << "no info file stays behind";
}

TEST(PutBackCommand, TheNewestSessionIsThatOfTheLatestTime) {
    const ProgramHome home;
    home.file("docs/old", 10);
    home.file("docs/new", 10);
    home.json({"--trash", "docs/new"}, 0);
    home.json({"--trash", "docs/old"}, 0);
    // A line that a crash kept from the journal is written later than those of newer sessions.
    auto lines = home.entries();
    lines[1].time -= std::chrono::hours(1);
    fs::remove(home.journalPath());
    JournalStore journal(home.journalPath());
    for (const auto& line : lines)
        ASSERT_TRUE(journal.append(line));
    EXPECT_EQ(titlesIn(home.json({"--put-back", "last"}, 0)), Names{"new"});
}

TEST(JournalCommand, PrintsTheJournal) {
    const ProgramHome home;
    EXPECT_EQ(home.json({"--journal-json"}, 0), json::array());
    EXPECT_EQ(home.run({"--journal-markdown"}).output, "# Ostrevo Vanto — Journal\n\n_No entries._\n");
    home.file("docs/item", 10);
    home.json({"--trash", "docs/item", "docs/missing"}, 1);
    const auto entries = home.json({"--journal-json"}, 0);
    ASSERT_EQ(entries.size(), 2);
    EXPECT_EQ(entries[0]["result"], "trashed");
    EXPECT_EQ(entries[1]["reason"], "Already gone");
    EXPECT_EQ(home.json({"--journal-json", "--since", "2025-01-01"}, 0), entries);
    EXPECT_EQ(home.json({"--journal-json", "--since", std::string(entries[1]["time"])}, 0).back(),
              entries[1]);
    EXPECT_EQ(home.json({"--journal-json", "--since", "9999-01-01T00:00:00Z"}, 0), json::array());
    EXPECT_TRUE(home.run({"--journal-markdown"}).output.contains("- **trashed** item — "));
}

} // namespace
} // namespace orbel
