#include "Journal/IntentSettling.h"
#include "Support/JournalScene.h"
#include "Support/ProgramHome.h"
#include "Util/ReadFile.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>

namespace orbel {
namespace {

namespace fs = std::filesystem;
using test::ProgramHome;
using Result = JournalEntry::Result;

/// One system call of a run: the `index`th of its name, counted from 1 over the whole run.
struct Call {
    std::string name;
    int index = 0;
};

/// Every call that move-one makes between its two marks, in order.
std::vector<Call> callsBetweenMarks(const std::string& trace) {
    std::map<std::string, int> counts;
    std::vector<Call> calls;
    bool isInside = false;
    std::istringstream lines(trace);
    for (std::string line; std::getline(lines, line);) {
        const auto name = line.substr(0, line.find('('));
        if (name.size() == line.size())
            continue;
        const int index = ++counts[name];
        if (line.find("/move-one-ends") != std::string::npos)
            return calls;
        if (isInside)
            calls.push_back({name, index});
        isInside = isInside || line.find("/move-one-begins") != std::string::npos;
    }
    return {};
}

/// A home with one item, which a program moves while its system calls are made to end or fail it.
class Subject : public ProgramHome {
public:
    enum class Move : std::uint8_t { toTrash, back };

    explicit Subject(Move move) : move_(move), item_(file("docs/item", content)) {
        if (move_ == Move::back) {
            const auto run = moveOne({"trash", path(), item_}, {});
            EXPECT_EQ(run.output, "moved\n") << run.errors;
        }
    }

    /// Runs the move under strace, which does to its calls what `injection` says.
    test::ProgramRun runMove(const std::vector<std::string>& injection) const {
        if (move_ == Move::toTrash)
            return moveOne({"trash", path(), item_}, injection);
        return moveOne({"put-back", path()}, injection);
    }

    /// Whatever happened, there is exactly one item, whole; and once settled, the journal says where it is,
    /// and the Trash holds the item with its note or neither.
    void expectTold() const {
        JournalStore journal(journalPath());
        const auto settlement = settleIntents(journal);
        EXPECT_TRUE(settlement.doubts.empty()) << settlement.doubts.front().words;
        EXPECT_TRUE(settlement.failures.empty()) << settlement.failures.front();
        EXPECT_EQ(settleIntents(journal), Settlement()) << "settled once and for all";

        const bool isInPlace = fs::exists(item_);
        EXPECT_NE(isInPlace, fs::exists(trashed("item")));
        EXPECT_EQ(readFile(isInPlace ? item_ : trashed("item")), content);
        const auto note = readFile(infoOf("item"));
        const bool isNoteWhole = note && note->ends_with("\n") && note->contains("DeletionDate=");
        EXPECT_EQ(note.has_value(), !isInPlace);
        EXPECT_EQ(isNoteWhole, !isInPlace);
        EXPECT_EQ(journal.restorable().size(), isInPlace ? 0 : 1);
        const auto lines = entries();
        EXPECT_EQ(std::ranges::count(lines, Result::trashed, &JournalEntry::result),
                  move_ == Move::back || !isInPlace ? 1 : 0);
        EXPECT_EQ(std::ranges::count(lines, Result::restored, &JournalEntry::result),
                  move_ == Move::back && isInPlace ? 1 : 0);
    }

    std::string trace() const { return readFile(path("trace")).value_or(""); }
    bool isInPlace() const { return fs::exists(item_); }

private:
    static constexpr auto content = "What must never be lost";

    test::ProgramRun moveOne(std::vector<std::string> words,
                             const std::vector<std::string>& injection) const {
        std::vector<std::string> all{"strace", "-o", path("trace")};
        all.insert(all.end(), injection.begin(), injection.end());
        all.push_back(ORBEL_MOVE_ONE);
        all.insert(all.end(), words.begin(), words.end());
        return test::RunningProgram({.words = all, .environment = test::environmentOf(path())}).finish();
    }

    Move move_;
    std::string item_;
};

class CrashMatrix : public ::testing::TestWithParam<Subject::Move> {
protected:
    void SetUp() override {
#ifdef ORBEL_SANITIZED
        GTEST_SKIP() << "the sanitizers trace the process as strace does";
#endif
        if (test::runProgram({"strace", "-o", "/dev/null", "true"}).status != 0)
            GTEST_SKIP() << "strace is missing or may not trace here: NO CRASH WAS TRIED";
    }

