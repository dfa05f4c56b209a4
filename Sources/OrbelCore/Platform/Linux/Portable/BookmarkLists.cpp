#include "Platform/Linux/Portable/BookmarkLists.h"

#include "Platform/Linux/Portable/Xbel.h"
#include "Util/FileUrl.h"
#include "Util/PathText.h"
#include "Util/ReadFile.h"

#include <algorithm>
#include <cstdint>
#include <unordered_set>
#include <utility>

namespace orbel::platform {

namespace {

constexpr std::uint64_t longestList = 1 << 20;

/// The first of those that are alike, and none that the system would take for another.
std::vector<std::string> usable(std::vector<std::string> targets) {
    std::unordered_set<std::string> seen;
    std::erase_if(targets, [&](const std::string& target) {
        return target.find('\0') != std::string::npos || !seen.insert(target).second;
    });
    return targets;
}

} // namespace

std::vector<std::string> bookmarkLines(std::string_view text) {
    std::vector<std::string> targets;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        const auto line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (auto path = pathOfFileUrl(line.substr(0, std::min(line.find_first_of(" \r"), line.size()))))
            targets.push_back(*std::move(path));
    }
    return usable(std::move(targets));
}

std::vector<Bookmark> bookmarksOf(const std::string& home, std::string_view configHome,
                                  std::string_view dataHome) {
    const auto folder = [&](std::string_view given, std::string_view usual) {
        return given.starts_with('/') ? std::string(given) : joinedPath(home, usual);
    };
    const auto lines = joinedPath(folder(configHome, ".config"), "gtk-3.0/bookmarks");
    const auto places = joinedPath(folder(dataHome, ".local/share"), "user-places.xbel");
    std::vector<Bookmark> bookmarks;
    for (auto& target : bookmarkLines(readRegularFile(lines, longestList).value_or("")))
        bookmarks.push_back({.list = lines, .target = std::move(target)});
    std::vector<std::string> targets;
    for (auto& bookmark : localBookmarksIn(readRegularFile(places, longestList).value_or("")))
        targets.push_back(std::move(bookmark.path));
    for (auto& target : usable(std::move(targets)))
        bookmarks.push_back({.list = places, .target = std::move(target)});
    return bookmarks;
}

} // namespace orbel::platform
