#include "Delete/DeletionReportJson.h"

#include "Delete/DeletionReport.h"
#include "Util/StrictJson.h"

#include <nlohmann/json.hpp>

namespace orbel {

using nlohmann::json;

namespace {

json listOf(const std::vector<DeletionReport::Moved>& moved) {
    json list = json::array();
    for (const auto& item : moved) {
        list.push_back({{"title", item.title}, {"path", item.path}, {"bytes", item.bytes}});
        if (item.note)
            list.back()["note"] = *item.note;
    }
    return list;
}

json listOf(const std::vector<DeletionReport::Skipped>& skipped) {
    json list = json::array();
    for (const auto& item : skipped)
        list.push_back({{"title", item.title}, {"path", item.path}, {"reason", item.reason}});
    return list;
}

const json& arrayAt(const json& object, const char* key) {
    const auto& list = object.at(key);
    if (!list.is_array())
        rejectMember(object, key);
    return list;
}

} // namespace

void to_json(json& object, const DeletionReport& report) {
    object = {{"sessionID", report.sessionID},
              {"startedAt", iso8601(report.startedAt)},
              {"finishedAt", iso8601(report.finishedAt)},
              {"moved", listOf(report.moved)},
              {"skipped", listOf(report.skipped)},
              {"cancelled", report.cancelled},
              {"stoppedForMismatch", report.stoppedForMismatch},
              {"journalFailed", report.journalFailed},
              {"uncheckedProcesses", report.uncheckedProcesses}};
    if (report.journalFailure)
        object["journalFailure"] = *report.journalFailure;
}

void from_json(const json& object, DeletionReport& report) {
    report = {.sessionID = textAt(object, "sessionID"),
              .startedAt = dateAt(object, "startedAt"),
              .finishedAt = dateAt(object, "finishedAt"),
              .cancelled = booleanAt(object, "cancelled"),
              .stoppedForMismatch = booleanAt(object, "stoppedForMismatch"),
              .journalFailed = booleanAt(object, "journalFailed"),
              .uncheckedProcesses = signedAt(object, "uncheckedProcesses")};
    if (optionalAt(object, "journalFailure") != nullptr)
        report.journalFailure = textAt(object, "journalFailure");
    for (const auto& item : arrayAt(object, "moved")) {
        report.moved.push_back({.title = textAt(item, "title"),
                                .path = textAt(item, "path"),
                                .bytes = unsignedAt(item, "bytes")});
        if (optionalAt(item, "note") != nullptr)
            report.moved.back().note = textAt(item, "note");
    }
    for (const auto& item : arrayAt(object, "skipped"))
        report.skipped.push_back(
            {.title = textAt(item, "title"), .path = textAt(item, "path"), .reason = textAt(item, "reason")});
}

} // namespace orbel
