#include "Util/DisplayWidth.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

TEST(DisplayWidth, IsWhatATerminalTakes) {
    EXPECT_EQ(displayWidth(""), 0);
    EXPECT_EQ(displayWidth("plain.txt"), 9);
    EXPECT_EQ(displayWidth("Größe"), 5);
    EXPECT_EQ(displayWidth("e\u0301te\u0301"), 3) << "an accent of its own";
    EXPECT_EQ(displayWidth("日本語.txt"), 10);
    EXPECT_EQ(displayWidth("한글 ﾊﾝ"), 7) << "half-width letters are narrow";
    EXPECT_EQ(displayWidth("\U0001F4C1\U00020000"), 4);
    EXPECT_EQ(displayWidth("\uFFFD"), 1);
}

TEST(DisplayWidth, ElidesTheMiddleWithoutSplittingCharacters) {
    EXPECT_EQ(elidedInMiddle("fits", 4, "…"), "fits");
    EXPECT_EQ(elidedInMiddle("holiday-photos.tar.gz", 11, "…"), "holid…ar.gz");
    EXPECT_EQ(elidedInMiddle("holiday-photos.tar.gz", 11, "..."), "holi...r.gz");
    EXPECT_EQ(elidedInMiddle("abc", 1, "…"), "…");
    EXPECT_EQ(elidedInMiddle("abc", 0, "…"), "");
    EXPECT_EQ(elidedInMiddle("e\u0301e\u0301e\u0301e\u0301", 3, "…"), "e\u0301…e\u0301");
    for (std::size_t columns = 0; columns < 14; ++columns)
        EXPECT_LE(displayWidth(elidedInMiddle("日本語日本語.txt", columns, "…")), columns) << columns;
    EXPECT_EQ(elidedInMiddle("日本語日本語", 7, "…"), "日…語") << "half a character stays empty";
}

} // namespace
} // namespace orbel
