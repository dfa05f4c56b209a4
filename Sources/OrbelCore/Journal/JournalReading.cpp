#include "Journal/JournalReading.h"

#include "Journal/JournalLine.h"
#include "Journal/PrivateFile.h"

#include <cerrno>
#include <iterator>

#include <unistd.h>

namespace orbel {

JournalLines::JournalLines(FileDescriptor file, std::uint64_t length, std::string path,
                           std::uint64_t pieceBytes)
    : file_(std::move(file)), length_(length), path_(std::move(path)), pieceBytes_(pieceBytes) {}

std::expected<Lines, JournalError> JournalLines::linesIn(LineRange range) const {
    // The byte before tells whether a line begins right here.
    Lines lines{.bytes = {}, .skipped = 0, .offset = range.begin == 0 ? 0 : range.begin - 1};
    auto& bytes = lines.bytes;
    if (!read(lines.offset, range.end, bytes))
        return std::unexpected(systemErrorAt(path_));
    if (range.begin > 0) {
        const auto lineFeed = bytes.find('\n');
        lines.skipped = lineFeed == std::string::npos ? bytes.size() : lineFeed + 1;
    }
    for (auto next = range.end; lines.skipped < bytes.size() && bytes.back() != '\n' && next < length_;) {
        constexpr std::uint64_t stepBytes = 4096;
        const auto stop = std::min(next + stepBytes, length_);
        const auto before = bytes.size();
        if (!read(next, stop, bytes))
            return std::unexpected(systemErrorAt(path_));
        const auto lineFeed = bytes.find('\n', before);
        if (lineFeed != std::string::npos)
            bytes.resize(lineFeed + 1);
        next = stop;
    }
    return lines;
}

/// Adds the bytes from `begin` to `end`; fewer only when the file was cut short meanwhile.
bool JournalLines::read(std::uint64_t begin, std::uint64_t end, std::string& bytes) const {
    const auto before = bytes.size();
    const auto size = before + (end - begin);
    bool isRead = true;
    // Not filled with zeros first. The library of g++ 12 gives the function more room than was asked for.
    bytes.resize_and_overwrite(size, [&](char* data, std::size_t) {
        auto used = before;
        while (used < size) {
            const auto offset = static_cast<off_t>(begin + (used - before));
            const auto count = ::pread(file_.get(), data + used, size - used, offset);
            if (count > 0)
                used += static_cast<std::size_t>(count);
            else if (count == 0)
                return used;
            else if (errno != EINTR) {
                isRead = false;
                return used;
            }
        }
        return used;
    });
    return isRead;
}

std::vector<JournalEntry> entriesIn(std::string_view lines) {
    std::vector<JournalEntry> entries;
    forEachLine(lines, [&](std::string_view line) {
        if (auto entry = entryInLine(line))
            entries.push_back(*std::move(entry));
    });
    return entries;
}

std::expected<std::vector<JournalEntry>, JournalError> readEntries(const JournalLines& lines) {
    std::vector<JournalEntry> all;
    const auto isRead = lines.forEachPiece(
        [](const Lines& piece) { return entriesIn(piece.text()); },
        [&](std::vector<JournalEntry> found) { std::ranges::move(found, std::back_inserter(all)); });
    if (!isRead)
        return std::unexpected(isRead.error());
    return all;
}

} // namespace orbel
