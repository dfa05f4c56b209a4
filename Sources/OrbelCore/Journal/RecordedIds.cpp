#include "Journal/RecordedIds.h"

#include "Journal/JournalLine.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace orbel {

namespace {

using Ids = std::unordered_set<std::string_view>;

std::optional<std::string> restoredBy(const JournalEntry& entry) {
    return entry.result == JournalEntry::Result::restored ? entry.refersTo : std::nullopt;
}

std::size_t offsetOf(std::string_view text, std::string_view wanted, std::size_t from) {
    const auto* const found = ::memmem(text.data() + from, text.size() - from, wanted.data(), wanted.size());
    return found == nullptr ? std::string_view::npos
                            : static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
}

/// The lines that may be entries with a value that is sought: no other line can be. JSON has only one way to
/// write a name or a value without a backslash, and the escapes with one letter write none of a name's.
class Candidates {
public:
    explicit Candidates(std::string_view lines) : lines_(lines) {}

    /// Lines with an escape that may stand for any character, within a name too.
    void addEscaped() {
        for (auto at = lines_.find('\\'); at != std::string_view::npos; at = lines_.find('\\', at))
            at = lines_.substr(at + 1).starts_with('u') ? add(at) : at + 1;
    }

    /// Lines in which `name`, in quotes, may have one of these values.
    void addNamed(std::string_view name, const Ids& values) {
        if (values.empty())
            return;
        for (auto at = offsetOf(lines_, name, 0); at != std::string_view::npos;
             at = offsetOf(lines_, name, at))
            at = mayBeIn(values, lines_.substr(at + name.size())) ? add(at) : at + name.size();
    }

    /// In file order, each once.
    std::vector<std::string_view> take() {
        std::ranges::sort(found_, {}, &std::string_view::data);
        const auto doubled = std::ranges::unique(found_, {}, &std::string_view::data);
        found_.erase(doubled.begin(), doubled.end());
        return std::move(found_);
    }

private:
    /// `rest` is what follows a name.
    static bool mayBeIn(const Ids& values, std::string_view rest) {
        for (const char mark : {':', '"'}) {
            rest.remove_prefix(std::min(rest.find_first_not_of(" \t\r"), rest.size()));
            if (!rest.starts_with(mark))
                return false;
            rest.remove_prefix(1);
        }
        const auto end =
            std::ranges::find_if(rest, [](char byte) { return byte == '"' || byte == '\\' || byte == '\n'; });
        if (end == rest.end() || *end == '\n')
            return false;
        return *end == '\\' || values.contains({rest.begin(), end});
    }

    /// Adds the line that has this byte, and gives its end.
    std::size_t add(std::size_t at) {
        const auto before = lines_.rfind('\n', at);
        const auto begin = before == std::string_view::npos ? 0 : before + 1;
        const auto end = std::min(lines_.find('\n', at), lines_.size());
        found_.push_back(lines_.substr(begin, end - begin));
        return end;
    }

    std::string_view lines_;
    std::vector<std::string_view> found_;
};

/// What one piece of the file has of the ids sought.
RecordedIds idsIn(std::string_view lines, const Ids& ids, const Ids& referredTo) {
    Candidates candidates(lines);
    candidates.addEscaped();
    candidates.addNamed("\"id\"", ids);
    candidates.addNamed("\"refersTo\"", referredTo);
    RecordedIds found;
    for (const auto line : candidates.take()) {
        auto entry = entryInLine(line);
        if (!entry)
            continue;
        if (auto restored = restoredBy(*entry); restored && referredTo.contains(*restored))
            found.restored.insert(*std::move(restored));
        if (ids.contains(entry->id))
            found.outcomes.emplace(std::move(entry->id), entry->result);
    }
    return found;
}

/// What the `restored` lines of one piece of the file refer to.
std::vector<std::string> restoredIn(std::string_view lines) {
    Candidates candidates(lines);
    candidates.addEscaped();
    candidates.addNamed("\"result\"", {rawValue(JournalEntry::Result::restored)});
    std::vector<std::string> found;
    for (const auto line : candidates.take())
        if (const auto entry = entryInLine(line))
            if (auto restored = restoredBy(*entry))
                found.push_back(*std::move(restored));
    return found;
}

} // namespace

std::expected<RecordedIds, JournalError> recordedIds(const JournalLines& lines,
                                                     std::span<const std::string> ids,
                                                     std::span<const std::string> referredTo) {
    const Ids wantedIds(ids.begin(), ids.end());
    const Ids wantedReferred(referredTo.begin(), referredTo.end());
    RecordedIds recorded;
    const auto isRead =
        lines.forEachPiece([&](const Lines& piece) { return idsIn(piece.text(), wantedIds, wantedReferred); },
                           [&](RecordedIds found) {
                               recorded.outcomes.merge(found.outcomes);
                               recorded.restored.merge(found.restored);
                           });
    if (!isRead)
        return std::unexpected(isRead.error());
    return recorded;
}

std::expected<std::unordered_set<std::string>, JournalError> restoredIds(const JournalLines& lines) {
    std::unordered_set<std::string> restored;
    const auto isRead = lines.forEachPiece([](const Lines& piece) { return restoredIn(piece.text()); },
                                           [&](std::vector<std::string> found) {
                                               for (auto& id : found)
                                                   restored.insert(std::move(id));
                                           });
    if (!isRead)
        return std::unexpected(isRead.error());
    return restored;
}

} // namespace orbel
