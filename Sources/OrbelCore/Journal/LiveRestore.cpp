#include "Journal/LiveRestore.h"

#include "Journal/HeldFolder.h"
#include "Journal/MoveFailure.h"
#include "Safety/RealPath.h"
#include "Util/PathText.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orbel {

namespace {

struct Place {
    std::string folderPath; ///< real
    HeldFolder folder;
    std::string name;
};

std::expected<Place, std::string> placeOf(const std::string& path) {
    std::string name(lastPathComponent(path));
    if (name.empty() || name == "." || name == ".." || name == "/" || path.find('\0') != std::string::npos)
        return std::unexpected(moveFailureText(ENOENT));
    auto folderPath = RealPath::resolve(std::string(parentPath(path)));
    if (!folderPath)
        return std::unexpected("Its folder no longer exists");
    auto folder = HeldFolder::open(*folderPath);
    if (!folder)
        return std::unexpected(moveFailureText(folder.error()));
    return Place{std::move(*folderPath), std::move(*folder), std::move(name)};
}

/// Removes the info file of an item that has just left the Trash. It belongs to that item and to nothing
/// newer: as long as it is there, nobody who keeps to the rules of the desktop's Trash gives the item's name
/// away again.
void removeInfoFile(const Place& left) {
    if (lastPathComponent(left.folderPath) != "files")
        return;
    const auto trash = left.folder.openInside("..");
    if (!trash)
        return;
    const auto info = trash->openInside("info");
    if (!info)
        return;
    const std::string name = left.name + ".trashinfo";
    struct stat raw {};
    if (::fstatat(info->descriptor(), name.c_str(), &raw, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(raw.st_mode)
        && raw.st_uid == ::geteuid())
        ::unlinkat(info->descriptor(), name.c_str(), 0);
}

} // namespace

std::expected<RestoredItem, std::string> LiveRestore::move(const std::string& from, const HeldFolder& folder,
                                                           const std::string& name) {
    const auto source = placeOf(from);
    if (!source)
        return std::unexpected(source.error());
    if (const auto moved = moveEntry(source->folder, source->name, folder, name); !moved)
        return std::unexpected(moveFailureText(moved.error()));
    if (const auto lasts = synchroniseMove(source->folder, folder); !lasts)
        return RestoredItem{.flushFailure = flushFailureText(lasts.error())};
    removeInfoFile(*source);
    return RestoredItem();
}

} // namespace orbel
