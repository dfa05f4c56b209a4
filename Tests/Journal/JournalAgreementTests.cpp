#include "Export/JournalExport.h"
#include "Export/ReportRenderer.h"
#include "Journal/JournalJson.h"
#include "Journal/JournalLine.h"
#include "Journal/RecordedIds.h"
#include "Journal/Restorable.h"
#include "Support/JournalScene.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <random>

#include <fcntl.h>

// The quick ways to read a journal against the plain one, on journals that nothing but chance has written.

namespace orbel {
namespace {

using Result = JournalEntry::Result;

class RandomJournal {
public:
    explicit RandomJournal(unsigned seed) : random_(seed) {}

    std::string content(int lines) {
        std::string content;
        for (int i = 0; i < lines; ++i)
            content += line() + (chance(20) ? "\n\n" : "\n");
        if (chance(2))
            content.resize(content.size() - below(content.size() / static_cast<std::size_t>(lines)));
        return content;
    }

    std::string id() { return "ID-" + std::to_string(below(20)) + (chance(10) ? "\"\\/\t" : ""); }

private:
    std::size_t below(std::size_t end) {
        return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_);
    }
    bool chance(std::size_t oneIn) { return below(oneIn) == 0; }

    std::string title() {
        static const std::vector<std::string> titles{"film.mp4",
                                                     R"(","result":"restored","refersTo":"ID-1)",
                                                     R"("id":"ID-2")",
                                                     R"(\u0069d)",
                                                     "\xE6\x9C\xA8 \xF0\x9F\x8C\xB3",
                                                     "tab\tline\nfeed",
                                                     "",
                                                     R"({"id":"ID-3"})"};
        return titles[below(titles.size())];
    }

    JournalEntry entry() {
        auto entry = test::trashedEntry(title());
        entry.id = id();
        entry.refersTo = chance(5) ? std::nullopt : std::optional(id());
        entry.result = static_cast<Result>(below(4));
        entry.sessionID = "S" + std::to_string(below(4));
        entry.time += std::chrono::seconds(below(5));
        return entry;
    }

    std::string line() {
        // Most lines are of the plain kind but for what one of the other oddities does to them.
        hasBlanks_ = chance(4);
        hasEscapes_ = chance(4);
        const nlohmann::json object = entry();
        std::vector<std::string> members;
        for (const auto& [name, value] : object.items())
            members.push_back(text(name) + blank() + ":" + blank() + text(value));
        // Twice, of the same or another type, or unknown.
        while (chance(3))
            members.push_back(text(chance(2) ? "id" : "refersTo") + ":" + text(id()));
        if (chance(5))
            members.emplace_back(oddMember());
        if (chance(2))
            std::ranges::shuffle(members, random_);
        std::string line = blank() + "{";
        for (const auto& member : members)
            line += (line.ends_with('{') ? "" : "," + blank()) + member;
        return damaged(line + blank() + "}");
    }

    std::string oddMember() {
        static const std::vector<std::string> members{R"("bytes":01)",
                                                      R"("bytes":-0)",
                                                      R"("bytes":1.0)",
                                                      R"("bytes":null)",
                                                      R"("id":null)",
                                                      R"("zone":{"id":"ID-4","result":"restored"})",
                                                      R"("zone":[{"id":"ID-5"}])",
                                                      R"("zone":{})",
                                                      R"("zone":1e999)",
                                                      R"("bytes":18446744073709551616)",
                                                      R"("result":"restored")",
                                                      R"("mode":"")"};
        return members[below(members.size())];
    }

    std::string text(const nlohmann::json& value) {
        auto text = value.dump();
        // Letters and digits as escapes now and then.
        if (hasEscapes_ && value.is_string() && chance(8) && text.size() > 3 && std::isalnum(text[1]) != 0) {
            std::array<char, 8> escape{};
            std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(text[1]));
            text.replace(1, 1, escape.data());
        }
        return text;
    }

    std::string blank() {
        return hasBlanks_ && chance(8) ? std::string(1 + below(2), " \t\r"[below(3)]) : "";
    }

    std::string damaged(std::string line) {
        if (!chance(5))
            return line;
        const auto at = below(line.size());
        switch (below(5)) {
        case 0:
            line.resize(at);
            break;
        case 1:
            line.insert(at, 1, static_cast<char>(below(256)));
            break;
        case 2:
            line[at] = static_cast<char>(below(256));
            break;
        case 3:
            line.insert(line.find("film") == std::string::npos ? at : line.find("film"),
                        chance(2) ? "\xC3" : "\xED\xA0\x80");
            break;
        default:
            line.erase(at, 1);
        }
        return line;
    }

    std::mt19937 random_;
    bool hasBlanks_ = false;
    bool hasEscapes_ = false;
};

/// All entries as the JSON library alone reads them.
std::vector<JournalEntry> entriesByLibrary(const std::string& content) {
    std::vector<JournalEntry> entries;
    forEachLine(content, [&](std::string_view line) {
        auto entry = entryByLibrary(line);
        EXPECT_EQ(entryInLine(line), entry) << line;
        if (entry)
            entries.push_back(*std::move(entry));
    });
    return entries;
}