    /// The calls of an undisturbed move.
    static std::vector<Call> calls() {
        const Subject subject(GetParam());
        const auto run = subject.runMove({});
        EXPECT_TRUE(run.output.starts_with(GetParam() == Subject::Move::toTrash ? "moved\n" : "restored"))
            << run.output << run.errors;
        subject.expectTold();
        return callsBetweenMarks(subject.trace());
    }
};

TEST_P(CrashMatrix, AKillAtAnyCallLosesNothing) {
    const bool isToTrash = GetParam() == Subject::Move::toTrash;
    const auto all = calls();
    ASSERT_GT(all.size(), 50);
    int before = 0;
    for (const auto& [name, index] : all) {
        SCOPED_TRACE(name + " " + std::to_string(index));
        const Subject subject(GetParam());
        const auto run =
            subject.runMove({"-e", "inject=" + name + ":signal=KILL:when=" + std::to_string(index)});
        EXPECT_EQ(run.output, "") << "it was to die before it could say anything";
        before += subject.isInPlace() == isToTrash ? 1 : 0;
        subject.expectTold();
        if (HasFailure())
            return;
    }
    EXPECT_GT(before, 0);
    EXPECT_LT(before, static_cast<int>(all.size())) << "some kills came before the move, some after";
}

TEST_P(CrashMatrix, AFailureOfAnyCallIsToldAsItIs) {
    const std::map<std::string, std::vector<std::string>> failures{
        {"openat", {"EIO", "ENOSPC"}},
        {"write", {"EIO", "ENOSPC", "EINTR"}},
        {"fsync", {"EIO", "ENOSPC", "EINTR"}},
        {"renameat2", {"EIO", "ENOSPC", "EINTR", "EXDEV", "EINVAL"}},
        {"fallocate", {"EIO", "ENOSPC", "EINTR"}},
        {"fchmod", {"EIO"}},
        {"flock", {"EINTR", "ENOLCK"}},
        {"mkdirat", {"EIO", "ENOSPC"}},
        {"mkdir", {"EIO", "ENOSPC"}},
        {"unlink", {"EIO"}},
        {"unlinkat", {"EIO"}}};
    std::set<std::string> outcomes;
    for (const auto& [name, index] : calls()) {
        const auto found = failures.find(name);
        if (found == failures.end())
            continue;
        for (const auto& error : found->second) {
            SCOPED_TRACE(name + " " + std::to_string(index) + " " + error);
            const Subject subject(GetParam());
            const auto run = subject.runMove(
                {"-e", "inject=" + name + ":error=" + error + ":when=" + std::to_string(index)});
            EXPECT_EQ(run.status, 0) << run.errors;
            const bool saysInPlace = run.output.starts_with("skipped") || run.output.starts_with("restored");
            EXPECT_EQ(subject.isInPlace(), saysInPlace) << run.output;
            outcomes.insert(run.output.substr(0, run.output.find(':')));
            subject.expectTold();
            if (HasFailure())
                return;
        }
    }
    EXPECT_GE(outcomes.size(), 3) << "done, not done, and done without its line";
}

TEST_P(CrashMatrix, SettlingRecordsNoMoveBeforeItIsOnTheDisk) {
    const bool isToTrash = GetParam() == Subject::Move::toTrash;
    const test::JournalScene scene;
    const auto intent = isToTrash ? scene.beginToTrash("item") : scene.beginPutBack("item");
    scene.leaveBehind({intent});
    test::move(intent);
    const auto settle = [&](std::vector<std::string> words) {
        words.insert(words.end(), {ORBEL_MOVE_ONE, "settle", scene.path});
        return test::runProgram(words).output;
    };
    EXPECT_EQ(
        settle({"strace", "-o", scene.home.path("trace"), "-e", "inject=fsync,syncfs:error=EIO:when=1"}),
        "0 recorded, 1 failures\n");
    EXPECT_TRUE(test::exists(intent.infoFile->path)) << "an item that is still in the Trash needs it";
    EXPECT_TRUE(settle({}).ends_with("0 failures\n"));
    EXPECT_EQ(scene.store.entries(), std::vector{intent.entry}) << "whether or not it was there already";
    EXPECT_EQ(test::exists(intent.infoFile->path), isToTrash);
}

INSTANTIATE_TEST_SUITE_P(Moves, CrashMatrix, ::testing::Values(Subject::Move::toTrash, Subject::Move::back),
                         [](const auto& move) {
                             return move.param == Subject::Move::toTrash ? "ToTheTrash" : "Back";
                         });

} // namespace
} // namespace orbel
