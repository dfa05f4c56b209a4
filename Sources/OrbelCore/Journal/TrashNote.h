#pragma once

#include "Journal/HeldFolder.h"
#include "Journal/MoveIntent.h"
#include "Safety/FileStamp.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace orbel {

/// The Trash's own note of an item.
class TrashNote {
public:
    /// What an intent says of the note of an item in the files/ folder of a Trash; absent where there is
    /// none, or none that it can name.
    static std::optional<MoveIntent::InfoFile> of(const std::string& trashPath);

    /// A note as it was while its item lay in the Trash.
    struct Seen {
        std::string path;
        std::optional<FileStamp> stamp; ///< of a file of this user's own that could be looked at
    };
    /// Absent when the item does not lie in the files/ folder of a Trash.
    static std::optional<Seen> seen(const std::string& trashPath);

    /// Removes those that nothing has changed since, on several threads. Looks at no item's name: that would
    /// wait for each move out of the Trash that is under way. False when a note is there afterwards, one of
    /// these or another in its place.
    static bool removeUnchanged(std::span<const Seen> notes);

    /// The note that this intent names, if it holds what the intent says, or a beginning of that: a kill may
    /// have left it unfinished.
    explicit TrashNote(const MoveIntent& intent);

    bool isWhole() const { return state_ == State::whole; }

    /// Removes it if it is a regular file of this user's own and nothing in the Trash has the name that it
    /// belongs to. False when a note is there afterwards, this one or another.
    bool removeIfUnused() const;

private:
    enum class State : std::uint8_t {
        none,       ///< there is no note, or it is another one
        unfinished, ///< a beginning of ours, or nothing yet
        whole
    };

    std::string itemPath_, path_;
    std::optional<HeldFolder> folder_; ///< of the note
    State state_ = State::none;
};

} // namespace orbel
