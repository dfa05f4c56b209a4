#pragma once

#include "Util/FileDescriptor.h"

#include <expected>
#include <string>

namespace orbel::platform {

/// Opens a folder by its real path for calls relative to it; it need not be readable and may lie deeper than
/// the system takes paths. No link is followed anywhere on the way. The error is an errno: ENOTDIR or ELOOP
/// where a link or a file stands in a folder's place, EINVAL for a path that is not absolute or holds a zero
/// byte, "." or "..".
std::expected<FileDescriptor, int> openFolderWithoutLinks(const std::string& path);

/// Opens the folder that a path leads to, through links, for calls relative to it. It need not be readable.
/// The error is an errno.
std::expected<FileDescriptor, int> openFolderThroughLinks(const std::string& path);

} // namespace orbel::platform
