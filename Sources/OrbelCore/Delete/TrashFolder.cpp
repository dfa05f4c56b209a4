#include "Delete/TrashFolder.h"

#include "Journal/Barrier.h"
#include "Journal/MoveFailure.h"
#include "Journal/PrivateFile.h"
#include "Safety/RealPath.h"
#include "Util/PathText.h"
#include "Util/Utf8.h"

#include <algorithm>
#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

namespace orbel {

namespace {

constexpr mode_t forTheUserAlone = 0700;

std::unexpected<std::string> refusal(const std::string& path, const std::string& words) {
    return std::unexpected("The Trash cannot be used: " + lossyUtf8(path) + " " + words);
}

std::unexpected<std::string> refusal(const std::string& path, int error) {
    if (error == ENOTDIR || error == ELOOP)
        return refusal(path, "is not a real folder");
    return std::unexpected("The Trash cannot be used: " + lossyUtf8(path) + ": " + moveFailureText(error));
}

/// Opens one of the three folders, or makes it. `path` is only for the words.
std::expected<HeldFolder, std::string> openOwn(const HeldFolder& parent, const std::string& name,
                                               const std::string& path, Barrier& barrier) {
    auto folder = parent.openInside(name);
    if (!folder && folder.error() == ENOENT) {
        if (::mkdirat(parent.descriptor(), name.c_str(), forTheUserAlone) != 0 && errno != EEXIST)
            return refusal(path, errno);
        barrier.add(parent);
        folder = parent.openInside(name);
    }
    if (!folder)
        return refusal(path, folder.error());
    struct stat raw {};
    if (::fstat(folder->descriptor(), &raw) != 0)
        return refusal(path, errno);
    if (raw.st_uid != ::geteuid())
        return refusal(path, "belongs to another user");
    if ((raw.st_mode & S_IWOTH) != 0)
        return refusal(path, "can be changed by every user");
    return std::move(*folder);
}

} // namespace

std::expected<TrashFolder, std::string> TrashFolder::open(const std::string& path, Barrier& barrier) {
    const std::string parentName(parentPath(path));
    auto parentReal = RealPath::resolve(parentName);
    if (!parentReal) {
        static_cast<void>(openFolder(parentName)); // what cannot be made shows when it is resolved
        parentReal = RealPath::resolve(parentName);
    }
    if (!parentReal)
        return refusal(parentName, "does not exist and cannot be made");
    const auto parent = HeldFolder::open(*parentReal);
    if (!parent)
        return refusal(*parentReal, parent.error());

    const std::string name(lastPathComponent(path));
    auto real = joinedPath(*parentReal, name);
    const auto trash = openOwn(*parent, name, real, barrier);
    if (!trash)
        return std::unexpected(trash.error());
    auto files = openOwn(*trash, "files", joinedPath(real, "files"), barrier);
    if (!files)
        return std::unexpected(files.error());
    auto info = openOwn(*trash, "info", joinedPath(real, "info"), barrier);
    if (!info)
        return std::unexpected(info.error());
    return TrashFolder{.path = std::move(real), .files = std::move(*files), .info = std::move(*info)};
}

std::size_t TrashFolder::longestName() const {
    constexpr long usual = 255;
    constexpr std::size_t least =
        64; // a file system with shorter names than that refuses some, and says so then
    const long asked = ::fpathconf(info.descriptor(), _PC_NAME_MAX);
    const auto longest = static_cast<std::size_t>(asked > 0 ? std::min(asked, usual) : usual);
    return std::max(longest - std::min(longest, trashInfoSuffix.size()), least);
}

} // namespace orbel
