#include "Find/NameSearch.h"
#include "Support/TreeBuilder.h"
#include "Util/TextMatcher.h"

#include <gtest/gtest.h>

namespace orbel::test {

TEST(TextMatcher, KnowsLettersOfBothCasesInEveryScriptThatHasThem) {
    for (const auto& [text, bytes] :
         std::vector<std::pair<std::string_view, std::string_view>>{{"LAKE", "KJ_Lake_dawn.mov"},
                                                                    {"straße", "STRAßE 7"},
                                                                    {"ÄRGER", "Kein ärger.txt"},
                                                                    {"ŽLUŤOUČKÝ", "žluťoučký kůň"},
                                                                    {"ΟΔΥΣΣΕΎΣ", "οδυσσεύς.pdf"},
                                                                    {"отчёт", "ОТЧЁТ 2025"},
                                                                    {"Ÿ", "ÿ"},
                                                                    {"ẤN", "ấn"},
                                                                    {"", "x"},
                                                                    {"日本", "写真 日本 2024"}})
        EXPECT_TRUE(TextMatcher(text).isIn(bytes)) << text << " in " << bytes;
    EXPECT_FALSE(TextMatcher("laker").isIn("lake"));
    EXPECT_FALSE(TextMatcher("a").isIn("ä"));
    EXPECT_FALSE(TextMatcher("÷").isIn("×")) << "no letters, though they stand among them";
    EXPECT_TRUE(TextMatcher("FILM").isIn("\xFF"
                                         "film\xC3"))
        << "a name need not be text";
    EXPECT_TRUE(TextMatcher("é").isIn("caf\xC3\x89\xE1")) << "cut off in a character";
}

TEST(NameSearch, FindsTheLargestOfWhatIsStillThere) {
    TreeBuilder builder;
    const auto films = builder.folder(0, "Films");
    const auto first = builder.file(films, "film-a.mkv", 50);
    const auto second = builder.file(films, "FILM-B.mkv", 80);
    const auto twin = builder.file(films, "film-c.mkv", 50);
    builder.file(0, "notes.pdf", 500);
    auto tree = builder.build();
    const auto find = [&](std::string_view text, std::size_t most) {
        return NameSearch::run(tree, text, most);
    };
    EXPECT_EQ(find("film", 10), (std::vector{films, second, first, twin}));
    EXPECT_EQ(find("film", 3), (std::vector{films, second, first}));
    EXPECT_EQ(find("", 10), std::vector<NodeIndex>());
    EXPECT_EQ(find("root", 10), std::vector<NodeIndex>()) << "the root is called by its path";
    tree.remove(std::array{films});
    EXPECT_EQ(find("film", 10), std::vector<NodeIndex>());
    EXPECT_EQ(find("PDF", 10).size(), 1U);
}

TEST(NameSearch, StopsWhenNobodyWaitsForItAnyMore) {
    TreeBuilder builder;
    constexpr int files = 40'000;
    for (int i = 0; i < files; ++i)
        builder.file(0, "file" + std::to_string(i), 1);
    const auto tree = builder.build();
    int asked = 0;
    EXPECT_TRUE(NameSearch::run(tree, "file", 10, [&] { return ++asked == 2; }).empty());
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(NameSearch::run(tree, "file", 10, [] { return false; }).size(), 10U);
}

} // namespace orbel::test
