#include "Growth/SummaryJson.h"

#include "Util/JsonText.h"
#include "Util/PathText.h"
#include "Util/StrictJson.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <string_view>
#include <unordered_map>

namespace orbel {

using nlohmann::json;

namespace {

constexpr std::uint64_t formatVersion = 1;

/// The folders with each one's parent found; absent when they are no tree in the order that is promised.
std::optional<std::vector<ScanSummary::Folder>> foldersIn(const json& rows) {
    if (!rows.is_array() || rows.empty() || rows.size() > ScanSummary::mostFolders)
        return std::nullopt;
    std::vector<ScanSummary::Folder> folders;
    folders.reserve(rows.size()); // the map below refers to the paths in it
    std::unordered_map<std::string_view, std::size_t> places;
    std::vector<std::uint64_t> notYetTaken; // of each folder: bytes that no folder in it has claimed
    for (const auto& row : rows) {
        if (!row.is_array() || row.size() != 2 || !row[0].is_string() || !row[1].is_number_unsigned())
            return std::nullopt;
        folders.push_back(
            {.path = row[0].get<std::string>(), .bytes = row[1].get<std::uint64_t>(), .parent = 0});
        auto& folder = folders.back();
        const std::string_view path = folder.path;
        if (folders.size() == 1) {
            if (!path.empty())
                return std::nullopt;
        } else {
            const auto slash = path.rfind('/');
            const auto above = slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
            const auto parent = places.find(above);
            if (slash == 0 || !isEntryName(path.substr(slash + 1)) || parent == places.end()
                || folder.bytes > notYetTaken[parent->second])
                return std::nullopt;
            folder.parent = parent->second;
            notYetTaken[folder.parent] -= folder.bytes;
        }
        if (!places.emplace(path, places.size()).second)
            return std::nullopt;
        notYetTaken.push_back(folder.bytes);
    }
    return folders;
}

/// The texts of a list; none where it is missing. Another type throws, as does a list that is not ascending.
std::vector<std::string> textsAt(const json& object, const char* key) {
    std::vector<std::string> texts;
    const auto* const list = optionalAt(object, key);
    if (list == nullptr)
        return texts;
    if (!list->is_array())
        rejectMember(object, key);
    for (const auto& text : *list) {
        if (!text.is_string() || (!texts.empty() && text.get_ref<const std::string&>() <= texts.back()))
            rejectMember(object, key);
        texts.push_back(text.get<std::string>());
    }
    return texts;
}

} // namespace

std::string summaryText(const ScanSummary& summary) {
    json rows = json::array();
    for (const auto& folder : summary.folders)
        rows.push_back(json::array({folder.path, folder.bytes}));
    json file{{"version", formatVersion},
              {"root", summary.root},
              {"measuredAt", iso8601(summary.measuredAt)},
              {"completeFrom", summary.completeFrom},
              {"folders", std::move(rows)}};
    if (!summary.excludedFolders.empty())
        file["excludedFolders"] = summary.excludedFolders;
    if (!summary.excludedPatterns.empty())
        file["excludedPatterns"] = summary.excludedPatterns;
    return compactJson(file) + "\n";
}

std::optional<ScanSummary> summaryIn(std::string_view text) {
    const json parsed = json::parse(text, nullptr, false);
    if (!parsed.is_object())
        return std::nullopt;
    try {
        if (unsignedAt(parsed, "version") != formatVersion)
            return std::nullopt;
        auto folders = foldersIn(parsed.at("folders"));
        ScanSummary summary{.root = textAt(parsed, "root"),
                            .measuredAt = dateAt(parsed, "measuredAt"),
                            .completeFrom = unsignedAt(parsed, "completeFrom"),
                            .folders = {},
                            .excludedFolders = textsAt(parsed, "excludedFolders"),
                            .excludedPatterns = textsAt(parsed, "excludedPatterns")};
        if (!folders || !summary.root.starts_with('/'))
            return std::nullopt;
        summary.folders = std::move(*folders);
        return summary;
    } catch (const json::exception&) {
        return std::nullopt;
    }
}

} // namespace orbel
