#include "Journal/JournalReading.h"

#include "Journal/JournalLine.h"
#include "Util/Parallel.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <iterator>
#include <string>

#include <unistd.h>

namespace orbel {

namespace {

/// A file that others may be appending to; what lies behind `length` is not looked at.
class Source {
public:
    Source(int file, std::uint64_t length) : file_(file), length_(length) {}

    std::uint64_t length() const { return length_; }

    /// Adds the bytes from `begin` to `end` to `text`; fewer only when the file was cut short meanwhile.
    bool read(std::uint64_t begin, std::uint64_t end, std::string& text) const {
        auto used = text.size();
        text.resize(used + (end - begin));
        while (used < text.size()) {
            const auto offset = end - (text.size() - used);
            const auto count =
                ::pread(file_, text.data() + used, text.size() - used, static_cast<off_t>(offset));
            if (count > 0)
                used += static_cast<std::size_t>(count);
            else if (count == 0)
                text.resize(used);
            else if (errno != EINTR)
                return false;
        }
        return true;
    }

private:
    int file_;
    std::uint64_t length_;
};

/// The lines that begin in the piece from `begin` to `end`, the last one read to its end.
std::expected<std::string, int> linesOf(const Source& source, std::uint64_t begin, std::uint64_t end) {
    std::string text;
    // The byte before tells whether a line begins right here.
    const auto first = begin == 0 ? 0 : begin - 1;
    if (!source.read(first, end, text))
        return std::unexpected(errno);
    if (begin > 0) {
        const auto lineFeed = text.find('\n');
        text.erase(0, lineFeed == std::string::npos ? text.size() : lineFeed + 1);
    }
    for (auto next = end; !text.empty() && text.back() != '\n' && next < source.length();) {
        constexpr std::uint64_t stepBytes = 4096;
        const auto stop = std::min(next + stepBytes, source.length());
        const auto before = text.size();
        if (!source.read(next, stop, text))
            return std::unexpected(errno);
        const auto lineFeed = text.find('\n', before);
        if (lineFeed != std::string::npos)
            text.resize(lineFeed + 1);
        next = stop;
    }
    return text;
}

} // namespace

std::vector<JournalEntry> entriesIn(std::string_view lines) {
    std::vector<JournalEntry> entries;
    while (!lines.empty()) {
        const auto end = std::min(lines.find('\n'), lines.size());
        if (end > 0)
            if (auto entry = entryInLine(lines.substr(0, end)))
                entries.push_back(std::move(*entry));
        lines.remove_prefix(std::min(end + 1, lines.size()));
    }
    return entries;
}

std::expected<std::vector<JournalEntry>, int> readEntries(int file, std::uint64_t length,
                                                          std::uint64_t pieceBytes) {
    const Source source(file, length);
    std::vector<JournalEntry> all;
    // A few pieces at a time: were all of them parsed first and put together then, the entries would be in
    // memory twice.
    constexpr std::uint64_t piecesAtATime = 16;
    for (std::uint64_t begin = 0; begin < length; begin += piecesAtATime * pieceBytes) {
        const auto end = std::min(begin + piecesAtATime * pieceBytes, length);
        const auto pieces = (end - begin + pieceBytes - 1) / pieceBytes;
        std::array<std::expected<std::vector<JournalEntry>, int>, piecesAtATime> found;
        forEachTask(pieces, [&](std::size_t piece) {
            const auto pieceBegin = begin + piece * pieceBytes;
            if (const auto lines = linesOf(source, pieceBegin, std::min(pieceBegin + pieceBytes, end)))
                found[piece] = entriesIn(*lines);
            else
                found[piece] = std::unexpected(lines.error());
        });
        for (std::size_t piece = 0; piece < pieces; ++piece) {
            if (!found[piece])
                return std::unexpected(found[piece].error());
            std::ranges::move(*found[piece], std::back_inserter(all));
        }
        // Room for the rest, judged by what came so far: grown bit by bit, the vector would at times be there
        // twice.
        if (begin == 0 && end < length)
            all.reserve(all.size() * (length / end + 1));
    }
    return all;
}

} // namespace orbel
