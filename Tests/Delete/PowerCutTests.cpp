#include "Support/ChildProcess.h"
#include "Support/DiskImage.h"
#include "Support/MovedGroup.h"
#include "Support/TemporaryFolder.h"
#include "Util/ReadFile.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include <signal.h>

namespace orbel {
namespace {

using test::MovedGroup;
using Move = MovedGroup::Move;
using None = std::vector<std::string>;

constexpr auto flushes = "fsync,fdatasync,syncfs";
/// All calls that change what is on the disk. A cut after each of them is also one before each flush.
constexpr auto writes = "fsync,fdatasync,syncfs,renameat2,write,mkdir,mkdirat,unlink,unlinkat,fallocate";

/// A home on a disk of its own, in which a group of items is moved, and what that disk holds after a power
/// cut. Lives in a child process with its own mount table.
class Disk {
public:
    Disk(std::string kind, const std::string& folder, Move move)
        : kind_(std::move(kind)), images_(folder + "/images"), home_(folder + "/home"), items_(home_, move) {
        test::mountTmpfs(images_.c_str(), "2g");
        mounted_ = images_ + "/image";
        test::makeImage(kind_, mounted_);
        test::mountImage(kind_, mounted_, home_);
        items_.prepare();
        // Brings all that was done so far to the disk.
        test::unmount(home_);
        test::mountImage(kind_, mounted_, home_);
    }

    const MovedGroup& items() const { return items_; }

    struct Cut {
        std::string moment;
        std::string image;
    };

    /// What a power cut leaves at this moment.
    Cut cut(const std::string& moment) {
        Cut made{.moment = moment, .image = images_ + "/cut" + std::to_string(++count_)};
        test::copyImage(mounted_, made.image);
        return made;
    }

    /// Runs the move, and cuts the power after each of its calls that write. A cut is a copy of the image, so
    /// one run gives all of them.
    std::pair<test::ProgramRun, std::vector<Cut>> runWithCuts() {
        std::vector<Cut> cuts;
        const auto trace = images_ + "/trace";
        // The tracer is a process beside the program, which so gets the signals.
        test::RunningProgram program(
            items_.start({"strace", "-D", "-y", "-o", trace, "-e", std::string("trace=") + writes, "-e",
                          std::string("inject=") + writes + ":signal=STOP"}));
        std::size_t end = 0;
        while (program.isRunning()) {
            const auto lines = readFile(trace).value_or("");
            const auto stop = lines.find("--- stopped by SIGSTOP ---\n", end);
            if (stop == std::string::npos) {
                std::this_thread::sleep_for(std::chrono::microseconds(200));
                continue;
            }
            const auto call = lines.rfind('\n', lines.rfind("\n--- SIGSTOP", stop) - 1) + 1;
            cuts.push_back(cut("after " + lines.substr(call, lines.find('\n', call) - call)));
            end = stop + 1;
            program.signal(SIGCONT);
        }
        return {program.finish(), std::move(cuts)};
    }

    /// Continues from what a cut left. The disk as it was before is gone for good.
    void continueFrom(const Cut& cut) {
        test::unmount(home_);
        mounted_ = cut.image;
        test::mountImage(kind_, mounted_, home_);
    }

private:
    std::string kind_;
    std::string images_;
    std::string home_;
    MovedGroup items_;
    std::string mounted_; ///< the image that is the disk now
    int count_ = 0;       ///< of the cuts
};

class PowerCut : public ::testing::TestWithParam<std::tuple<std::string, Move>> {
protected:
    void SetUp() override {
#ifdef ORBEL_SANITIZED
        GTEST_SKIP() << "the sanitizers trace the process as strace does";
#endif
        if (const auto reason = test::reasonAgainstImages(std::get<0>(GetParam())))
            GTEST_SKIP() << *reason << ": NO POWER CUT WAS TRIED";
        if (test::runProgram({"strace", "-o", "/dev/null", "true"}).status != 0)
            GTEST_SKIP() << "strace is missing or may not trace here: NO POWER CUT WAS TRIED";
    }

    static void withDisk(const std::function<void(Disk& disk)>& body) {
        const test::TemporaryFolder folder;
        folder.folder("images");
        folder.folder("home");
        test::inChildProcess([&] {
            test::useOwnMountTable();
            const auto& [kind, move] = GetParam();
            Disk disk(kind, folder.path(), move);
            body(disk);
        });
    }
};

TEST_P(PowerCut, LosesNothingAtAnyMoment) {
    withDisk([](Disk& disk) {
        const auto [run, cuts] = disk.runWithCuts();
        ASSERT_EQ(disk.items().untruths(run.output), None()) << run.output << run.errors;
        ASSERT_EQ(disk.items().moved(), MovedGroup::size) << run.output;
        ASSERT_GT(cuts.size(), 10) << "the program was stopped";
        for (const auto& cut : cuts) {
            SCOPED_TRACE(cut.moment);
            disk.continueFrom(cut);
            EXPECT_EQ(disk.items().faultsOnceSettled(), None());
            disk.continueFrom(disk.cut("once settled"));
            EXPECT_EQ(disk.items().faultsOnceSettled(), None()) << "after another cut, once that was settled";
        }
    });
}

TEST_P(PowerCut, KeepsWhatWasReported) {
    withDisk([](Disk& disk) {
        const auto run = test::RunningProgram(disk.items().start()).finish();
        disk.continueFrom(disk.cut("at the end"));
        EXPECT_EQ(disk.items().faultsOnceSettled(), None()) << run.output << run.errors;
        EXPECT_EQ(disk.items().moved(), MovedGroup::size) << run.output << run.errors;
    });
}

/// The negative control: a disk that confirms flushes without making them loses what was reported.
TEST_P(PowerCut, IsNoticedWhereNothingIsFlushed) {
    withDisk([](Disk& disk) {
        const auto tracer = std::string("inject=") + flushes + ":retval=0";
        const auto run =
            test::RunningProgram(disk.items().start({"strace", "-o", "/dev/null", "-e", tracer})).finish();
        ASSERT_EQ(disk.items().untruths(run.output), None()) << run.output << run.errors;
        ASSERT_EQ(disk.items().moved(), MovedGroup::size) << run.output;
        disk.continueFrom(disk.cut("at the end"));
        EXPECT_LT(disk.items().moved(), MovedGroup::size);
    });
}

INSTANTIATE_TEST_SUITE_P(Disks, PowerCut,
                         ::testing::Combine(::testing::Values("ext4", "xfs", "btrfs"),
                                            ::testing::Values(Move::toTrash, Move::back)),
                         [](const auto& disk) {
                             return std::get<0>(disk.param)
                                    + (std::get<1>(disk.param) == Move::toTrash ? "ToTheTrash" : "Back");
                         });

} // namespace
} // namespace orbel
