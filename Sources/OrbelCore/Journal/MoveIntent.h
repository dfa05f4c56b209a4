#pragma once

#include "Journal/JournalEntry.h"
#include "Safety/FileStamp.h"

#include <cstdint>
#include <optional>
#include <string>

namespace orbel {

/// What is about to be moved where, with all that is needed to find out later whether it was, and to write
/// the line that a crash kept from the journal.
struct MoveIntent {
    enum class Kind : std::uint8_t { toTrash, putBack };

    /// The Trash's own note of the item: the one that this attempt writes, or that goes once the item is
    /// back.
    struct InfoFile {
        std::string path;
        std::string content; ///< all of it; valid UTF-8

        bool operator==(const InfoFile&) const = default;
    };

    Kind kind = Kind::toTrash;
    /// The line to be written once the move succeeded, its `id` fixed. Several attempts at one item, each
    /// with a destination of its own, are several intents with the same id.
    JournalEntry entry;
    std::string sourcePath;                                                ///< where the item is now
    std::string destinationPath;                                           ///< where this attempt moves it
    FileStamp stamp;                                                       ///< of the approved object
    std::optional<platform::PersistentIdentity> persistent = std::nullopt; ///< of the approved object
    std::optional<InfoFile> infoFile = std::nullopt; ///< for a move to a Trash that keeps such notes

    bool operator==(const MoveIntent&) const = default;
};

template <>
struct RawValues<MoveIntent::Kind> {
    static constexpr std::array<std::string_view, 2> names{"toTrash", "putBack"};
};

} // namespace orbel
