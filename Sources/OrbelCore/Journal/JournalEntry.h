#pragma once

#include "Journal/DeletionModule.h"
#include "Journal/TrashedIdentity.h"
#include "Safety/AllowedRoot.h"
#include "Util/AppVersion.h"
#include "Util/Iso8601.h"
#include "Util/RawValue.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace orbel {

/// One line of the journal: the outcome of one move to the Trash or of one attempt to put an item back. Every
/// path is the visible form of the real path. The key of each field in JSON is the field's name.
struct JournalEntry {
    enum class Result : std::uint8_t { trashed, skipped, restored, restoreFailed };
    using TrashedIdentity = orbel::TrashedIdentity;

    std::string id;        ///< a new UUID, see newUuid()
    std::string sessionID; ///< of the deletion session; a put-back line carries that of the line it refers to
    Date time;             ///< when the outcome happened; the file keeps whole seconds
    DeletionModule module = DeletionModule::map;
    std::string title;
    std::string originalPath; ///< where the item was, and is to be put back
    std::optional<std::string> originalParentRealPath = std::nullopt;
    /// What that folder is recognised by; absent in the lines of earlier versions.
    std::optional<TrashedIdentity> originalParentIdentity = std::nullopt;
    std::optional<std::string> approvedRealPath = std::nullopt;
    AllowedRoot root = AllowedRoot::homeItem;
    std::optional<std::uint64_t> bytes = std::nullopt; ///< what the move was measured to free
    std::string mode = "trash";
    std::optional<std::string> trashPath = std::nullopt; ///< where the item lies in the Trash
    std::optional<TrashedIdentity> trashedIdentity = std::nullopt;
    Result result = Result::trashed;
    std::optional<std::string> reason =
        std::nullopt; ///< why it was skipped or could not be put back, in the user's words
    std::optional<std::string> note = std::nullopt;
    std::optional<std::string> refersTo = std::nullopt; ///< on a put-back line, the id of the "trashed" line
    std::string appVersion = orbel::appVersion();

    bool operator==(const JournalEntry&) const = default;
};

template <>
struct RawValues<JournalEntry::Result> {
    static constexpr std::array<std::string_view, 4> names{"trashed", "skipped", "restored", "restoreFailed"};
};

} // namespace orbel
