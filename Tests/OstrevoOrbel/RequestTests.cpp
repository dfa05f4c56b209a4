#include "Commands/CommandTable.h"
#include "Commands/Request.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

using Words = std::vector<std::string>;
using Lines = std::vector<Words>;

/// What a line asks of the command that it is meant for; absent when it is meant for none.
std::optional<std::expected<Request, std::string>> strict(Words words) {
    words.insert(words.begin(), "orbel");
    const auto* command = strictCommandIn(words);
    return command != nullptr ? std::optional(strictRequest(*command, words)) : std::nullopt;
}

std::string errorOf(const Words& words) {
    const auto request = strict(words);
    return request && !*request ? request->error() : "none";
}

TEST(Request, IsReadFromTheWholeLine) {
    EXPECT_EQ(strict({"--trash", "a", "b"}), (Request{{"a", "b"}}));
    for (const auto& words :
         Lines{{"--dry-run", "--trash", "a"}, {"--trash", "--dry-run", "a"}, {"--trash", "a", "--dry-run"}})
        EXPECT_EQ(strict(words), (Request{{"a"}, {{"--dry-run", ""}}}));
    EXPECT_EQ(strict({"--trash", "--", "--dry-run", "-x", "--", "--trash"}),
              (Request{{"--dry-run", "-x", "--", "--trash"}}));
    EXPECT_EQ(strict({"--trash", "a", "--", "-b"}), (Request{{"a", "-b"}}));
    EXPECT_EQ(strict({"--put-back=last"}), (Request{{"last"}}));
    EXPECT_EQ(strict({"--map-svg", "--size", "4x3", "--", "-root", "--size"}),
              (Request{{"-root", "--size"}, {{"--size", "4x3"}}}));
    EXPECT_EQ(strict({"--map-svg", "root", "-"}), (Request{{"root", "-"}}));
    EXPECT_EQ(strict({"--large-json=/", "--min-bytes=5", "--unused-days", "-1"}),
              (Request{{"/"}, {{"--min-bytes", "5"}, {"--unused-days", "-1"}}}));
    EXPECT_EQ(strict({"--trash", "--keep=--x=y", "--files0-from", "-"}),
              (Request{{}, {{"--keep", "--x=y"}, {"--files0-from", "-"}}}));
    EXPECT_EQ(strict({"--tidy-json", "--exclude", "b", "/", "--exclude=a"})->value().values("--exclude"),
              (Words{"b", "a"}));
    for (const auto* lenient : {"--scan-json", "--duplicates-json"}) {
        const Words line{"orbel", "--exclude=b", lenient, "/", "--exclude", "a", "--x", "--exclude"};
        EXPECT_EQ(lenientRequest(*commandNamed(lenient), line)->values("--exclude"), (Words{"b", "a"}));
    }
    for (const auto& words : Lines{{},
                                   {"--scan-json", "/"},
                                   {"--", "--trash", "a"},
                                   {"--dry-run"},
                                   {"--scan-json", "--apps-json"},
                                   {"--leftovers-dry-run", "--tidy-json", "/"}})
        EXPECT_FALSE(strict(words)) << testing::PrintToString(words);
}

TEST(Request, RefusesWhatACommandDoesNotUnderstand) {
    for (const auto& words : Lines{{"--trash", ""},
                                   {"--trash", "a", ""},
                                   {"--trash", "a", "-n"},
                                   {"--trash", "a", "--dry-run=no"},
                                   {"--trash", "a", "--dry-run", "--dry-run"},
                                   {"--trash", "a", "--keep", "--dry-run"},
                                   {"--trash", "a", "--scan-json", "b"},
                                   {"--scan-json", "b", "--trash", "a"},
                                   {"--trash", "a", "--trash", "b"},
                                   {"--trash", "a", "--put-back=b"},
                                   {"a", "--trash", "b"},
                                   {"--put-back"},
                                   {"--put-back", ""},
                                   {"--put-back", "a", "b"},
                                   {"--put-back", "a", "--dry-run"},
                                   {"--put-back", "--last"},
                                   {"--map-svg", "root"},
                                   {"--map-svg", "root", ""},
                                   {"--map-svg", "root", "file", "more"},
                                   {"--map-svg", "root", "file", "--size"},
                                   {"--map-svg", "root", "file", "--scan-json", "/"},
                                   {"--large-json", "/", "--min-bytes"},
                                   {"--tidy-json"},
                                   {"--rebuildable-json"},
                                   {"--tidy-json", "/", "--apps-json"},
                                   {"--apps-json", "x"},
                                   {"--system-json", "/"},
                                   {"--leftovers-json", "x"},
                                   {"--apps-json=x"},
                                   {"--journal-json", "--open", "map"}})
        EXPECT_NE(errorOf(words), "none") << testing::PrintToString(words);
}

TEST(Request, NamesTheWordAndWhatIsNearest) {
    EXPECT_EQ(errorOf({"--large-json", "/", "--min-size=5"}),
              "\"--min-size\" is not an option of --large-json: did you mean --min-bytes?");
    EXPECT_EQ(errorOf({"--journal-markdown", "--sinse", "2025"}),
              "\"--sinse\" is not an option of --journal-markdown: did you mean --since?");
    EXPECT_EQ(errorOf({"--trash", "a", "--dryrun"}),
              "\"--dryrun\" is not an option of --trash: did you mean --dry-run?");
    EXPECT_EQ(errorOf({"--large-json", "/", "-n"}),
              "\"-n\" is not an option of --large-json: it has --min-bytes, --unused-days, --exclude");
}

TEST(Request, WithoutACommandTakesAFolderAndOptions) {
    const auto read = [](Words words) {
        words.insert(words.begin(), "orbel");
        return strictRequest(tableCommand, words);
    };
    EXPECT_EQ(read({}), Request());
    EXPECT_EQ(read({"--depth=2", "root", "--exclude", "a"}),
              (Request{{"root"}, {{"--depth", "2"}, {"--exclude", "a"}}}));
    EXPECT_EQ(read({"--", "--trash"}), (Request{{"--trash"}}));
    EXPECT_EQ(read({"--tidy-jsn", "/"}).error(),
              "\"--tidy-jsn\" is neither a command nor an option: did you mean --tidy-json?");
    EXPECT_EQ(read({"/", "--dept", "2"}).error(),
              "\"--dept\" is neither a command nor an option: did you mean --depth?");
    EXPECT_EQ(read({"--scan-json"}).error(), "--scan-json takes ROOT");
    EXPECT_EQ(read({"a", "b"}).error(), "\"b\" is a word too many: orbel takes [ROOT]");
    EXPECT_EQ(read({""}).error(), "A word of orbel is empty");
}

TEST(Request, OfALenientCommandPassesOverTheRest) {
    const Words words{"orbel",          "x",           "--top", "3",      "--unknown",
                      "--scan-json=/a", "--scan-json", "/b",    "--top=4"};
    EXPECT_EQ(lenientRequest(scanCommand, words), (Request{{"/a"}, {{"--top", "3"}}}));
    EXPECT_EQ(lenientRequest(scanCommand, Words{"orbel", "--scan-json", "--growth", "--top"}),
              (Request{{"--growth"}, {{"--growth", ""}}}));
    EXPECT_EQ(lenientRequest(scanCommand, Words{"orbel", "--top", "--scan-json"}), std::nullopt);
    EXPECT_EQ(lenientRequest(leftoversCommand, Words{"orbel", "--", "--leftovers-dry-run"}), Request());
}

} // namespace
} // namespace orbel
