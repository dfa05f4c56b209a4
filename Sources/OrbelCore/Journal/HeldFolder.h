#pragma once

#include "Safety/FileIdentity.h"
#include "Util/FileDescriptor.h"

#include <expected>
#include <optional>
#include <string>
#include <utility>

namespace orbel {

/// A folder that is held open: operations in it reach this very folder, even when its path leads elsewhere
/// meanwhile. Errors are errnos.
class HeldFolder {
public:
    /// Opens a folder by its real path, following no link.
    static std::expected<HeldFolder, int> open(const std::string& realPath);

    /// Opens the folder that a path leads to, through links.
    static std::expected<HeldFolder, int> openThroughLinks(const std::string& path);

    /// Opens the folder `name` inside this one, itself and not what a link leads to. It must be readable.
    std::expected<HeldFolder, int> openInside(const std::string& name) const;

    int descriptor() const { return folder_.get(); }

    /// What `name` in this folder is, a link itself; an error of ENOENT says that nothing goes by that name.
    std::expected<FileIdentity, int> identityOf(const std::string& name) const;

    /// What the folder itself is.
    std::expected<FileIdentity, int> identity() const;

    /// The folder opened anew, in a way that allows to flush it. EACCES when it may not be read.
    std::expected<FileDescriptor, int> openForFlush() const;

private:
    explicit HeldFolder(FileDescriptor folder) : folder_(std::move(folder)) {}

    FileDescriptor folder_;
};

/// Moves an entry from one held folder to another, never replacing or copying anything (see
/// renameExclusively). An error means that it did not move.
std::expected<void, int> moveEntry(const HeldFolder& fromFolder, const std::string& from,
                                   const HeldFolder& toFolder, const std::string& to);

} // namespace orbel
