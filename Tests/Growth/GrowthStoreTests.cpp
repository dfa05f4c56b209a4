#include "Growth/GrowthStore.h"
#include "Support/FlushHook.h"
#include "Support/ProgramHome.h"
#include "Support/TreeBuilder.h"

#include <cerrno>
#include <fstream>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace orbel {
namespace {

using test::TemporaryFolder;
using test::TreeBuilder;

constexpr Date monday{std::chrono::sys_days(std::chrono::year(2025) / 11 / 17)};
constexpr std::uint64_t million = 1'000'000;

FileTree treeOf(std::uint64_t bytes, const std::string& root = "/data") {
    TreeBuilder builder(root);
    builder.file(builder.folder(0, "films"), "file", bytes);
    return builder.build();
}

TEST(GrowthStore, ComparesEachScanWithTheOneBefore) {
    const TemporaryFolder home;
    const GrowthStore store(home.path("data/growth"));
    EXPECT_FALSE(store.keep(treeOf(10 * million), monday).growth);
    EXPECT_FALSE(store.keep(treeOf(90 * million, "/other"), monday).growth);
    const auto second = store.keep(treeOf(15 * million), monday + std::chrono::hours(24));
    ASSERT_TRUE(second.growth);
    EXPECT_EQ(second.growth->since, monday);
    EXPECT_EQ(second.growth->folders,
              (std::vector<GrownFolder>{
                  {.path = "/data/films", .grownBytes = 5 * million, .bytes = 15 * million}}));
    EXPECT_EQ(store.latest("/data")->measuredAt, monday + std::chrono::hours(24));
    struct stat status {};
    ASSERT_EQ(::stat(store.pathFor("/data").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600);
    ASSERT_EQ(::stat(home.path("data/growth").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0700);
    EXPECT_FALSE(store.keep(FileTree("/data"), monday).growth) << "a root that could not be read";
    EXPECT_TRUE(store.latest("/data")) << "leaves what is kept";
    const test::FlushHook hook([](const test::Flush&) { return EIO; });
    EXPECT_TRUE(store.keep(treeOf(20 * million), monday).failure);
    EXPECT_EQ(store.latest("/data")->measuredAt, monday + std::chrono::hours(24))
        << "replaced only by what is on the disk";
}

TEST(GrowthStore, ComparesOnlyScansWithTheSamePatterns) {
    const TemporaryFolder home;
    const GrowthStore store(home.path("growth"));
    auto less = treeOf(10 * million);
    less.exclusions.patterns = {"b", "a"};
    auto more = treeOf(40 * million);
    EXPECT_FALSE(store.keep(treeOf(30 * million), monday).growth);
    EXPECT_FALSE(store.keep(less, monday).growth) << "left out, and not shrunk";
    EXPECT_EQ(store.keep(more, monday).growth->folders.at(0).grownBytes, 10 * million);
    more.exclusions.patterns = {"a", "b", "a"};
    EXPECT_EQ(store.keep(more, monday).growth->folders.at(0).grownBytes, 30 * million);
}

TEST(GrowthStore, ReplacesWhatIsDamagedAndBelievesNobodyElse) {
    const TemporaryFolder home;
    const GrowthStore store(home.folder("growth"));
    const auto path = store.pathFor("/data");
    std::ofstream(path) << "{\"version\":1,";
    ASSERT_EQ(::chmod(path.c_str(), 0644), 0);
    auto kept = store.keep(treeOf(10 * million), monday);
    EXPECT_FALSE(kept.growth);
    EXPECT_FALSE(kept.failure);
    struct stat status {};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600);
    EXPECT_TRUE(store.latest("/data"));

    ASSERT_EQ(::rename(path.c_str(), store.pathFor("/other").c_str()), 0);
    EXPECT_FALSE(store.latest("/other")) << "of another root";
    home.link("growth/" + path.substr(path.rfind('/') + 1), store.pathFor("/other"));
    kept = store.keep(treeOf(20 * million), monday);
    EXPECT_FALSE(kept.growth);
    EXPECT_EQ(kept.failure, path + ": Not a regular file");
}

TEST(GrowthReport, IsAddedOnlyWhenAskedFor) {
    const test::ProgramHome home;
    home.file("data/films/a", 3 * million);
    const auto growth = home.path(".local/share/Ostrevo Orbel/growth");
    EXPECT_FALSE(home.json({"--scan-json", home.path("data")}, 0).contains("growth"));
    struct stat status {};
    EXPECT_NE(::stat(growth.c_str(), &status), 0) << "nothing is written";

    const auto first = home.json({"--scan-json", home.path("data"), "--growth"}, 0)["growth"];
    EXPECT_EQ(first, (nlohmann::json{{"since", nullptr}, {"folders", nlohmann::json::array()}}));
    home.file("data/films/b", 2 * million);
    const auto second = home.json({"--scan-json", home.path("data") + "/.", "--growth"}, 0)["growth"];
    EXPECT_TRUE(parseIso8601(second["since"].get<std::string>()));
    ASSERT_EQ(second["folders"].size(), 1);
    EXPECT_EQ(second["folders"][0]["path"], home.path("data/films"));
    EXPECT_GE(second["folders"][0]["grownBytes"], 2 * million);
    EXPECT_GE(second["folders"][0]["allocatedBytes"], 5 * million);

    const test::ProgramHome blocked;
    blocked.file(".local/share/Ostrevo Orbel/growth");
    const auto failed = blocked.run({"--scan-json", blocked.folder("data"), "--growth"});
    EXPECT_EQ(failed.status, 1) << "a scan that could not be kept";
    EXPECT_TRUE(nlohmann::json::parse(failed.output)["growth"]["since"].is_null());
    EXPECT_NE(failed.errors.find("could not be kept"), std::string::npos);
}

} // namespace
} // namespace orbel
