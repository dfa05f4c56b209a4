#include "Export/MapSvg.h"
#include "Platform/ReplaceFile.h"
#include "Support/RunProgram.h"
#include "Support/TemporaryFolder.h"
#include "Support/TreeBuilder.h"
#include "Util/ReadFile.h"

#include <filesystem>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace orbel {
namespace {

using test::runOrbel;
using test::TemporaryFolder;

/// What xmllint, the judge of well-formed XML, says of a document; empty when it has nothing to say.
std::string xmlFaults(const TemporaryFolder& folder, const std::string& document) {
    const auto file = folder.file("document.svg", document);
    return test::runProgram({"xmllint", "--noout", file}).errors;
}

std::size_t count(std::string_view text, std::string_view part) {
    std::size_t found = 0;
    for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1))
        ++found;
    return found;
}

TEST(MapSvg, ShowsEveryTileAndTheLegend) {
    test::TreeBuilder builder("/home/ann");
    const auto videos = builder.folder(0, "Videos");
    builder.file(videos, "long.mkv", 6'000'000);
    builder.file(videos, "short.mkv", 2'000'000);
    builder.file(0, "notes.txt", 1'000'000);
    const auto tree = builder.build();
    const auto text = MapSvg::render({.tree = tree,
                                      .coverage = Coverage(12'000'000, tree),
                                      .title = "/home/ann",
                                      .remark = "measured",
                                      .size = {}});
    for (const auto* part : {"<title>/home/ann</title>", "<title>Videos, 8 MB, 67 %</title>",
                             "<title>Videos/long.mkv, 6 MB, 50 %</title>",
                             "<title>Not measured, 3 MB, 25 %</title>", ">Video<tspan", ">Documents<tspan"})
        EXPECT_NE(text.find(part), std::string::npos) << part;
    EXPECT_EQ(text.find(">Archives<"), std::string::npos) << "there are none";
}

TEST(MapSvg, KeepsNamesApartAndSpellsOutWhatTurnsThemRound) {
    test::TreeBuilder builder;
    builder.file(builder.folder(0, "תמונות"), "שלום.mkv", 6'000'000);
    builder.file(0, "photo\u202Egpj.exe", 2'000'000);
    const auto tree = builder.build();
    const auto text =
        MapSvg::render({.tree = tree, .coverage = {}, .title = "/שלום/עולם", .remark = "", .size = {}});
    for (const auto* part :
         {"<title>\u2066/\u200Eשלום/\u200Eעולם\u2069</title>", "<title>\u2066תמונות/\u200Eשלום.mkv\u2069, ",
          ">\u2068שלום.mkv\u2069</text>", ">photo[U+202E]gpj.exe</text>"})
        EXPECT_NE(text.find(part), std::string::npos) << part;
    EXPECT_EQ(text.find("\u202E"), std::string::npos);
}

TEST(MapSvg, IsWellFormedWhateverTheNamesHold) {
    const TemporaryFolder folder;
    test::TreeBuilder builder;
    for (const auto* name : {"<&\">'", "bad\xFF", "two\nlines\x01\x7F", "]]>", "\xEF\xBF\xBF",
                             "映画と写真.mkv", "\xE2\x80\xAE", "a\xCC\x81"})
        builder.file(0, name, 1000);
    const auto tree = builder.build();
    const auto text =
        MapSvg::render({.tree = tree, .coverage = {}, .title = "<\xFF>", .remark = "&", .size = {}});
    EXPECT_EQ(xmlFaults(folder, text), "");
    EXPECT_EQ(count(text, "<g><title>"), 8);
}

TEST(MapCommand, WritesAWholePictureOrNothing) {
    const TemporaryFolder home;
    home.file("root/notes.txt", 100'000);
    const auto run = [&](const std::string& root, const std::string& file) {
        const auto result = runOrbel({"--map-svg", root, file, "--size", "400x300"});
        EXPECT_EQ(result.output, "");
        return result;
    };
    const auto file = home.file("map.svg", "what was there");
    ::chmod(file.c_str(), 0640);
    EXPECT_EQ(run(home.path("root"), file).status, 0);
    const auto picture = *readFile(file);
    EXPECT_TRUE(picture.ends_with("</svg>\n"));
    EXPECT_EQ(xmlFaults(home, picture), "");
    struct stat status {};
    ASSERT_EQ(::stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640U);

    const auto printed = runOrbel({"--map-svg", home.path("root"), "-", "--size=400x300"});
    EXPECT_EQ(printed.status, 0);
    EXPECT_EQ(xmlFaults(home, printed.output), "");
    EXPECT_TRUE(printed.output.ends_with("</svg>\n"));

    for (const auto* size : {"400", "400x-300", "9000x300"})
        EXPECT_EQ(runOrbel({"--map-svg", home.path("root"), file, "--size", size}).status, 2) << size;
    const auto refused = [&](const std::string& root, const std::string& path) {
        const auto result = run(root, path);
        EXPECT_EQ(result.status, 1) << path;
        EXPECT_NE(result.errors, "") << path;
    };
    refused(home.path("root"), home.path("missing/map.svg"));
    refused(home.path("root"), home.folder("folder"));
    refused(home.path("root"), home.path("folder/"));
    refused(home.path("root"), home.link("link", file));
    refused(home.path("root"), "/dev/full");
    refused(home.path("nowhere"), file);
    refused(home.path("root/notes.txt"), file);
    EXPECT_EQ(readFile(file), picture) << "nothing that failed touched it";
    const auto left = std::filesystem::directory_iterator(home.path());
    EXPECT_EQ(std::distance(begin(left), end(left)), 5) << "root, map.svg, document.svg, folder, link";
}

} // namespace
} // namespace orbel
