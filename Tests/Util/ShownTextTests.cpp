#include "Util/ShownText.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

TEST(ShownText, SpellsOutWhatIsHidden) {
    EXPECT_EQ(visibleText("photo\u202Egpj.exe"), "photo[U+202E]gpj.exe");
    EXPECT_EQ(visibleText("two\nlines\x7F\u0085"), "two[U+000A]lines[U+007F][U+0085]");
    for (const auto* hidden : {"\u200B", "\u200E", "\u200F", "\u061C", "\u00AD", "\u2028", "\u2066", "\u2068",
                               "\u2069", "\u2060", "\uFEFF", "\u3164"})
        EXPECT_NE(visibleText(std::string("a") + hidden), std::string("a") + hidden);
    EXPECT_EQ(visibleText("bad\xFF"), "bad\uFFFD");
    for (const auto* plain : {"plain (1).txt", "Kilpisjärvi", "می‌خواهم.txt", "映画と写真.mkv",
                              "👩‍👩‍👧.png", "שלום"})
        EXPECT_EQ(visibleText(plain), plain) << "nothing that a language needs";
}

TEST(ShownText, KeepsRightToLeftLettersApart) {
    EXPECT_EQ(isolatedText("plain.txt"), "plain.txt");
    EXPECT_EQ(isolatedText("~/Kilpisjärvi/映画"), "~/Kilpisjärvi/映画");
    EXPECT_EQ(isolatedText("שלום.txt"), "\u2068שלום.txt\u2069");
    EXPECT_EQ(isolatedText("~/שלום/عالم"), "\u2066~/\u200Eשלום/\u200Eعالم\u2069");
    EXPECT_EQ(isolatedText("𞤀"), "\u2068𞤀\u2069") << "beyond the first plane";
}

} // namespace
} // namespace orbel
