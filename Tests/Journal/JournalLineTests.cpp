#include "Journal/JournalJson.h"
#include "Journal/JournalLine.h"
#include "Journal/MoveIntent.h"
#include "Support/JournalScene.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <set>

namespace orbel {
namespace {

using nlohmann::json;
using test::skippedEntry;
using test::trashedEntry;

JournalEntry readBack(const JournalEntry& entry) {
    return entryInLine(journalLine(entry).value()).value();
}

TEST(JournalLine, IsWrittenByteForByteAsDocumented) {
    auto entry = trashedEntry();
    entry.id = "F81D4FAE-7DEC-41D0-A765-00A0C91E6BF6";
    EXPECT_EQ(journalLine(entry),
              R"({"appVersion":"1.2.3","approvedRealPath":"/home/ann/film.mp4","bytes":1234567,)"
              R"("id":"F81D4FAE-7DEC-41D0-A765-00A0C91E6BF6","mode":"trash","module":"largeOld",)"
              R"("note":"Frees nothing while other links exist",)"
              R"("originalParentIdentity":{"device":65024,"inode":131074,"isDirectory":true,"size":4096},)"
              R"("originalParentRealPath":"/home/ann",)"
              R"("originalPath":"/home/ann/film.mp4","reason":"none",)"
              R"("refersTo":"C0FFEE00-0000-4000-8000-000000000002","result":"trashed","root":"homeItem",)"
              R"("sessionID":"C0FFEE00-0000-4000-8000-000000000001","time":"2025-01-31T09:05:00Z",)"
              R"("title":"film.mp4","trashPath":"/home/ann/.local/share/Trash/files/film.mp4",)"
              R"("trashedIdentity":{"device":65024,"inode":18446744073709551615,"isDirectory":false,)"
              R"("persistent":{"birthNanos":1738314300123456789,)"
              R"("volume":"8D4BE3A6-55AB-4ABE-8BEB-3D6F7F9EAE6F/256"},"size":1234567}})");
    auto skipped = skippedEntry();
    skipped.id = "1";
    skipped.appVersion = "dev";
    EXPECT_EQ(
        journalLine(skipped),
        R"({"appVersion":"dev","id":"1","mode":"trash","module":"map","originalPath":"/home/ann/film.mp4",)"
        R"("reason":"Already gone","result":"skipped","root":"homeItem",)"
        R"("sessionID":"C0FFEE00-0000-4000-8000-000000000001","time":"2025-01-31T09:06:00Z",)"
        R"("title":"film.mp4"})");
}

TEST(JournalLine, ReadsBackEqualExceptForFractionsOfASecond) {
    auto entry = trashedEntry("a \"quoted\" \\ name\nwith\ttabs\x01 and \xE6\x9C\xA8 \xF0\x9F\x8C\xB3");
    EXPECT_EQ(readBack(entry), entry);
    entry.mode = "whatever the line holds";
    EXPECT_EQ(readBack(entry).mode, entry.mode);
    const auto whole = entry.time;
    entry.time += std::chrono::microseconds(999'999);
    EXPECT_EQ(readBack(entry).time, whole);
    EXPECT_EQ(readBack(skippedEntry()).bytes, std::nullopt);
    for (const auto module : allDeletionModules) {
        entry.module = module;
        EXPECT_EQ(readBack(entry).module, module);
    }
}

TEST(JournalLine, EveryRequiredMemberMustBeThereAndOfItsType) {
    const auto entry = trashedEntry();
    const json whole = entry;
    const std::set<std::string> optional{"originalParentRealPath",
                                         "originalParentIdentity",
                                         "approvedRealPath",
                                         "bytes",
                                         "trashPath",
                                         "trashedIdentity",
                                         "reason",
                                         "note",
                                         "refersTo"};
    ASSERT_EQ(whole.size(), 19u);
    for (const auto& [key, value] : whole.items()) {
        auto damaged = whole;
        damaged.erase(key);
        EXPECT_EQ(entryInLine(damaged.dump()).has_value(), optional.contains(key)) << "without " << key;
        damaged[key] = nullptr;
        EXPECT_EQ(entryInLine(damaged.dump()).has_value(), optional.contains(key)) << key << " null";
        for (const auto& other :
             {json(true), json(-1), json(1.5), json::array(), json::object(), json::array({1})}) {
            damaged[key] = other;
            EXPECT_FALSE(entryInLine(damaged.dump())) << key << " as " << other;
        }
        damaged[key] = value.is_string() ? json(1) : json("1");
        EXPECT_FALSE(entryInLine(damaged.dump())) << key << " of another type";
    }
    for (const char* key : {"module", "root", "result"}) {
        auto damaged = whole;
        for (const char* unknown : {"", "Map", "homeitem", "trashed "}) {
            damaged[key] = unknown;
            EXPECT_FALSE(entryInLine(damaged.dump())) << key << " as " << unknown;
        }
    }
    auto damaged = whole;
    damaged["time"] = "2025-01-31T09:05:00.5Z";
    EXPECT_FALSE(entryInLine(damaged.dump()));
}

TEST(JournalLine, AnIdentityMustBeWhole) {
    const json whole = trashedEntry();
    for (const auto& [key, value] : whole["trashedIdentity"].items()) {
        auto damaged = whole;
        damaged["trashedIdentity"].erase(key);
        EXPECT_EQ(entryInLine(damaged.dump()).has_value(), key == "persistent") << "without " << key;
        damaged["trashedIdentity"][key] = "text";
        EXPECT_FALSE(entryInLine(damaged.dump())) << key << " of another type";
    }
    for (const char* key : {"birthNanos", "volume"}) {
        auto damaged = whole;
        damaged["trashedIdentity"]["persistent"].erase(key);
        EXPECT_FALSE(entryInLine(damaged.dump())) << "without " << key;
    }
    auto born = whole;
    auto& birth = born["trashedIdentity"]["persistent"]["birthNanos"];
    birth = -5;
    EXPECT_EQ(entryInLine(born.dump())->trashedIdentity->persistent->birthNanos, -5) << "before 1970";
    birth = std::uint64_t{1} << 63;
    EXPECT_FALSE(entryInLine(born.dump()));
    auto large = whole;
    large["trashedIdentity"]["size"] = 1e30;
    EXPECT_FALSE(entryInLine(large.dump())) << "beyond 64 bits";
    // The second object of that name must not be completed by the first.
    const std::string twice = R"({"trashedIdentity":{"device":1,"inode":1,"isDirectory":true,"size":1},)"
                              R"("trashedIdentity":{"device":1,"inode":1,"isDirectory":true},)";
    EXPECT_FALSE(entryInLine(twice + journalLine(skippedEntry())->substr(1)));
}

TEST(JournalLine, TakesAnyOrderAndPassesOverWhatItDoesNotKnow) {
    const auto entry = trashedEntry();
    const auto line = journalLine(entry).value();
    const auto with = [&](const std::string& more) { return "{" + more + "," + line.substr(1); };
    EXPECT_EQ(entryInLine(with(R"("zone":{"a":[{"id":1},[null,1.5,-1]],"id":{}})")), entry);
    EXPECT_EQ(entryInLine(with(R"("device":"this one belongs elsewhere")")), entry);
    EXPECT_EQ(entryInLine(with(R"("zone":)" + std::string(10'000, '[') + std::string(10'000, ']'))), entry);
    EXPECT_EQ(entryInLine(" " + line + "\r"), entry);
    auto inside = line;
    inside.insert(inside.find("\"inode\""), R"("id":"x","title":{"inode":"y"},)");
    EXPECT_EQ(entryInLine(inside), entry);
}

TEST(JournalLine, AnythingElseIsNoEntry) {
    using namespace std::string_literals;
    const auto line = journalLine(trashedEntry()).value();
    for (const auto& text :
         {""s, " "s, "null"s, "1"s, "\"x\""s, "[]"s, "{}"s, "[" + line + "]", line + line, line + "x",
          "\0"s + line, line + "\0"s, std::string(4096, '\0'), line.substr(1), std::string(100'000, '{'),
          std::string(100'000, '['), "{\"id\":" + std::string(100'000, '[')})
        EXPECT_FALSE(entryInLine(text)) << text.substr(0, 50);
    for (std::size_t length = 0; length < line.size(); ++length)
        EXPECT_FALSE(entryInLine(line.substr(0, length))) << length;
    for (const char* bad : {"\xFF", "\xC3", "\xC0\xAF", "\xED\xA0\x80", "\xF5\x80\x80\x80"}) {
        auto damaged = line;
        damaged.insert(damaged.find("film"), bad);
        EXPECT_FALSE(entryInLine(damaged)) << "bad UTF-8";
    }
}

TEST(JournalLine, PathsThatAreNoTextAreNeverWrittenForAMove) {
    auto entry = trashedEntry("\xFF");
    EXPECT_FALSE(journalLine(entry));
    entry.result = JournalEntry::Result::restored;
    EXPECT_FALSE(journalLine(entry));
    entry.result = JournalEntry::Result::skipped;
    EXPECT_EQ(readBack(entry).title, "\xEF\xBF\xBD") << "an item that was passed over is still told of";
    auto moved = trashedEntry();
    moved.title = "\xFF";
    EXPECT_EQ(readBack(moved).originalPath, moved.originalPath);
}

TEST(MoveIntent, ReadsBackEqualAndOnlyWhenWhole) {
    const test::JournalScene scene;
    const auto intent = scene.beginToTrash("film.mp4");
    const json whole = intent;
    EXPECT_EQ(whole.get<MoveIntent>(), intent);
    auto bare = intent;
    bare.kind = MoveIntent::Kind::putBack;
    bare.persistent.reset();
    bare.infoFile.reset();
    EXPECT_EQ(json(bare).get<MoveIntent>(), bare);
    for (const auto& [key, value] : whole.items()) {
        auto damaged = whole;
        damaged.erase(key);
        if (key == "persistent" || key == "infoFile")
            EXPECT_NO_THROW(damaged.get<MoveIntent>()) << key;
        else
            EXPECT_THROW(damaged.get<MoveIntent>(), json::exception) << "without " << key;
        damaged[key] = 1;
        EXPECT_THROW(damaged.get<MoveIntent>(), json::exception) << key << " of another type";
    }
}

} // namespace
} // namespace orbel
