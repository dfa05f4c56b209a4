#include "Journal/JournalLine.h"
#include "Journal/JournalReading.h"
#include "Support/JournalScene.h"
#include "Util/FileDescriptor.h"

#include <gtest/gtest.h>

#include <fcntl.h>

namespace orbel {
namespace {

using test::idsOf;
using test::JournalScene;
using test::putBackEntry;
using test::skippedEntry;
using test::titlesOf;
using test::trashedEntry;
using Result = JournalEntry::Result;
using Titles = std::vector<std::string>;

std::string lineOf(const JournalEntry& entry) {
    return journalLine(entry).value() + "\n";
}

/// The journal of these entries.
void write(const JournalScene& scene, const std::vector<JournalEntry>& entries) {
    std::string content;
    for (const auto& entry : entries)
        content += lineOf(entry);
    scene.write(content);
}

TEST(JournalReading, AMissingJournalIsEmpty) {
    const JournalScene scene;
    EXPECT_TRUE(scene.store.entries().empty());
    EXPECT_TRUE(scene.store.restorable().empty());
    EXPECT_TRUE(scene.store.read());
    EXPECT_FALSE(test::exists(scene.home.path("data"))) << "reading makes nothing";
}

TEST(JournalReading, UnreadableLinesAreLeftOutAlone) {
    using namespace std::string_literals;
    const JournalScene scene;
    const auto good = lineOf(trashedEntry("good"));
    auto withoutVersion = good;
    withoutVersion.replace(withoutVersion.find("appVersion"), 10, "appversion");
    for (const auto& bad : {"\n"s, "\n\n\n"s, "garbage\n"s, "{}\n"s, "\0\0\0\n"s, "\xFF\n"s, withoutVersion,
                            good.substr(0, 100) + "\n"}) {
        scene.write(good + bad + good);
        EXPECT_EQ(titlesOf(scene.store.entries()), (Titles{"good", "good"})) << bad;
    }
    scene.write("\n");
    EXPECT_TRUE(scene.store.entries().empty());
}

TEST(JournalReading, AJournalCutAtAnyByteKeepsTheLinesBefore) {
    const JournalScene scene;
    const auto first = lineOf(trashedEntry("first"));
    const auto second = lineOf(trashedEntry("second"));
    for (std::size_t length = 0; length <= first.size() + second.size(); ++length) {
        const auto text = (first + second).substr(0, length);
        // The line is whole as soon as its last brace is there.
        const std::size_t expected =
            (length + 1 >= first.size()) + (length + 1 >= first.size() + second.size());
        ASSERT_EQ(entriesIn(text).size(), expected) << length;
        ASSERT_EQ(entriesIn(text + std::string(5000, '\0')).size(),
                  std::size_t{length >= first.size()} + (length >= first.size() + second.size()))
            << "zeros in place of the rest after " << length;
    }
}

TEST(JournalReading, EveryLineIsReadOnceWhereverThePiecesOfAFileEnd) {
    const JournalScene scene;
    std::vector<JournalEntry> entries;
    std::string content;
    for (const std::size_t length : {1, 2000, 10, 10, 10, 1, 5000, 1, 1}) {
        entries.push_back(skippedEntry(std::string(length, 'x')));
        content += lineOf(entries.back()) + (length == 2000 ? "\n\n\n" : "");
    }
    for (const bool hasLastLineFeed : {true, false}) {
        scene.write(hasLastLineFeed ? content : content.substr(0, content.size() - 1));
        const auto read = [&](std::uint64_t length, std::uint64_t pieceBytes) {
            return readEntries(JournalLines(FileDescriptor(::open(scene.path.c_str(), O_RDONLY)), length,
                                            scene.path, pieceBytes));
        };
        // All sizes around that of a short line make the pieces end before, at and behind line feeds.
        std::vector<std::uint64_t> pieceSizes{16, content.size() - 1, content.size(), 1024 * 1024};
        for (auto size = lineOf(entries[2]).size() - 20; size < lineOf(entries[2]).size() + 20; ++size)
            pieceSizes.push_back(size);
        for (const auto size : pieceSizes)
            EXPECT_TRUE(read(content.size(), size) == entries) << "pieces of " << size;
        EXPECT_EQ(read(lineOf(entries[0]).size() + 9, 64)->size(), 1u)
            << "what is behind the given length is being written just now";
    }
    EXPECT_FALSE(readEntries(JournalLines(FileDescriptor(), 10, "nowhere"))) << "nothing is open";
}

TEST(JournalReading, SinceTakesTheGivenMomentIn) {
    const JournalScene scene;
    auto before = trashedEntry("before");
    before.time -= std::chrono::seconds(1);
    auto after = trashedEntry("after");
    after.time += std::chrono::seconds(1);
    write(scene, {after, before, trashedEntry("at")});
    EXPECT_EQ(titlesOf(scene.store.entries(trashedEntry().time)), (Titles{"after", "at"}));
}

TEST(JournalReading, RestorableIsWhatWasMovedAndIsNotBack) {
    const JournalScene scene;
    const auto failed = trashedEntry("failed to come back");
    const auto back = trashedEntry("back");
    const auto still = trashedEntry("still there");
    const auto stranger = putBackEntry(trashedEntry("stranger"), Result::restored);
    auto nameless = putBackEntry(still, Result::restored);
    nameless.refersTo.reset();
    write(scene, {putBackEntry(back, Result::restored), skippedEntry(), failed, back,
                  putBackEntry(failed, Result::restoreFailed), stranger, nameless, still});
    EXPECT_EQ(idsOf(scene.store.restorable()), (std::vector{failed.id, still.id}));
}

TEST(JournalReading, AFolderInItsPlaceIsAnErrorAndNoEntries) {
    const JournalScene scene;
    scene.home.folder("data/journal.jsonl");
    EXPECT_FALSE(scene.store.read());
    EXPECT_TRUE(scene.store.entries().empty());
}

} // namespace
} // namespace orbel