std::unordered_set<std::string> restoredOf(const std::vector<JournalEntry>& entries) {
    std::unordered_set<std::string> restored;
    for (const auto& entry : entries)
        if (entry.result == Result::restored && entry.refersTo)
            restored.insert(*entry.refersTo);
    return restored;
}

std::string exported(decltype(exportJson)& exportTo, const JournalStore& store, std::optional<Date> since) {
    std::string text;
    EXPECT_TRUE(exportTo(store, since, [&](std::string_view part) { text += part; }));
    return text;
}

class JournalAgreement : public testing::TestWithParam<unsigned> {};

TEST_P(JournalAgreement, TheQuickWaysFindWhatThePlainOneReads) {
    RandomJournal random(GetParam());
    const test::JournalScene scene;
    const auto content = random.content(200);
    scene.write(content);
    const auto entries = entriesByLibrary(content);
    const auto restored = restoredOf(entries);
    EXPECT_GT(entries.size(), 50u);
    EXPECT_EQ(scene.store.entries(), entries);

    const std::vector<std::string> sought{random.id(), random.id(), "ID-1", "ID-2", "ID-3", "unknown"};
    RecordedIds expected;
    for (const auto& id : sought) {
        if (const auto first = std::ranges::find(entries, id, &JournalEntry::id); first != entries.end())
            expected.outcomes.emplace(id, first->result);
        if (restored.contains(id))
            expected.restored.insert(id);
    }
    auto restorable = entries;
    std::erase_if(restorable, [&](const JournalEntry& entry) {
        return entry.result != Result::trashed || restored.contains(entry.id);
    });
    EXPECT_EQ(scene.store.restorable(), restorable);

    for (const std::uint64_t pieceBytes : {700, 5000, 1 << 20}) {
        const auto open = [&] {
            return JournalLines(FileDescriptor(::open(scene.path.c_str(), O_RDONLY)), content.size(),
                                scene.path, pieceBytes);
        };
        EXPECT_EQ(recordedIds(open(), sought, sought), expected);
        EXPECT_EQ(restoredIds(open()), restored);
        const auto index = RestorableIndex::of(open()).value();
        auto newestFirst = restorable;
        std::ranges::reverse(newestFirst);
        std::ranges::stable_sort(newestFirst, std::ranges::greater(), &JournalEntry::time);
        EXPECT_EQ(index.entriesAt(index.newestFirst()), newestFirst);
        if (newestFirst.empty())
            continue;
        auto session = restorable;
        std::erase_if(session,
                      [&](const JournalEntry& entry) { return entry.sessionID != newestFirst[0].sessionID; });
        std::ranges::reverse(session);
        EXPECT_EQ(index.entriesOf(index.newestFirst()[0].session), session);
    }
}

TEST_P(JournalAgreement, TheExportsAreWhatTheRendererMakesOfAllEntries) {
    RandomJournal random(GetParam() + 1000);
    const test::JournalScene scene;
    const auto content = random.content(100);
    scene.write(content);
    const auto first = test::trashedEntry().time;
    for (const auto& since : {std::optional<Date>(), std::optional(first + std::chrono::seconds(3)),
                              std::optional(first + std::chrono::seconds(100))}) {
        auto entries = entriesByLibrary(content);
        std::erase_if(entries, [&](const JournalEntry& entry) { return since && entry.time < *since; });
        EXPECT_EQ(exported(exportMarkdown, scene.store, since), ReportRenderer::markdown(entries));
        EXPECT_EQ(exported(exportJson, scene.store, since), nlohmann::json(entries).dump(2));
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, JournalAgreement, testing::Range(0U, 20U));

TEST(JournalExport, LongSessionsAndManyShortOnesKeepTheirOrder) {
    // More than one piece of the file, sessions that go on after others, and one that is in parts itself.
    std::vector<JournalEntry> entries;
    std::string content;
    for (int i = 0; i < 6000; ++i) {
        entries.push_back(test::skippedEntry(std::to_string(i) + std::string(300, 'x')));
        entries.back().sessionID = i % 3000 < 2500 ? "long" : "short " + std::to_string(i % 700);
        entries.back().time -= std::chrono::seconds(i % 11);
        content += journalLine(entries.back()).value() + "\n";
    }
    const test::JournalScene scene;
    scene.write(content);
    EXPECT_TRUE(exported(exportMarkdown, scene.store, std::nullopt) == ReportRenderer::markdown(entries));
    EXPECT_TRUE(exported(exportJson, scene.store, std::nullopt) == ReportRenderer::json(entries));
    scene.home.folder("other/journal.jsonl");
    const JournalStore folder(scene.home.path("other/journal.jsonl"));
    EXPECT_FALSE(exportMarkdown(folder, std::nullopt, [](std::string_view) { FAIL(); }));
    EXPECT_FALSE(exportJson(folder, std::nullopt, [](std::string_view) { FAIL(); }));
}

} // namespace
} // namespace orbel
