#include "Delete/DeletionReportJson.h"
#include "Export/ReportRenderer.h"
#include "Journal/JournalLine.h"
#include "Support/JournalScene.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace orbel {
namespace {

using nlohmann::json;
using test::skippedEntry;
using test::trashedEntry;

Date dateOf(const char* text) {
    return parseIso8601(text).value();
}

DeletionReport emptyReport() {
    return {.sessionID = "S",
            .startedAt = dateOf("2025-01-31T09:04:00Z"),
            .finishedAt = dateOf("2025-01-31T09:05:00Z")};
}

DeletionReport fullReport() {
    auto report = emptyReport();
    report.moved = {{.title = "a_b*c", .path = "/home/ann/a_b*c", .bytes = 1'234'567'890},
                    {.title = "linked", .path = "/home/ann/linked", .bytes = 0, .note = "Frees nothing"}};
    report.skipped = {{.title = "gone", .path = "/home/ann/gone", .reason = "Already gone"}};
    report.cancelled = report.stoppedForMismatch = report.journalFailed = true;
    report.uncheckedProcesses = 1;
    report.journalFailure = "/home/ann/journal.jsonl: No space left on device";
    return report;
}

TEST(ReportRenderer, AReportOfNothingHasBothSections) {
    EXPECT_EQ(ReportRenderer::markdown(emptyReport()), "# Ostrevo Vanto — Deletion report\n"
                                                       "\n"
                                                       "- Date: 2025-01-31T09:05:00Z\n"
                                                       "- Moved to Trash: 0 B (measured just now).\n"
                                                       "- Disk space returns when you empty the Trash.\n"
                                                       "\n"
                                                       "## Moved to Trash (0)\n"
                                                       "\n"
                                                       "_Nothing._\n"
                                                       "\n"
                                                       "## Skipped (0)\n"
                                                       "\n"
                                                       "_Nothing._\n");
}

TEST(ReportRenderer, AReportTellsEverything) {
    EXPECT_EQ(ReportRenderer::markdown(fullReport()),
              "# Ostrevo Vanto — Deletion report\n"
              "\n"
              "- Date: 2025-01-31T09:05:00Z\n"
              "- Moved to Trash: 1.2 GB (measured just now).\n"
              "- Disk space returns when you empty the Trash.\n"
              "- Cancelled before all items ran.\n"
              "- Stopped: an item in the Trash did not match the approved item.\n"
              "- Stopped: the journal could not be written.\n"
              "- Journal: /home/ann/journal.jsonl: No space left on device\n"
              "- Could not check 1 system processes for open files.\n"
              "\n"
              "## Moved to Trash (2)\n"
              "\n"
              "- a_b*c — 1.2 GB  \n"
              "  `/home/ann/a_b*c`\n"
              "- linked — 0 B (Frees nothing)  \n"
              "  `/home/ann/linked`\n"
              "\n"
              "## Skipped (1)\n"
              "\n"
              "- gone — Already gone  \n"
              "  `/home/ann/gone`\n");
}

TEST(ReportRenderer, TheJournalIsGroupedBySessionOldestFirst) {
    EXPECT_EQ(ReportRenderer::markdown(std::vector<JournalEntry>{}),
              "# Ostrevo Vanto — Journal\n\n_No entries._\n");

    auto late = trashedEntry("late");
    late.sessionID = "second";
    late.time = dateOf("2025-02-02T00:00:00Z");
    late.reason.reset();
    auto early = trashedEntry("early");
    early.sessionID = "first";
    early.reason.reset();
    auto restored = test::putBackEntry(late, JournalEntry::Result::restored);
    restored.time = dateOf("2025-01-01T00:00:00Z"); // a clock set back does not move it out of its session
    restored.bytes.reset();
    auto skipped = skippedEntry("skipped");
    skipped.sessionID = "first";
    EXPECT_EQ(ReportRenderer::markdown(std::vector{late, early, restored, skipped}),
              "# Ostrevo Vanto — Journal\n"
              "\n"
              "## 2025-01-31T09:05:00Z\n"
              "\n"
              "- **trashed** early — 1 MB  \n"
              "  `/home/ann/early`\n"
              "- **skipped** skipped — Already gone  \n"
              "  `/home/ann/skipped`\n"
              "\n"
              "## 2025-02-02T00:00:00Z\n"
              "\n"
              "- **trashed** late — 1 MB  \n"
              "  `/home/ann/late`\n"
              "- **restored** late  \n"
              "  `/home/ann/late`\n"
              "\n");
}

TEST(ReportRenderer, JsonReadsBackAsWhatWasWritten) {
    for (const auto& report : {emptyReport(), fullReport()}) {
        const auto text = ReportRenderer::json(report);
        EXPECT_EQ(json::parse(text).get<DeletionReport>(), report) << text;
    }
    EXPECT_EQ(json::parse(ReportRenderer::json(fullReport()))["startedAt"], "2025-01-31T09:04:00Z");
    EXPECT_FALSE(json::parse(ReportRenderer::json(fullReport()))["moved"][0].contains("note"));

    const std::vector entries{trashedEntry(), skippedEntry()};
    const auto list = json::parse(ReportRenderer::json(entries));
    ASSERT_EQ(list.size(), 2u);
    for (std::size_t i = 0; i < entries.size(); ++i)
        EXPECT_EQ(entryInLine(list[i].dump()), entries[i]);
    EXPECT_EQ(ReportRenderer::json(std::vector<JournalEntry>{}), "[]");
}

TEST(ReportRenderer, EveryKeyOfAReportIsRequiredAndOfItsType) {
    const json whole = fullReport();
    ASSERT_EQ(whole.size(), 10u);
    EXPECT_FALSE(json(emptyReport()).contains("journalFailure"));
    for (const auto& [key, value] : whole.items()) {
        auto damaged = whole;
        damaged.erase(key);
        if (key != "journalFailure") {
            EXPECT_THROW(damaged.get<DeletionReport>(), json::exception) << "without " << key;
        }
        damaged[key] = value.is_object() ? json(1) : json::object();
        EXPECT_THROW(damaged.get<DeletionReport>(), json::exception) << key << " of another type";
    }
    for (const char* list : {"moved", "skipped"})
        for (const auto& [key, value] : whole[list][0].items()) {
            auto damaged = whole;
            damaged[list][0].erase(key);
            EXPECT_THROW(damaged.get<DeletionReport>(), json::exception) << list << " without " << key;
        }
}

TEST(ReportRenderer, ANameThatIsNoTextIsExportedWithReplacements) {
    auto report = emptyReport();
    report.skipped = {{.title = "\xFF", .path = "/home/ann/\xFF", .reason = "Its name is not valid text"}};
    EXPECT_NE(ReportRenderer::markdown(report).find("  `/home/ann/\xEF\xBF\xBD`\n"), std::string::npos);
    EXPECT_EQ(json::parse(ReportRenderer::json(report))["skipped"][0]["title"], "\xEF\xBF\xBD");
}

TEST(DeletionReport, SumsWhatWasMovedModulo64Bits) {
    auto report = emptyReport();
    EXPECT_EQ(report.movedBytes(), 0u);
    report.moved = {{.title = "", .path = "", .bytes = ~std::uint64_t{0}},
                    {.title = "", .path = "", .bytes = 3}};
    EXPECT_EQ(report.movedBytes(), 2u);
}

} // namespace
} // namespace orbel
