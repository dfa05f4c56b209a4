#include "Platform/Linux/Portable/GitIndexList.h"

#include "Util/ParseNumber.h"

#include <optional>

namespace orbel::platform {

namespace {

/// Takes what comes before `mark` off the text, and the mark with it; absent when there is no such mark.
std::optional<std::string_view> takeUntil(std::string_view& text, std::string_view mark) {
    const auto end = text.find(mark);
    if (end == std::string_view::npos)
        return std::nullopt;
    const auto taken = text.substr(0, end);
    text.remove_prefix(end + mark.size());
    return taken;
}

/// "H 100644 45b983… 0⇥path", a zero byte, then five lines about the file.
std::optional<GitIndexEntry> takeEntry(std::string_view& text) {
    const auto head = takeUntil(text, "\t");
    const auto path = takeUntil(text, std::string_view("\0", 1));
    if (!head || head->size() < 3 || !path || !takeUntil(text, "mtime: "))
        return std::nullopt;
    const auto seconds = takeUntil(text, ":");
    if (!seconds || !takeUntil(text, "size: "))
        return std::nullopt;
    const auto size = takeUntil(text, "\t");
    const auto modified = parseInteger(*seconds);
    const auto bytes = size ? parseInteger(*size) : std::nullopt;
    if (!modified || !bytes || !takeUntil(text, "\n"))
        return std::nullopt;
    return GitIndexEntry{.path = std::string(*path),
                         .modifiedSeconds = *modified,
                         .size = static_cast<std::uint32_t>(*bytes),
                         .isSubmodule = head->substr(2).starts_with("160000"),
                         .isSparse = head->starts_with('S')};
}

} // namespace

std::vector<GitIndexEntry> gitIndexEntries(std::string_view text) {
    std::vector<GitIndexEntry> entries;
    while (auto entry = takeEntry(text))
        entries.push_back(*std::move(entry));
    return entries;
}

} // namespace orbel::platform
