#pragma once

#include "Journal/HeldFolder.h"
#include "Journal/JournalEntry.h"
#include "Platform/HeldObject.h"

#include <optional>
#include <string>

namespace orbel {

/// The object that lies in the Trash, held so that it cannot be mistaken for another one.
struct TrashedObject {
    static constexpr auto isAnother = "The item in the Trash is a different file";

    std::string path; ///< in the Trash
    platform::HeldObject held;
    FileStamp stamp;
    std::optional<platform::PersistentIdentity> persistent;

    /// Absent when what lies there is not what the entry says was moved.
    static std::optional<TrashedObject> hold(const JournalEntry& entry, platform::KnownVolumes& volumes);

    bool isInPlace() const { return FileIdentity::of(path) == stamp.identity; }
};

/// Where an item belongs: its old folder, held open, and its name in it.
struct Destination {
    HeldFolder folder;
    FileIdentity identity;  ///< of the folder
    std::string folderPath; ///< real
    std::string name;

    /// Absent when another folder, a link or nothing has taken the place of the one that the item came from.
    static std::optional<Destination> open(const JournalEntry& entry);

    /// Its path; nothing is looked at.
    static std::string pathFor(const JournalEntry& entry);

    bool isTaken() const { return folder.identityOf(name).has_value(); }
    bool isAtItsPath() const { return FileIdentity::of(folderPath) == identity; }
};

} // namespace orbel
