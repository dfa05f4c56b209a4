#include "Scan/ContentKind.h"
#include "Scan/ExtensionTable.h"
#include "Scan/KindTotals.h"
#include "Support/OklabDistance.h"
#include "Support/TreeBuilder.h"

#include <gtest/gtest.h>
#include <numeric>
#include <set>
#include <string>

namespace orbel {
namespace {

using test::TreeBuilder;

TEST(ContentKind, TellsFinerWhatTheFileKindLeaves) {
    EXPECT_EQ(classifyContent("IMG_2041.JPG"), ContentKind::picture);
    EXPECT_EQ(classifyContent("poster.psd"), ContentKind::picture) << "a document as a FileKind";
    EXPECT_EQ(classifyContent("thesis.pdf"), ContentKind::document);
    EXPECT_EQ(classifyContent("figures.csv"), ContentKind::document) << "what its FileKind says";
    EXPECT_EQ(classifyContent("settings.json"), ContentKind::sourceCode);
    EXPECT_EQ(classifyContent("events.jsonl"), ContentKind::database);
    EXPECT_EQ(classifyContent("a.flac"), ContentKind::music);
    EXPECT_EQ(classifyContent("main.rs"), ContentKind::sourceCode);
    EXPECT_EQ(classifyContent("main.o"), ContentKind::buildOutput);
    EXPECT_EQ(classifyContent("tool_1.2_amd64.deb"), ContentKind::package);
    EXPECT_EQ(classifyContent("history.sqlite-wal"), ContentKind::database);
    EXPECT_EQ(classifyContent("a.tar.gz"), ContentKind::archive);
    EXPECT_EQ(classifyContent("movie.mp4"), ContentKind::video);
    EXPECT_EQ(classifyContent("blob.unknown"), ContentKind::other);
    EXPECT_EQ(classifyContent("README"), ContentKind::other);
    EXPECT_EQ(classifyContent(""), ContentKind::other);
    EXPECT_EQ(classifyContent("Docker.raw"), ContentKind::virtualMachine);
    EXPECT_EQ(classifyContent("photos.png", true), ContentKind::folder);
    EXPECT_EQ(classifyContent("Tool.app", true, true), ContentKind::application);
    EXPECT_EQ(classifyContent("My.framework", true, true), ContentKind::folder);
}

TEST(ContentKind, LooksBeforeAVersionOrADate) {
    EXPECT_EQ(classifyContent("libx.so.1.2"), ContentKind::buildOutput);
    EXPECT_EQ(classifyContent("app.log.1"), ContentKind::log);
    EXPECT_EQ(classifyContent("app.log-20260114"), ContentKind::log);
    EXPECT_EQ(classifyContent("app.log.2026-01-14"), ContentKind::log);
    EXPECT_EQ(classifyContent("app.log.gz"), ContentKind::archive);
    EXPECT_EQ(classifyContent("photo.png~"), ContentKind::picture);
    EXPECT_EQ(classifyContent("film.mp4.1"), ContentKind::video) << "of the listed ones, any";
    EXPECT_EQ(tellingExtension("song.mp3.2"), "mp3") << "a digit of its own stays";
    EXPECT_EQ(tellingExtension("a.mp7"), "mp7") << "an unknown one too";
    EXPECT_EQ(tellingExtension("python3.11"), "");
    EXPECT_EQ(tellingExtension("2026.01"), "");
    EXPECT_EQ(tellingExtension("tool-1.0-stable"), "");
    EXPECT_EQ(tellingExtension(".log.1"), "") << "nothing stands before it";
    EXPECT_EQ(tellingExtension("A.Tar.GZ"), "GZ");
}

/// A row that was dropped, or an extension that was lost to another list, shows here.
TEST(ContentKind, EveryExtensionHasTheKindOfItsRow) {
    std::set<std::string> glyphs;
    for (const ContentRow& row : contentTable) {
        EXPECT_TRUE(row.glyph.starts_with('M') && glyphs.insert(std::string(row.glyph)).second) << row.title;
        forEachExtension(row.extensions, [&](std::string_view extension) {
            const auto kind = classifyContent("x." + std::string(extension));
            EXPECT_TRUE(kind == row.kind
                        || (row.kind == ContentKind::document && kind == ContentKind::picture))
                << extension;
        });
    }
    for (const FileKind kind : allFileKinds)
        EXPECT_EQ(title(sameContent(kind)), title(kind));
    EXPECT_EQ(allContentKinds.size(), static_cast<std::size_t>(ContentKind::log) + 1);
}

// The fills of the FileKinds were chosen first and stay; those of the others keep the largest distance to
// them and to one another that a search has found.
TEST(ContentKind, ColoursStayApartForTheColourBlind) {
    std::vector<Rgb> light;
    std::vector<Rgb> dark;
    for (const ContentRow& row : contentTable) {
        light.push_back(row.light.fill);
        dark.push_back(row.dark.fill);
    }
    // Tritanopic sight comes last: there the fills that were chosen first are closer to one another.
    constexpr std::size_t withoutTritanopic = 3;
    EXPECT_GE(test::smallestDistance(light, withoutTritanopic), 0.092);
    EXPECT_GE(test::smallestDistance(dark, withoutTritanopic), 0.082);
    EXPECT_GE(test::smallestDistance(light), 0.075);
    EXPECT_GE(test::smallestDistance(dark), 0.067);
}

TEST(ContentTotals, AddUpAndTellTheHeaviestExtensions) {
    TreeBuilder builder;
    const auto src = builder.folder(0, "src");
    builder.file(src, "main.CPP", 30);
    builder.file(src, "util.cpp", 20);
    builder.file(src, "Makefile", 7);
    const auto app = builder.folder(0, "Tool.app", NodeFlags::package);
    builder.file(builder.folder(app, "Resources"), "intro.mp4", 3);
    const auto gone = builder.folder(0, "gone");
    builder.file(builder.folder(gone, "deeper"), "old.cpp", 4000);
    for (int i = 0; i < 30; ++i)
        builder.file(0, "x.ext" + std::to_string(i) + "z", 1);
    auto tree = builder.build();
    tree.remove(std::vector{gone});
    const auto totals = ContentTotals::of(tree, std::vector{src});
    const auto of = [&](const KindTotals& kinds, ContentKind kind) {
        return kinds.at(static_cast<std::size_t>(kind));
    };
    EXPECT_EQ(of(totals.kinds, ContentKind::sourceCode), 50)
        << "what is below a detached folder is gone with it";
    EXPECT_EQ(of(totals.kinds, ContentKind::video), 0) << "the film in the package is part of an app";
    EXPECT_EQ(of(totals.kinds, ContentKind::application), 3);
    EXPECT_EQ(std::accumulate(totals.kinds.begin(), totals.kinds.end(), std::uint64_t{0}), tree.allocated(0));
    EXPECT_EQ(totals.kinds, kindTotals(tree, 0));
    ASSERT_EQ(totals.folders.size(), 1U);
    EXPECT_EQ(totals.folders[0], kindTotals(tree, src));
    EXPECT_EQ(mainKind(totals.folders[0]), ContentKind::sourceCode);

    ASSERT_EQ(totals.extensions.size(), ContentTotals::mostExtensions);
    EXPECT_EQ(totals.extensions[0], (ExtensionTotal{.extension = "cpp", .bytes = 50, .count = 2}));
    EXPECT_EQ(totals.extensions[1], (ExtensionTotal{.extension = "app", .bytes = 3, .count = 1}));
    EXPECT_EQ(totals.extensions[2].extension, "ext0z") << "equal ones by name";
    EXPECT_EQ(extensionBytes(tree, 0, "cpp"), 50);
    EXPECT_EQ(extensionBytes(tree, app, "mp4"), 0);
}

} // namespace
} // namespace orbel
