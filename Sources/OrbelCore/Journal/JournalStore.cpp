#include "Journal/JournalStore.h"

#include "Journal/Barrier.h"
#include "Journal/JournalLine.h"
#include "Journal/JournalReading.h"
#include "Journal/MoveFailure.h"
#include "Journal/PrivateFile.h"
#include "Journal/RecordedIds.h"
#include "Journal/Restorable.h"
#include "Platform/Synchronise.h"
#include "Util/PathText.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orbel {

namespace {

/// The journal, open and locked, and its folder.
struct OpenJournal {
    FileDescriptor folder;
    PrivateFile file;
    std::uint64_t length = 0;
};

std::expected<OpenJournal, JournalError> openForAppending(const std::string& path) {
    auto folder = openFolder(std::string(parentPath(path)));
    if (!folder)
        return std::unexpected(folder.error());
    const std::string name(lastPathComponent(path));
    // Whoever held the lock may have put another file there meanwhile; what is locked must be what is named.
    for (int attempt = 0; attempt < 100; ++attempt) {
        auto file = PrivateFile::open(folder->get(), name, PrivateFile::Access::appendOrMake, path);
        if (!file)
            return std::unexpected(file.error());
        if (!waitForLock(file->file.get()))
            return std::unexpected(systemErrorAt(path));
        struct stat status {};
        if (!file->isStillAt(folder->get(), name) || ::fstat(file->file.get(), &status) != 0)
            continue;
        return OpenJournal{.folder = std::move(*folder),
                           .file = std::move(*file),
                           .length = static_cast<std::uint64_t>(status.st_size)};
    }
    return std::unexpected(errorAt(path, "is being replaced again and again"));
}

/// Whether the file ends within a line, as a crash or a full disk leaves it.
bool endsWithinLine(const OpenJournal& journal) {
    char last = '\n';
    return journal.length > 0
           && (::pread(journal.file.file.get(), &last, 1, static_cast<off_t>(journal.length - 1)) != 1
               || last != '\n');
}

/// Adds the file, and its name if it is new.
void addTo(Barrier& barrier, const OpenJournal& journal) {
    barrier.add(journal.file.file.get());
    if (journal.file.isNew)
        barrier.add(journal.folder.get());
}

} // namespace

JournalStore::JournalStore(std::string path) : path_(std::move(path)) {}

std::string JournalStore::defaultPath(const std::string& applicationSupportFolder) {
    return joinedPath(applicationSupportFolder, "Ostrevo Orbel/journal.jsonl");
}

std::expected<void, JournalError> JournalStore::append(const JournalEntry& entry) {
    Barrier barrier;
    return append({&entry, 1}, barrier);
}

std::expected<void, JournalError> JournalStore::append(std::span<const JournalEntry> entries,
                                                       Barrier& barrier) {
    std::string lines = "\n"; // in front, for a last line that is torn
    std::size_t firstEnd = 0;
    for (const auto& entry : entries) {
        const auto encoded = journalLine(entry);
        if (!encoded)
            return std::unexpected(encoded.error());
        lines += *encoded + "\n";
        if (firstEnd == 0)
            firstEnd = lines.size();
    }
    const std::scoped_lock guard(lock_);
    const auto journal = openForAppending(path_);
    if (!journal)
        return std::unexpected(journal.error());
    if (!barrier.keepsOrder())
        if (const auto lasts = barrier.pass(); !lasts)
            return std::unexpected(JournalError{.words = flushFailureText(lasts.error())});
    // A torn last line must stay a line of its own, or it would take the next one with it.
    const std::size_t skipped = endsWithinLine(*journal) ? 0 : 1;
    const auto text = std::string_view(lines).substr(skipped);
    if (const auto written = appendBytes(journal->file.file.get(), text); written < text.size()) {
        auto error = systemErrorAt(path_);
        error.mayBeRecorded =
            skipped + written + 1 >= firstEnd; // of the first, only the line feed is missing
        return std::unexpected(error);
    }
    addTo(barrier, *journal);
    if (const auto lasts = barrier.pass(); !lasts) {
        auto error = errorAt(path_, std::generic_category().message(lasts.error()));
        error.mayBeRecorded = true;
        return std::unexpected(error);
    }
    return {};
}

std::expected<void, JournalError> JournalStore::preflight() {
    Barrier barrier;
    auto writable = preflight(1, barrier);
    if (const auto lasts = barrier.pass(); writable && !lasts)
        return std::unexpected(errorAt(path_, std::generic_category().message(lasts.error())));
    return writable;
}

std::expected<void, JournalError> JournalStore::preflight(std::size_t lines, Barrier& barrier) {
    // Room for the longest line that is to be expected: four paths of the longest kind with every byte
    // escaped. Not all are that long.
    constexpr std::uint64_t roomForLongest = 128 * 1024;
    constexpr std::uint64_t roomForLine = 8 * 1024;
    const std::scoped_lock guard(lock_);
    const auto journal = openForAppending(path_);
    if (!journal)
        return std::unexpected(journal.error());
    if (!platform::reserveSpace(journal->file.file.get(), journal->length,
                                roomForLongest + lines * roomForLine))
        return std::unexpected(systemErrorAt(path_));
    addTo(barrier, *journal);
    // The barrier may keep a descriptor of it until long after, and a group before may have lines to append.
    releaseLock(journal->file.file.get());
    return {};
}

std::expected<JournalLines, JournalError> JournalStore::lines() const {
    const std::scoped_lock guard(lock_);
    struct stat status {};
    const auto folder = openExistingFolder(std::string(parentPath(path_)));
    const std::string name(lastPathComponent(path_));
    const bool isThere = folder && ::fstatat(folder.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
    if (!isThere && errno == ENOENT)
        return JournalLines();
    if (!isThere)
        return std::unexpected(systemErrorAt(path_));
    auto opened = PrivateFile::open(folder.get(), name, PrivateFile::Access::read, path_);
    if (!opened)
        return std::unexpected(opened.error());
    if (::fstat(opened->file.get(), &status) != 0)
        return std::unexpected(systemErrorAt(path_));
    // The file only grows, so what it held at this moment can be read without keeping writers waiting.
    return JournalLines(std::move(opened->file), static_cast<std::uint64_t>(status.st_size), path_);
}

std::expected<std::vector<JournalEntry>, JournalError> JournalStore::read() const {
    const auto all = lines();
    if (!all)
        return std::unexpected(all.error());
    return readEntries(*all);
}

std::vector<JournalEntry> JournalStore::entries() const {
    return read().value_or(std::vector<JournalEntry>{});
}

std::vector<JournalEntry> JournalStore::entries(Date since) const {
    auto found = entries();
    std::erase_if(found, [since](const JournalEntry& entry) { return entry.time < since; });
    return found;
}

std::vector<JournalEntry> JournalStore::restorable() const {
    const auto all = lines();
    if (!all)
        return {};
    return readRestorable(*all, [](const JournalEntry&) { return true; })
        .value_or(std::vector<JournalEntry>{});
}

std::expected<RecordedIds, JournalError>
JournalStore::recorded(std::span<const std::string> ids, std::span<const std::string> referredTo) const {
    const auto all = lines();
    if (!all)
        return std::unexpected(all.error());
    return recordedIds(*all, ids, referredTo);
}

} // namespace orbel
