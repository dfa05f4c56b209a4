#include "Delete/LiveTrash.h"
#include "Support/MoverHome.h"
#include "Util/ReadFile.h"

#include <atomic>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <random>
#include <thread>

namespace orbel {
namespace {

namespace fs = std::filesystem;

/// Every regular file below a folder, by content.
std::multimap<std::string, std::string> filesByContent(const std::string& folder) {
    std::multimap<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        if (entry.is_regular_file())
            files.emplace(readFile(entry.path()).value_or(""), entry.path());
    return files;
}

/// Runs the body over and over on a thread of its own until the end of the scope.
class Meanwhile {
public:
    explicit Meanwhile(std::function<void()> body)
        : thread_([this, body = std::move(body)] {
              while (!isOver_)
                  body();
          }) {}
    ~Meanwhile() {
        isOver_ = true;
        thread_.join();
    }
    Meanwhile(const Meanwhile&) = delete;
    Meanwhile& operator=(const Meanwhile&) = delete;

private:
    std::atomic<bool> isOver_ = false;
    std::thread thread_;
};

/// Somebody who swaps a file with another one as fast as the system lets him: after every move nothing is
/// lost, and what the Trash holds is what the journal says, or the user was told.
TEST(Race, ASwapperNeverMakesTheRecordLie) {
    test::MoverHome home;
    home.trasher.trash = std::make_shared<LiveTrash>(home.trash());
    constexpr int rounds = 150;
    std::atomic<int> round = 0;
    for (int i = 0; i < rounds; ++i) {
        home.file("docs/" + std::to_string(i), "item " + std::to_string(i));
        home.file("swap/" + std::to_string(i), "swap " + std::to_string(i));
    }
    std::minstd_rand random(1);
    const auto swap = [&] {
        // Long enough for many checks to pass before the next swap.
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 8000));
        const auto name = std::to_string(round.load());
        const auto item = home.path("docs/" + name);
        const auto aside = home.path("aside");
        std::error_code ignored; // the mover may have taken it from under our hands
        fs::rename(item, aside, ignored);
        fs::rename(home.path("swap/" + name), item, ignored);
        fs::rename(aside, home.path("swap/" + name), ignored);
    };
    auto swapper = std::make_optional<Meanwhile>(swap);
    int moved = 0;
    int mismatches = 0;
    for (int i = 0; i < rounds; ++i) {
        round = i;
        const auto stamp = FileStamp::of(home.path("docs/" + std::to_string(i)));
        if (!stamp)
            continue;
        const DeletionItem item{.id = "x",
                                .title = std::to_string(i),
                                .detail = {},
                                .path = home.path("docs/" + std::to_string(i)),
                                .scanStamp = *stamp};
        const auto report = home.run({item});
        moved += static_cast<int>(report.moved.size());
        mismatches += report.stoppedForMismatch ? 1 : 0;
        ASSERT_EQ(report.moved.size() + report.skipped.size(), 1);
        ASSERT_FALSE(report.journalFailed);
        const auto line = home.entries().back();
        if (line.trashPath) {
            ASSERT_EQ(TrashedIdentity::of(*line.trashPath), line.trashedIdentity) << "the record is true";
        }
        if (report.moved.size() == 1) {
            ASSERT_EQ(FileIdentity::of(*line.trashPath), stamp->identity) << "it is what was approved";
        }
    }
    swapper.reset();
    RecordProperty("moved", moved);
    RecordProperty("mismatches", mismatches);

    const auto files = filesByContent(home.path());
    for (int i = 0; i < rounds; ++i)
        for (const std::string kind : {"item ", "swap "})
            ASSERT_EQ(files.count(kind + std::to_string(i)), 1) << kind << i;
    for (const auto& name : home.contents()) {
        if (name.starts_with("files/")) {
            EXPECT_TRUE(fs::exists(home.infoOf(name.substr(6)))) << name;
        }
    }
}

} // namespace
} // namespace orbel
