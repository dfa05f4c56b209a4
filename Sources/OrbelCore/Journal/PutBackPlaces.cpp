#include "Journal/PutBackPlaces.h"

#include "Util/PathText.h"

#include <cerrno>
#include <utility>

namespace orbel {

std::optional<TrashedObject> TrashedObject::hold(const JournalEntry& entry, platform::KnownVolumes& volumes) {
    if (!entry.trashPath || !entry.trashedIdentity)
        return std::nullopt;
    const auto& path = *entry.trashPath;
    auto held = platform::HeldObject::hold(path);
    const auto status = held ? held->status() : std::nullopt;
    if (!status)
        return std::nullopt;
    const auto stamp = FileStamp::of(*status);
    if (!entry.trashedIdentity->isOf(stamp, path))
        return std::nullopt;
    auto persistent = platform::persistentIdentity(path, stamp.identity.inode, volumes);
    return TrashedObject{path, *std::move(held), stamp, std::move(persistent)};
}

std::optional<Destination> Destination::open(const JournalEntry& entry) {
    const auto path = entry.originalParentRealPath.value_or("");
    auto folder = HeldFolder::open(path);
    const auto identity = folder ? folder->identity() : std::unexpected(ENOENT);
    if (!identity)
        return std::nullopt;
    Destination opened{.folder = *std::move(folder),
                       .identity = *identity,
                       .folderPath = path,
                       .name = std::string(lastPathComponent(entry.originalPath))};
    if (const auto& then = entry.originalParentIdentity) {
        const auto now = FileStamp::of(path);
        if (!now || !then->isOf(*now, path))
            return std::nullopt;
    }
    return opened;
}

std::string Destination::pathFor(const JournalEntry& entry) {
    return joinedPath(entry.originalParentRealPath.value_or(""), lastPathComponent(entry.originalPath));
}

} // namespace orbel
