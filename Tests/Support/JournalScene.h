#pragma once

#include "Journal/JournalStore.h"
#include "Journal/MoveIntent.h"
#include "Support/TemporaryFolder.h"

#include <string>
#include <string_view>
#include <vector>

namespace orbel::test {

/// An entry of a move to the Trash with every field filled, made unlike all others by its new id.
JournalEntry trashedEntry(const std::string& title = "film.mp4");

/// An entry of an item that was passed over, with only the required fields and a reason.
JournalEntry skippedEntry(const std::string& title = "film.mp4");

/// The line that records an attempt to put the entry back.
JournalEntry putBackEntry(const JournalEntry& entry, JournalEntry::Result result);

std::vector<std::string> titlesOf(const std::vector<JournalEntry>& entries);
std::vector<std::string> idsOf(const std::vector<JournalEntry>& entries);

/// A home of its own with a journal and a Trash, in which moves are begun and left at any point.
class JournalScene {
public:
    TemporaryFolder home;
    std::string path = home.path("data/journal.jsonl");
    JournalStore store{path};

    /// What is in the journal's file, byte by byte.
    std::string content() const;
    /// Replaces the file.
    void write(std::string_view content) const;

    /// The paths of the intents' files.
    std::vector<std::string> intentFiles() const;

    /// The intent of moving a new file of this name to the Trash; its note is in the Trash already.
    MoveIntent beginToTrash(const std::string& name) const;
    /// The intent of moving a file of this name, which lies in the Trash with a note, back.
    MoveIntent beginPutBack(const std::string& name) const;

    /// Writes the intents as a process would that is gone now.
    void leaveBehind(const std::vector<MoveIntent>& intents) const;

private:
    MoveIntent intentOf(MoveIntent::Kind kind, const std::string& source, const std::string& destination,
                        const std::string& trashName) const;
};

/// Moves what an intent says to move.
void move(const MoveIntent& intent);
bool exists(const std::string& path);

} // namespace orbel::test
