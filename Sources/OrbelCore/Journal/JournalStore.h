#pragma once

#include "Journal/JournalEntry.h"
#include "Journal/JournalError.h"

#include <cstddef>
#include <expected>
#include <mutex>
#include <span>
#include <string>
#include <vector>

namespace orbel {

class Barrier;
class JournalLines;
struct RecordedIds;

/// The journal's file: the permanent record of every move to the Trash and every attempt to put an item back,
/// one line of JSON each, to which lines are only ever added (docs/journal-format.md). One instance is shared
/// by all writers of a process; any thread may use it, and further processes may append to the same file at
/// the same time.
///
/// The rule that keeps it truthful: preflight(), only then change the disk, then append() the outcome.
///
/// Another file in the journal's place would falsify the record, so only a regular file of the user's own,
/// with one name and reached through no symbolic link, is ever opened.
class JournalStore {
public:
    /// A store on the file at this absolute path. Creates nothing on disk.
    explicit JournalStore(std::string path);

    JournalStore(const JournalStore&) = delete;
    JournalStore& operator=(const JournalStore&) = delete;

    /// The journal's place in the folder where applications keep their data.
    static std::string defaultPath(const std::string& applicationSupportFolder);

    const std::string& path() const { return path_; }

    /// Adds these lines at once, making the folder and the file (mode 0600) when missing, and passes
    /// `barrier`, so that afterwards they and what was added to it before are on the disk; no line gets
    /// there before the rest of that. Holds the lock until then. On failure the lines written before are
    /// untouched; a part of these that reached the file is closed off by the next append and is no entry,
    /// unless the error says that some of it may be recorded.
    std::expected<void, JournalError> append(std::span<const JournalEntry> entries, Barrier& barrier);
    std::expected<void, JournalError> append(const JournalEntry& entry);

    /// Proves, without changing the file's content, that this many lines could be appended right now, and
    /// reserves room for them where the file system can. It all lasts once `barrier` was passed.
    std::expected<void, JournalError> preflight(std::size_t lines, Barrier& barrier);
    std::expected<void, JournalError> preflight();

    /// Every readable entry in file order, oldest first. A line that cannot be read is left out; a file that
    /// is missing has no entries. An error when the file is there but cannot be read, or must not be
    /// believed.
    std::expected<std::vector<JournalEntry>, JournalError> read() const;

    /// The same, with no entries in place of an error.
    std::vector<JournalEntry> entries() const;

    /// Those whose time is at or after `since`, in file order.
    std::vector<JournalEntry> entries(Date since) const;

    /// Those that can still be put back, in file order: `trashed`, and no `restored` line refers to them. No
    /// entries in place of an error.
    std::vector<JournalEntry> restorable() const;

    /// Which of these ids are in the journal: `ids` as those of lines, `referredTo` as what a `restored` line
    /// refers to. Many times faster than reading all entries. Errors as read() has them.
    std::expected<RecordedIds, JournalError> recorded(std::span<const std::string> ids,
                                                      std::span<const std::string> referredTo) const;

    /// The lines that are there now, for those who need not have all entries in memory; none when the file is
    /// missing. Errors as read() has them.
    std::expected<JournalLines, JournalError> lines() const;

private:
    std::string path_;
    mutable std::mutex lock_;
};

} // namespace orbel
