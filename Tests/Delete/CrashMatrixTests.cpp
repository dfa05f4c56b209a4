#include "Support/DiskImage.h"
#include "Support/JournalScene.h"
#include "Support/MovedGroup.h"
#include "Support/TemporaryFolder.h"
#include "Util/ReadFile.h"

#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>
#include <utility>

namespace orbel {
namespace {

using test::MovedGroup;
using Move = MovedGroup::Move;

/// One system call of a run: the `index`th of its name, counted from 1 over the whole run.
struct Call {
    std::string name;
    int index = 0;
};

/// Every call that move-items makes between its two marks, in order.
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
        if (line.find("/moves-end") != std::string::npos)
            return calls;
        if (isInside)
            calls.push_back({name, index});
        isInside = isInside || line.find("/moves-begin") != std::string::npos;
    }
    return {};
}

/// A home with three items, which a program moves while its system calls are made to end or fail it.
class Subject : test::TemporaryFolder, public MovedGroup {
public:
    explicit Subject(Move move) : MovedGroup(folder("home"), move) { prepare(); }

    /// Runs the move and returns all its system calls.
    std::pair<test::ProgramRun, std::string> traceMove() const {
        auto run = test::RunningProgram(start({"strace", "-o", path("trace")})).finish();
        return {std::move(run), readFile(path("trace")).value_or("")};
    }

    /// Runs the move and does this to one of its calls, in the words of strace. Only calls of that name are
    /// traced, which halves the time.
    test::ProgramRun runMove(const Call& call, const std::string& injection) const {
        return test::RunningProgram(
                   start({"strace", "-o", "/dev/null", "-e", "trace=" + call.name, "-e",
                          "inject=" + call.name + ":" + injection + ":when=" + std::to_string(call.index)}))
            .finish();
    }
};

class CrashMatrix : public ::testing::TestWithParam<Move> {
protected:
    void SetUp() override {
#ifdef ORBEL_SANITIZED
        GTEST_SKIP() << "the sanitizers trace the process as strace does";
#endif
        if (test::runProgram({"strace", "-o", "/dev/null", "true"}).status != 0)
            GTEST_SKIP() << "strace is missing or may not trace here: NO CRASH WAS TRIED";
    }

    /// The calls of an undisturbed run.
    static std::vector<Call> calls() {
        const Subject subject(GetParam());
        const auto [run, trace] = subject.traceMove();
        EXPECT_EQ(subject.moved(), Subject::size) << run.output << run.errors;
        EXPECT_EQ(subject.untruths(run.output), None());
        EXPECT_EQ(subject.faultsOnceSettled(), None());
        return callsBetweenMarks(trace);
    }

    using None = std::vector<std::string>;
};

TEST_P(CrashMatrix, AKillAtAnyCallLosesNothing) {
    test::onQuickDisk([] {
        const auto all = calls();
        ASSERT_GT(all.size(), 50);
        std::set<int> moved;
        for (const auto& call : all) {
            SCOPED_TRACE(call.name + " " + std::to_string(call.index));
            const Subject subject(GetParam());
            const auto run = subject.runMove(call, "signal=KILL");
            ASSERT_EQ(run.output, "") << "it was to die before it could say anything";
            moved.insert(subject.moved());
            ASSERT_EQ(subject.faultsOnceSettled(), None());
        }
        EXPECT_EQ(moved, (std::set{0, 1, 2, 3})) << "some kills came before the moves, some between them";
    });
}

TEST_P(CrashMatrix, AFailureOfAnyCallIsToldAsItIs) {
    const std::map<std::string, std::vector<std::string>> failures{
        {"openat", {"EIO", "ENOSPC"}},
        {"write", {"EIO", "ENOSPC", "EINTR"}},
        {"fsync", {"EIO", "ENOSPC", "EINTR"}},
        {"fdatasync", {"EIO", "ENOSPC", "EINTR"}},
        {"syncfs", {"EIO", "ENOSPC", "EINTR", "ENOSYS"}},
        {"renameat2", {"EIO", "ENOSPC", "EINTR", "EXDEV", "EINVAL"}},
        {"fallocate", {"EIO", "ENOSPC", "EINTR"}},
        {"fchmod", {"EIO"}},
        {"flock", {"EINTR", "ENOLCK"}},
        {"mkdirat", {"EIO", "ENOSPC"}},
        {"mkdir", {"EIO", "ENOSPC"}},
        {"unlink", {"EIO"}},
        {"unlinkat", {"EIO"}}};
    const std::vector<std::string> others{"EIO"};
    const std::set<std::string> cannotFail{"access", "close",     "geteuid",
                                           "getpid", "getrandom", "sched_getaffinity"};
    test::onQuickDisk([&] {
        std::set<std::string> outcomes;
        for (const auto& call : calls()) {
            const auto found = failures.find(call.name);
            if (found == failures.end() && cannotFail.contains(call.name))
                continue;
            for (const auto& error : found == failures.end() ? others : found->second) {
                SCOPED_TRACE(call.name + " " + std::to_string(call.index) + " " + error);
                const Subject subject(GetParam());
                const auto run = subject.runMove(call, "error=" + error);
                ASSERT_EQ(run.status, 0) << run.errors;
                ASSERT_EQ(subject.untruths(run.output), None()) << run.output;
                for (const auto& [path, outcome] : Subject::told(run.output))
                    outcomes.insert(outcome);
                ASSERT_EQ(subject.faultsOnceSettled(), None()) << run.output;
            }
        }
        EXPECT_EQ(outcomes, (std::set<std::string>{"done", "refused", "unrecorded"}));
    });
}

TEST_P(CrashMatrix, SettlingRecordsNoMoveBeforeItIsOnTheDisk) {
    const bool isToTrash = GetParam() == Move::toTrash;
    const test::JournalScene scene;
    const auto intent = isToTrash ? scene.beginToTrash("item") : scene.beginPutBack("item");
    scene.leaveBehind({intent});
    test::move(intent);
    const auto settle = [&](std::vector<std::string> words) {
        words.insert(words.end(), {ORBEL_MOVE_ITEMS, "settle", scene.path});
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

INSTANTIATE_TEST_SUITE_P(Moves, CrashMatrix, ::testing::Values(Move::toTrash, Move::back),
                         [](const auto& move) {
                             return move.param == Move::toTrash ? "ToTheTrash" : "Back";
                         });

} // namespace
} // namespace orbel
