#pragma once

#include "Journal/JournalEntry.h"
#include "Journal/JournalError.h"
#include "Platform/Parallel.h"
#include "Util/FileDescriptor.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <expected>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace orbel {

/// Where one line or more stand in the file, in bytes.
struct LineRange {
    std::uint64_t begin = 0;
    std::uint64_t end = 0; ///< behind the last one's line feed
};

/// Whole lines and where they stand in the file.
struct Lines {
    std::string bytes;
    std::size_t skipped = 0;  ///< how many bytes at the beginning are of a line that is not among these
    std::uint64_t offset = 0; ///< of the first byte in the file

    /// Only the last line may lack its line feed.
    std::string_view text() const { return std::string_view(bytes).substr(skipped); }

    /// Of a line in text().
    LineRange rangeOf(std::string_view line) const {
        const auto begin = offset + static_cast<std::uint64_t>(line.data() - bytes.data());
        return {.begin = begin, .end = begin + line.size() + 1};
    }
};

/// The journal's lines as they stand when it is opened: lines that are added later are not seen. Threads may
/// read at the same time. Reading never holds more than a few pieces of the file in memory.
class JournalLines {
public:
    /// No lines.
    JournalLines() = default;

    /// Those in the first `length` bytes of an open file; `path` is for errors. Pieces are of `pieceBytes`.
    JournalLines(FileDescriptor file, std::uint64_t length, std::string path,
                 std::uint64_t pieceBytes = 1024 * 1024);

    std::uint64_t length() const { return length_; }

    /// The lines that begin within the range, the last one to its end.
    std::expected<Lines, JournalError> linesIn(LineRange range) const;

    /// Calls `find(lines)` for each piece of the file, on as many threads as there are processors, and
    /// `take(found)` with what that returned, on the calling thread and in file order. Ends at the first
    /// piece that cannot be read.
    template <class Find, class Take>
    std::expected<void, JournalError> forEachPiece(const Find& find, const Take& take) const;

private:
    bool read(std::uint64_t begin, std::uint64_t end, std::string& bytes) const;

    FileDescriptor file_;
    std::uint64_t length_ = 0;
    std::string path_;
    std::uint64_t pieceBytes_ = 1;
};

/// Calls `take(line)` for every line that is not empty, without its line feed.
template <class Take>
void forEachLine(std::string_view lines, const Take& take) {
    while (!lines.empty()) {
        const auto end = std::min(lines.find('\n'), lines.size());
        if (end > 0)
            take(lines.substr(0, end));
        lines.remove_prefix(std::min(end + 1, lines.size()));
    }
}

/// The entries in these lines, in their order. Empty lines, lines that are no entry and a last line without a
/// line feed that is none are left out.
std::vector<JournalEntry> entriesIn(std::string_view lines);

/// All entries, in file order. Beside them little is in memory.
std::expected<std::vector<JournalEntry>, JournalError> readEntries(const JournalLines& lines);

template <class Find, class Take>
std::expected<void, JournalError> JournalLines::forEachPiece(const Find& find, const Take& take) const {
    std::expected<void, JournalError> outcome;
    using Found = std::invoke_result_t<const Find&, Lines>;
    mapInOrder((length_ + pieceBytes_ - 1) / pieceBytes_,
               [&](std::size_t piece) -> std::expected<Found, JournalError> {
                   auto lines = linesIn({piece * pieceBytes_, std::min((piece + 1) * pieceBytes_, length_)});
                   if (!lines)
                       return std::unexpected(std::move(lines.error()));
                   return find(*std::move(lines));
               },
               [&](std::expected<Found, JournalError> found) {
                   if (found)
                       take(*std::move(found));
                   else
                       outcome = std::unexpected(std::move(found.error()));
                   return outcome.has_value();
               });
    return outcome;
}

} // namespace orbel
