#include "Support/ChildProcess.h"
#include "Support/DiskImage.h"
#include "Support/Faults.h"
#include "Support/MovedGroup.h"
#include "Support/TemporaryFolder.h"
#include "Util/ReadFile.h"

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <string_view>
#include <tuple>

namespace orbel {
namespace {

namespace fs = std::filesystem;
using test::MovedGroup;
using Move = MovedGroup::Move;
using None = std::vector<std::string>;

void removeAllIn(const std::string& folder, std::string_view namesThatStartWith) {
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().filename().native().starts_with(namesThatStartWith))
            fs::remove_all(entry.path());
}

/// Uses up all space of the disk but for this many pages.
void leaveRoom(const std::string& folder, int pages) {
    const auto spare = folder + "/spare";
    std::ofstream(spare) << std::string(static_cast<std::size_t>(pages) * 4096, 'x');
    test::fillDisk(folder);
    fs::remove(spare);
}

/// Earlier moves leave room behind the journal's end, which would do for these.
void giveUpReservedRoom(const std::string& journal) {
    if (const auto content = readFile(journal))
        std::ofstream(journal) << *content;
}

class FullDisk : public ::testing::TestWithParam<std::tuple<std::string, Move>> {
protected:
    void SetUp() override {
        if (kind() == "tmpfs" && !test::isRoot())
            GTEST_SKIP() << "mounting needs root: NO FULL DISK WAS TRIED";
        if (const auto reason = kind() == "tmpfs" ? std::nullopt : test::reasonAgainstImages(kind()))
            GTEST_SKIP() << *reason << ": NO FULL DISK WAS TRIED";
    }

    static const std::string& kind() { return std::get<0>(GetParam()); }

    static void onSmallDisk(const std::function<void(const std::string& home)>& body) {
        const test::TemporaryFolder folder;
        const auto home = folder.folder("home");
        test::inChildProcess([&] {
            test::useOwnMountTable();
            if (kind() == "tmpfs") {
                test::mountTmpfs(home.c_str());
            } else {
                const auto memory = folder.folder("memory");
                test::mountTmpfs(memory.c_str(), "5m");
                test::makeImage(kind(), memory + "/image", 4 << 20);
                test::mountImage(kind(), memory + "/image", home);
            }
            body(home);
        });
    }
};

TEST_P(FullDisk, LosesNothingAndTellsAllWhateverRoomIsLeft) {
    onSmallDisk([](const std::string& home) {
        constexpr int most = 600;
        const MovedGroup items(home, std::get<1>(GetParam()));
        int pages = 0;
        for (bool isEnough = false; !isEnough && pages < most; ++pages) {
            SCOPED_TRACE(pages);
            removeAllIn(home, "");
            items.prepare();
            giveUpReservedRoom(items.journalPath());
            leaveRoom(home, pages);
            const auto run = test::RunningProgram(items.start()).finish();
            ASSERT_EQ(run.status, 0) << run.errors;
            ASSERT_EQ(items.untruths(run.output), None()) << run.output;
            ASSERT_EQ(items.tornInfoFiles(), None()) << run.output;
            isEnough = items.moved() == MovedGroup::size && !run.output.contains("stopped");
            removeAllIn(home, "filler");
            ASSERT_EQ(items.faultsOnceSettled(), None()) << run.output;
        }
        EXPECT_GT(pages, 10) << "the disk was full";
        EXPECT_LT(pages, most) << "at last there was room enough";
    });
}

INSTANTIATE_TEST_SUITE_P(Disks, FullDisk,
                         ::testing::Combine(::testing::Values("tmpfs", "ext4"),
                                            ::testing::Values(Move::toTrash, Move::back)),
                         [](const auto& disk) {
                             return std::get<0>(disk.param)
                                    + (std::get<1>(disk.param) == Move::toTrash ? "ToTheTrash" : "Back");
                         });

} // namespace
} // namespace orbel
