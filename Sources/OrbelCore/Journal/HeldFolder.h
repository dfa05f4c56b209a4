#pragma once

#include "Safety/FileIdentity.h"
#include "Util/FileDescriptor.h"

#include <expected>
#include <optional>
#include <string>
#include <utility>

namespace orbel {

/// A folder that is held open, so that what is done in it is done in this very folder, whatever happens to
/// its path meanwhile. Errors are errnos.
class HeldFolder {
public:
    /// Opens a folder by its real path, following no link.
    static std::expected<HeldFolder, int> open(const std::string& realPath);

    /// Opens the folder `name` inside this one, itself and not what a link leads to. It must be readable.
    std::expected<HeldFolder, int> openInside(const std::string& name) const;

    int descriptor() const { return folder_.get(); }

    /// What `name` in this folder is, a link itself; an error of ENOENT says that nothing goes by that name.
    std::expected<FileIdentity, int> identityOf(const std::string& name) const;

    /// What the folder itself is.
    std::expected<FileIdentity, int> identity() const;

    /// Waits until the names in this folder are on the disk. EACCES when it may not be read.
    std::expected<void, int> synchronise() const;

private:
    explicit HeldFolder(FileDescriptor folder) : folder_(std::move(folder)) {}

    FileDescriptor folder_;
};

/// Moves an entry from one held folder to another, never replacing or copying anything (see
/// renameExclusively). An error means that it did not move.
std::expected<void, int> moveEntry(const HeldFolder& fromFolder, const std::string& from,
                                   const HeldFolder& toFolder, const std::string& to);

/// Waits until a move between two folders is on the disk: the new name first, then that the old one is gone,
/// because some file systems would otherwise show both after a power cut. After an error the move may or may
/// not outlast a power cut, even if a later call succeeds.
std::expected<void, int> synchroniseMove(const HeldFolder& fromFolder, const HeldFolder& toFolder);

} // namespace orbel
