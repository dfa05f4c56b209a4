#include "Support/DiskImage.h"
#include "Support/ProgramHome.h"
#include "Util/ReadFile.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <thread>

#include <signal.h>

namespace orbel {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using test::ProgramHome;
using test::RunningProgram;
using Result = JournalEntry::Result;

/// A home with a batch of small files, each with a content of its own, and the line that moves them all.
class Batch : public ProgramHome {
public:
    Batch(const std::string& folder, int count) : folder_(folder), count_(count) {
        for (int i = 0; i < count; ++i)
            file(folder + "/" + std::to_string(i), content(i));
    }

    std::vector<std::string> trashLine() const {
        std::vector<std::string> words{"--trash"};
        for (int i = 0; i < count_; ++i)
            words.push_back(folder_ + "/" + std::to_string(i));
        return words;
    }

    /// Each file is at its place, without being restorable, or in the Trash with exactly one line that says
    /// so.
    void expectEachAccountedFor() const {
        std::map<std::string, std::vector<JournalEntry>> restorable;
        for (const auto& entry : JournalStore(journalPath()).restorable())
            restorable[entry.originalPath].push_back(entry);
        for (int i = 0; i < count_; ++i) {
            const auto place = path(folder_ + "/" + std::to_string(i));
            const auto lines = restorable[place];
            if (fs::exists(place)) {
                ASSERT_EQ(readFile(place), content(i));
                ASSERT_TRUE(lines.empty()) << place;
            } else {
                ASSERT_EQ(lines.size(), 1) << place;
                ASSERT_EQ(readFile(lines[0].trashPath.value()), content(i)) << place;
            }
        }
        // Each item in the Trash has its info file, whole, and there is no other.
        for (const auto& name : contents()) {
            if (name.starts_with("files/")) {
                ASSERT_TRUE(readFile(infoOf(name.substr(6))).value_or("").ends_with("\n")) << name;
            } else {
                ASSERT_TRUE(fs::exists(trashed(fs::path(name).stem().native()))) << name;
            }
        }
    }

    int inPlace() const {
        return static_cast<int>(
            std::distance(fs::directory_iterator(path(folder_)), fs::directory_iterator()));
    }

private:
    std::string content(int i) const { return folder_ + " item " + std::to_string(i); }

    std::string folder_;
    int count_;
};

/// Waits until the program has ended or the condition holds.
template <class Condition>
void waitFor(RunningProgram& program, Condition condition) {
    while (program.isRunning() && !condition())
        std::this_thread::sleep_for(std::chrono::microseconds(200));
}

TEST(Interruption, AKillAtAnyMomentOfABatchLosesNothing) {
    test::onQuickDisk([] {
        constexpr int count = 500;
        const Batch home("docs", count);
        std::minstd_rand random(7);
        const auto killSomewhere = [&](std::vector<std::string> words) {
            RunningProgram program(home.start(std::move(words)));
            const auto before = home.inPlace();
            const int steps = static_cast<int>(random() % 200);
            waitFor(program, [&] { return std::abs(home.inPlace() - before) >= steps; });
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 3000));
            program.signal(SIGKILL);
            program.finish();
        };
        for (int round = 0; round < 5; ++round) {
            killSomewhere(home.trashLine());
            home.json({"--journal-json"}, 0);
            home.expectEachAccountedFor();
            if (HasFatalFailure())
                return;
        }
        for (int round = 0; round < 4; ++round) {
            killSomewhere({"--put-back", "last"});
            home.json({"--journal-json"}, 0);
            home.expectEachAccountedFor();
            if (HasFatalFailure())
                return;
        }
        for (int session = 0; session < 20 && home.inPlace() < count; ++session)
            home.run({"--put-back", "last"});
        EXPECT_EQ(home.inPlace(), count);
        home.expectEachAccountedFor();
        EXPECT_TRUE(std::ranges::none_of(home.contents(),
                                         [](const auto& name) { return name.starts_with("files/"); }));
    });
}

TEST(Interruption, CtrlCStopsAfterTheItemInProgress) {
    for (const int signal : {SIGINT, SIGTERM}) {
        const Batch home("docs", 150);
        RunningProgram program(home.start(home.trashLine()));
        waitFor(program, [&] { return home.inPlace() < 148; });
        program.signal(signal);
        const auto run = program.finish();
        const auto report = json::parse(run.output, nullptr, false);
        ASSERT_FALSE(report.is_discarded()) << run.output << run.errors;
        EXPECT_EQ(run.status, report["cancelled"] ? 1 : 0);
        EXPECT_EQ(report["moved"].size(), 150 - home.inPlace());
        EXPECT_TRUE(report["skipped"].empty());
        home.expectEachAccountedFor();
        EXPECT_TRUE(fs::is_empty(home.path(".local/share/Ostrevo Orbel/intents")));
    }
}

TEST(Interruption, TwoProgramsMoveAtOnce) {
    const Batch home("docs", 40);
    for (int i = 0; i < 40; ++i)
        home.file("other/" + std::to_string(i), "other " + std::to_string(i)); // same names, in one Trash
    auto both = home.trashLine();
    for (int i = 0; i < 40; ++i)
        both.push_back("other/" + std::to_string(i));
    auto reversed = both;
    std::reverse(reversed.begin() + 1, reversed.end());
    RunningProgram first(home.start(both));
    RunningProgram second(home.start(reversed));
    const auto reports = {json::parse(first.finish().output), json::parse(second.finish().output)};
    std::multiset<std::string> moved;
    for (const auto& report : reports) {
        EXPECT_EQ(report["journalFailed"], false);
        EXPECT_EQ(report["stoppedForMismatch"], false);
        for (const auto& item : report["moved"])
            moved.insert(item["path"]);
    }
    EXPECT_EQ(moved.size(), 80);
    for (int i = 0; i < 40; ++i)
        EXPECT_EQ(moved.count(home.path("other/" + std::to_string(i))), 1);
    home.expectEachAccountedFor();

    // Both put back at once: nothing comes back twice or over another.
    RunningProgram firstBack(home.start({"--put-back", "last"}));
    RunningProgram secondBack(home.start({"--put-back", "last"}));
    firstBack.finish();
    secondBack.finish();
    home.expectEachAccountedFor();
}

} // namespace
} // namespace orbel
