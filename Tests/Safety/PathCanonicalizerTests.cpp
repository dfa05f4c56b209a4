#include "Safety/PathCanonicalizer.h"
#include "Safety/RealPath.h"
#include "Support/TemporaryFolder.h"
#include "Util/PathResolver.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

TEST(RealPath, ResolvesLinksAndDotsOrGivesNothing) {
    const test::TemporaryFolder home;
    const auto file = home.file("folder/file");
    home.link("link", home.path("folder"));
    home.link("loop", home.path("loop"));
    EXPECT_EQ(RealPath::resolve(home.path("link/../folder/./file")), file);
    EXPECT_FALSE(RealPath::resolve(home.path("missing")));
    EXPECT_FALSE(RealPath::resolve(home.path("loop")));
    EXPECT_FALSE(RealPath::resolve(""));
    EXPECT_FALSE(RealPath::resolve(file + std::string("\0.bak", 5)))
        << "must not be cut off at the zero byte";
}

TEST(RealPath, ResolvesAsMuchAsExists) {
    const test::TemporaryFolder home;
    home.folder("real");
    home.link("link", home.path("real"));
    home.link("dangling", home.path("gone"));
    EXPECT_EQ(PathResolver().resolve(home.path("link")).path, home.path("real"));
    EXPECT_EQ(PathResolver().resolve(home.path("link/new/./deep/")).path, home.path("real/new/deep"));
    EXPECT_EQ(PathResolver().resolve(home.path("dangling/x")).path, home.path("gone/x"));
    EXPECT_EQ(PathResolver().resolve("/no/such/place").path, "/no/such/place");
}

TEST(RealPath, InsideMeansWholeComponents) {
    EXPECT_TRUE(RealPath::isInside("/a/b", "/a/b"));
    EXPECT_TRUE(RealPath::isInside("/a/b/c", "/a/b"));
    EXPECT_TRUE(RealPath::isInside("/a/b/c", "/a/b/"));
    EXPECT_TRUE(RealPath::isInside("/a", "/"));
    EXPECT_FALSE(RealPath::isInside("/a/bc", "/a/b"));
    EXPECT_FALSE(RealPath::isInside("/a", "/a/b"));
    EXPECT_FALSE(RealPath::isInside("/a/b", "/a/b/")) << "no text is resolved or trimmed here";
    EXPECT_FALSE(RealPath::isInside("/A/b", "/a"));
}

TEST(PathCanonicalizer, TranslatesBothWaysByTheLongestMapping) {
    const PathCanonicalizer paths("/Users\tUsers\n/usr/local\tusr/local\n/Users/Guest\tUsers/Guest Home\n");
    EXPECT_EQ(paths.visiblePath("/System/Volumes/Data/Users/ann/x"), "/Users/ann/x");
    EXPECT_EQ(paths.visiblePath("/System/Volumes/Data/Users"), "/Users");
    EXPECT_EQ(paths.visiblePath("/System/Volumes/Data/Users/Guest Home/x"), "/Users/Guest/x");
    EXPECT_EQ(paths.dataVolumePath("/Users/ann/x"), "/System/Volumes/Data/Users/ann/x");
    EXPECT_EQ(paths.dataVolumePath("/Users/Guest"), "/System/Volumes/Data/Users/Guest Home");

    for (const auto* same :
         {"/System/Volumes/Data", "/System/Volumes/Data/", "/System/Volumes/Data/Usersx/y",
          "/System/Volumes/Data/.Spotlight-V100", "/System/Volumes/DataX/Users", "/Users/ann", ""})
        EXPECT_EQ(paths.visiblePath(same), same);
    for (const auto* same : {"/Usersx", "/usr", "/System/Volumes/Data/Users", ""})
        EXPECT_EQ(paths.dataVolumePath(same), same);
}

TEST(PathCanonicalizer, PassesOverLinesOfAnotherForm) {
    const PathCanonicalizer paths("/three\tfields\there\nrelative\tpath\n/only\n\n/empty\t\n/double\t\ttab\n"
                                  "/a b \tc d \r\n/next\xC2\x85/p\tq\xE2\x80\xA8/r\ts\v/last\tl");
    EXPECT_EQ(paths.mappings(), (std::vector<PathCanonicalizer::Mapping>{
                                    {"c d ", "/a b "}, {"q", "/p"}, {"s", "/r"}, {"l", "/last"}}));
}

TEST(PathCanonicalizer, SortsByCharactersAndKeepsTheOrderOfEquals) {
    const PathCanonicalizer paths("/1\taa\n/2\t\xC3\xA9\xC3\xA9\n/3\tbbb\n");
    EXPECT_EQ(paths.mappings(), (std::vector<PathCanonicalizer::Mapping>{
                                    {"bbb", "/3"}, {"aa", "/1"}, {"\xC3\xA9\xC3\xA9", "/2"}}));
}

TEST(PathCanonicalizer, WithoutATableCanonicalIsTheRealPath) {
    const test::TemporaryFolder home;
    const auto file = home.file("file");
    const PathCanonicalizer paths("");
    EXPECT_EQ(paths.canonical(home.link("link", file)), file);
    EXPECT_FALSE(paths.canonical(home.path("missing")));
    EXPECT_EQ(paths.dataVolumePath("/Users/ann"), "/Users/ann");
}

} // namespace
} // namespace orbel
