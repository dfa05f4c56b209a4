#include "Util/PathText.h"
#include "Util/Utf8.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

TEST(Utf8, TellsWellFormedTextFromOtherBytes) {
    for (const auto* text : {"", "plain", "\xC2\x80", "caf\xC3\xA9", "\xE2\x80\x94", "\xED\x9F\xBF",
                             "\xEE\x80\x80", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"})
        EXPECT_TRUE(isValidUtf8(text)) << text;
    for (const auto* bytes :
         {"\x80", "\xC0\xAF", "\xC1\xBF", "\xC3", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xE2\x80",
          "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF", "ok\xC3(", "\xC3\xC3\xA9"})
        EXPECT_FALSE(isValidUtf8(bytes));
}

TEST(Utf8, LossyTextReplacesEveryIllFormedPartOnce) {
    const std::string mark = "\xEF\xBF\xBD";
    EXPECT_EQ(lossyUtf8("caf\xC3\xA9"), "caf\xC3\xA9");
    EXPECT_EQ(lossyUtf8("caf\xE9.txt"), "caf" + mark + ".txt");
    EXPECT_EQ(lossyUtf8("\xE2\x80x"), mark + "x") << "one mark for a truncated character";
    EXPECT_EQ(lossyUtf8("\xED\xA0\x80"), mark + mark + mark) << "a surrogate has no valid prefix";
    EXPECT_EQ(lossyUtf8("\xF0\x9F\x98"), mark);
    EXPECT_EQ(lossyUtf8("\xC3\xC3\xA9"), mark + "\xC3\xA9");
}

TEST(PathText, TakesPathsApart) {
    struct Case {
        const char *path, *parent, *last;
    };
    for (const auto& [path, parent, last] :
         {Case{"/a/b", "/a", "b"}, Case{"/a/b/", "/a", "b"}, Case{"/a//b//", "/a", "b"}, Case{"/a", "/", "a"},
          Case{"/", "/", "/"}, Case{"//", "/", "/"}, Case{"a", "", "a"}, Case{"", "", ""},
          Case{"a/b", "a", "b"}}) {
        EXPECT_EQ(parentPath(path), parent) << path;
        EXPECT_EQ(lastPathComponent(path), last) << path;
    }
    EXPECT_EQ(pathComponents("//a/b//c/"), (std::vector<std::string_view>{"a", "b", "c"}));
    EXPECT_TRUE(pathComponents("/").empty());
}

TEST(PathText, JoinsWithExactlyOneSlash) {
    EXPECT_EQ(joinedPath("/a", "b"), "/a/b");
    EXPECT_EQ(joinedPath("/a/", "/b"), "/a/b");
    EXPECT_EQ(joinedPath("/", "b"), "/b");
    EXPECT_EQ(joinedPath("", "b"), "b") << "nothing must become the root folder";
}

TEST(PathText, StandardizesWithoutAskingTheDisk) {
    struct Case {
        const char *path, *standardized;
    };
    for (const auto& [path, standardized] :
         {Case{"/a/./b//c/", "/a/b/c"}, Case{"/a/b/../c", "/a/c"}, Case{"/../..", "/"}, Case{"/", "/"},
          Case{"../a/../..", "../.."}, Case{"a/..", ""}, Case{"", ""}})
        EXPECT_EQ(standardizedPath(path), standardized) << path;
}

TEST(PathText, ShowsTheHomeAsATilde) {
    EXPECT_EQ(tildePath("/home/ann", "/home/ann"), "~");
    EXPECT_EQ(tildePath("/home/ann/x", "/home/ann"), "~/x");
    EXPECT_EQ(tildePath("/home/anna/x", "/home/ann"), "/home/anna/x");
    EXPECT_EQ(tildePath("/x\xFF", "/"), "/x\xEF\xBF\xBD");
}

} // namespace
} // namespace orbel
